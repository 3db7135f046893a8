#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "render/layer_stack.h"
#include "render/padded_rows.h"
#include "render/picture_view.h"
#include "render/roofs.h"
#include "render/sight.h"
#include "render/visible_lanes.h"

namespace zelmo {

// What a square of a mesh has to draw, as bits beside those of what it has at all.
constexpr std::uint8_t drawLowerFront = 4;
constexpr std::uint8_t drawUpperFront = 8;
constexpr std::uint8_t drawLowerBack = 16;
constexpr std::uint8_t drawUpperBack = 32;

constexpr HeightRange noHeights{std::numeric_limits<float>::max(),
                                std::numeric_limits<float>::lowest(), 0.0f};

/// Looks at the bands of squares from the front to the back, and keeps what it needs of four rows
/// of places and three bands.
class BandChooser {
public:
    BandChooser(const LayerStack& stack, const Sight& sight, std::span<const Roof> roofs,
                const PictureView& view);

    /// Chooses the squares of these bands. `bytesOf(layer, band)` tells where their bytes go.
    template <typename BytesOf>
    void Choose(std::int32_t firstBand, std::int32_t endBand, BytesOf&& bytesOf) {
        const std::int32_t before = std::max(firstBand - 1, 0);
        for (std::int32_t row = before; row <= firstBand + 1; ++row) {
            ReadRow(row);
        }
        for (std::int32_t band = before; band <= firstBand; ++band) {
            BuryBand(band);
        }
        for (std::int32_t band = firstBand; band < endBand; ++band) {
            if (band + 2 < stack_.rows) {
                ReadRow(band + 2);
                BuryBand(band + 1);
            }
            for (std::size_t layer = 0; layer < stack_.layers.size(); ++layer) {
                ChooseOfLayer(layer, band, bytesOf(layer, band));
            }
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
    std::size_t BandSlot(std::size_t layer, std::int32_t band) const {
        return layer * 3 + static_cast<std::size_t>(band % 3);
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

    /// Finds the squares of a band that lie inside a layer, on both sheets of all layers.
    void BuryBand(std::int32_t band);

    void BurySheet(const PlaceRows& places, const HeightRows& heights, std::int32_t* buried);

    void ChooseOfLayer(std::size_t layer, std::int32_t band, std::uint8_t* bytes);

    void ChooseOfSheet(Sheet sheet, std::size_t layer, std::int32_t band,
                       const TriangleMasks& triangles);

    /// Takes the triangles out that the eye could see only through the places that a roof hides.
    void RemoveUnderRoof(const Roof& roof, const HeightRows& heights, std::int32_t band,
                         const TriangleMasks& triangles) const;

    /// Where a row of a sheet is on the picture.
    PixelRow PixelsOf(Sheet sheet, std::size_t layer, std::int32_t row);

    const LayerStack& stack_;
    const Sight& sight_;
    std::span<const Roof> roofs_;
    const PictureView& view_;
    PaddedRows<float> tops_;
    PaddedRows<float> bottoms_;
    PaddedRows<std::int32_t> thick_;
    PaddedRows<std::int32_t> aboveUpper_;
    PaddedRows<std::int32_t> aboveLower_;
    PaddedRows<std::int32_t> standsOn_;
    PaddedRows<std::int32_t> buriedUpper_;
    PaddedRows<std::int32_t> buriedLower_;
    PaddedRows<std::int32_t> masks_;
    PaddedRows<float> pixels_;             ///< x and y of two rows of both sheets of every layer
    std::vector<std::int32_t> pixelRows_;  ///< which rows these are
    PaddedRows<float> cover_;
    std::vector<SheetRow> sheets_;
    std::vector<std::int64_t> triangleCounts_;
    HeightRange range_ = noHeights;
};

}  // namespace zelmo
