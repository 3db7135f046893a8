#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "base/padded_rows.h"
#include "render/visible/layer_stack.h"
#include "render/visible/level_lanes.h"
#include "render/visible/picture_view.h"
#include "render/visible/shadows.h"
#include "render/visible/sight.h"
#include "render/visible/visible_lanes.h"

namespace zelmo {

// What a square of a mesh has to draw, as bits beside those of what it has at all.
constexpr std::uint8_t drawLowerFront = 4;
constexpr std::uint8_t drawUpperFront = 8;
constexpr std::uint8_t drawLowerBack = 16;
constexpr std::uint8_t drawUpperBack = 32;

constexpr HeightRange noHeights{std::numeric_limits<float>::max(),
                                std::numeric_limits<float>::lowest(), 0.0f};

/// Looks at the bands of squares from the front to the back, and keeps what it needs of the last
/// rows of places and bands.
class BandChooser {
public:
    BandChooser(const LayerStack& stack, const Sight& sight, std::span<const Shadow> shadows,
                const PictureView& view);

    /// Chooses the squares of these bands. `out.Band(layer, band)` tells where their bytes go, and
    /// `out.LevelMarks(band)` where to mark those at which the uppermost opaque layer is level.
    template <typename Output>
    void Choose(std::int32_t firstBand, std::int32_t endBand, Output& out) {
        for (std::int32_t row = std::max(firstBand - 1, 0); row <= firstBand; ++row) {
            ReadRow(row);
        }
        for (std::int32_t band = firstBand; band < endBand; ++band) {
            ReadRow(band + 1);
            uneven_.Fill(0, 0);
            for (std::size_t layer = 0; layer < stack_.layers.size(); ++layer) {
                ChooseOfLayer(layer, band, out.Band(layer, band));
            }
            MarkLevelSquares(band, out.LevelMarks(band));
        }
    }

    const HeightRange& Heights() const { return range_; }

    /// How many triangles each sheet of each layer has in the bands that were chosen from.
    const std::vector<std::int64_t>& TriangleCounts() const { return triangleCounts_; }

private:
    enum class Sheet { Lower, Upper };

    std::size_t Slots(std::size_t rows) const { return rows * stack_.layers.size(); }
    std::size_t RowSlot(std::size_t layer, std::int32_t row) const {
        return layer * 4 + static_cast<std::size_t>(row & 3);
    }
    std::size_t SheetSlot(Sheet sheet, std::size_t layer) const {
        return 2 * layer + (sheet == Sheet::Upper ? 1 : 0);
    }

    void ReadRow(std::int32_t row);

    template <typename Rows>
    auto Pair(Rows& rows, std::size_t layer, std::int32_t band) {
        return std::pair{rows.At(RowSlot(layer, band)), rows.At(RowSlot(layer, band + 1))};
    }
    PlaceRows Places(PaddedRows<std::int32_t>& rows, std::size_t layer, std::int32_t band) {
        const auto [front, back] = Pair(rows, layer, band);
        return {front, back};
    }
    HeightRows Heights(PaddedRows<float>& rows, std::size_t layer, std::int32_t band) {
        const auto [front, back] = Pair(rows, layer, band);
        return {front, back};
    }

    /// Mask of the squares of a band that lie inside a layer: of this band or the one before it.
    const std::int32_t* BuriedSquares(Sheet sheet, std::size_t layer, std::int32_t band);

    void ChooseOfLayer(std::size_t layer, std::int32_t band, std::uint8_t* bytes);

    void ChooseOfSheet(Sheet sheet, std::size_t layer, std::int32_t band,
                       const TriangleMasks& triangles);

    LevelRow LevelPlaces(std::int32_t row) {
        return {levelCodes_.At(RowSlot(0, row)), levelHeights_.At(RowSlot(0, row))};
    }

    void MarkLevelSquares(std::int32_t band, std::uint8_t* marks);

    /// Where a row of a sheet is on the picture.
    PixelRow PixelsOf(Sheet sheet, std::size_t layer, std::int32_t row);

    const LayerStack& stack_;
    const Sight& sight_;
    std::span<const Shadow> shadows_;
    const PictureView& view_;
    PaddedRows<float> tops_;
    PaddedRows<float> bottoms_;
    PaddedRows<std::int32_t> thick_;
    PaddedRows<std::int32_t> aboveUpper_;
    PaddedRows<std::int32_t> aboveLower_;
    PaddedRows<std::int32_t> standsOn_;
    PaddedRows<std::int32_t> buried_;
    std::vector<std::int32_t> buriedBands_;  ///< which bands these are
    PaddedRows<std::int32_t> masks_;
    PaddedRows<std::int32_t> levelCodes_;
    PaddedRows<float> levelHeights_;
    PaddedRows<std::int32_t> uneven_;
    PaddedRows<float> pixels_;             ///< x and y of two rows of both sheets of every layer
    std::vector<std::int32_t> pixelRows_;  ///< which rows these are
    PaddedRows<float> cover_;
    std::vector<SheetRow> sheets_;
    std::vector<std::int64_t> triangleCounts_;
    HeightRange range_ = noHeights;
};

}  // namespace zelmo
