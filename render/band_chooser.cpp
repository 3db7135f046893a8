#include "render/band_chooser.h"

#include <array>

#include "model/process_model.h"

namespace zelmo {

namespace {

/// The pixels of a row of places.
Projection ProjectionOfRow(const PictureView& view, float spacing, std::int32_t row) {
    const Matrix4& m = view.transform;
    const float y = static_cast<float>(row) * spacing;
    const float halfWidth = static_cast<float>(view.width) * 0.5f;
    const float halfHeight = static_cast<float>(view.height) * 0.5f;
    return {m[4] * y + m[12],
            m[0] * spacing,
            m[8],
            m[5] * y + m[13],
            m[1] * spacing,
            m[9],
            m[7] * y + m[15],
            m[3] * spacing,
            m[11],
            static_cast<float>(view.x) + halfWidth,
            halfWidth,
            static_cast<float>(view.y) + halfHeight,
            halfHeight};
}

}  // namespace

BandChooser::BandChooser(const LayerStack& stack, const Sight& sight, std::span<const Roof> roofs,
                         const PictureView& view)
    : stack_(stack),
      sight_(sight),
      roofs_(roofs),
      view_(view),
      tops_(Slots(4), stack.cols),
      bottoms_(Slots(4), stack.cols),
      thick_(Slots(4), stack.cols),
      aboveUpper_(Slots(4), stack.cols),
      aboveLower_(Slots(4), stack.cols),
      standsOn_(Slots(4), stack.cols),
      buriedUpper_(Slots(3), stack.cols),
      buriedLower_(Slots(3), stack.cols),
      masks_(6, stack.cols),
      pixels_(Slots(2 * 2 * 2), stack.cols),
      pixelRows_(Slots(2 * 2), -1),
      cover_(2, stack.cols),
      triangleCounts_(stack.layers.size()) {
    const std::vector<float> edge(static_cast<std::size_t>(stack.cols), sight.edgeCover);
    std::vector<float> inside(edge.size(), sight.cover);
    inside.front() = inside.back() = sight.edgeCover;
    cover_.Fill(0, inside);
    cover_.Fill(1, edge);
}

void BandChooser::ReadRow(std::int32_t row) {
    std::vector<SheetRow>& sheets = sheets_;
    sheets.resize(stack_.layers.size());
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        const MeshWindow& window = stack_.layers[i];
        const auto cols = static_cast<std::size_t>(stack_.cols);
        const std::size_t start = window.GridIndex(0, row);
        const std::size_t slot = RowSlot(i, row);
        tops_.Fill(slot, std::span(window.layer.top).subspan(start, cols));
        bottoms_.Fill(slot, std::span(window.layer.bottom).subspan(start, cols));
        sheets[i] = {tops_.At(slot),    bottoms_.At(slot),    IsOpaque(window.layer),
                     thick_.At(slot),   aboveUpper_.At(slot), aboveLower_.At(slot),
                     standsOn_.At(slot)};
    }
    const bool isBackEdge = row == stack_.rows - 1;
    ZELMO_PICK_LANES(FindCoverOfRow)
    (sheets.data(), stack_.LayerCount(), cover_.At(isBackEdge ? 1 : 0), stack_.cols, range_);
}

void BandChooser::BuryBand(std::int32_t band) {
    for (std::size_t layer = 0; layer < stack_.layers.size(); ++layer) {
        const std::size_t slot = BandSlot(layer, band);
        BurySheet(Places(aboveUpper_, layer, band), Heights(tops_, layer, band),
                  buriedUpper_.At(slot));
        BurySheet(Places(aboveLower_, layer, band), Heights(bottoms_, layer, band),
                  buriedLower_.At(slot));
    }
}

void BandChooser::BurySheet(const PlaceRows& places, const HeightRows& heights,
                            std::int32_t* buried) {
    const std::int32_t squares = stack_.cols - 1;
    ZELMO_PICK_LANES(FindBuriedSquares)(places, heights, sight_.eye, squares, buried);
    // What lies outside the window hides nothing and is no way out.
    buried[-1] = -1;
    buried[squares] = -1;
}

void BandChooser::ChooseOfLayer(std::size_t layer, std::int32_t band, std::uint8_t* bytes) {
    const std::int32_t squares = stack_.cols - 1;
    // In the order of the bits: what is there, and what is drawn of it.
    std::array<std::int32_t*, 6> masks{};
    for (std::size_t i = 0; i < masks.size(); ++i) {
        masks[i] = masks_.At(i);
    }
    const std::array<TriangleMasks, 3> three{TriangleMasks{masks[0], masks[1]},
                                             TriangleMasks{masks[2], masks[4]},
                                             TriangleMasks{masks[3], masks[5]}};
    if (!ZELMO_PICK_LANES(FindTriangles)(Places(thick_, layer, band), squares, three.data())) {
        std::fill_n(bytes, squares, std::uint8_t{0});
        return;
    }
    ChooseOfSheet(Sheet::Lower, layer, band, three[1]);
    ChooseOfSheet(Sheet::Upper, layer, band, three[2]);
    triangleCounts_[layer] += ZELMO_PICK_LANES(PackMasks)(masks.data(), squares, bytes);
}

void BandChooser::ChooseOfSheet(Sheet sheet, std::size_t layer, std::int32_t band,
                                const TriangleMasks& triangles) {
    const std::int32_t squares = stack_.cols - 1;
    if (sheet == Sheet::Lower &&
        !ZELMO_PICK_LANES(RemoveStanding)(Places(standsOn_, layer, band), squares, triangles)) {
        return;
    }
    if (band > 0) {  // the first band touches the front walls
        PaddedRows<std::int32_t>& buried = sheet == Sheet::Upper ? buriedUpper_ : buriedLower_;
        const std::int32_t next = std::min(band + 1, stack_.rows - 2);
        const std::array<const std::int32_t*, 3> rows{buried.At(BandSlot(layer, band - 1)),
                                                      buried.At(BandSlot(layer, band)),
                                                      buried.At(BandSlot(layer, next))};
        if (!ZELMO_PICK_LANES(RemoveBuried)(rows.data(), squares, triangles)) {
            return;
        }
    }
    for (const Roof& roof : roofs_) {
        if (roof.place > layer) {
            RemoveUnderRoof(roof, Heights(sheet == Sheet::Upper ? tops_ : bottoms_, layer, band),
                            band, triangles);
        }
    }
    ZELMO_PICK_LANES(RemoveUncovering)
    (PixelsOf(sheet, layer, band), PixelsOf(sheet, layer, band + 1), sight_.margin, squares,
     triangles);
}

void BandChooser::RemoveUnderRoof(const Roof& roof, const HeightRows& heights, std::int32_t band,
                                  const TriangleMasks& triangles) const {
    const EyeRange& eye = sight_.eye;
    const float perCell = 1.0f / eye.spacing;
    const float eyeCol = sight_.eyeX * perCell;
    const float eyeRow = sight_.eyeY * perCell;
    const auto row = static_cast<float>(band);
    for (std::int32_t i = 0; i + 1 < stack_.cols; ++i) {
        if ((triangles.front[i] | triangles.back[i]) == 0) {
            continue;
        }
        const float z = heights.front[i];
        const float lowest = std::min(std::min(z, heights.front[i + 1]),
                                      std::min(heights.back[i], heights.back[i + 1]));
        const float highest = std::max(std::max(z, heights.front[i + 1]),
                                       std::max(heights.back[i], heights.back[i + 1]));
        // On a slope so gentle that the square's shadow on the roof is small.
        const float above = eye.height - highest;
        const bool isGentle = (highest - lowest) * eye.farthest <= eye.spacing * above;
        if (!(isGentle && highest <= roof.height)) {
            continue;
        }
        const float way = (roof.height - z) / (eye.height - z);
        const float col = static_cast<float>(i) + (eyeCol - static_cast<float>(i)) * way;
        const float shadowRow = row + (eyeRow - row) * way;
        if (shadowRow >= 0.0f && col >= 0.0f && way < 1.0f) {
            const auto place =
                static_cast<std::size_t>(shadowRow) * static_cast<std::size_t>(stack_.cols) +
                static_cast<std::size_t>(col);
            if (roof.hides[place] != 0) {
                triangles.front[i] = triangles.back[i] = 0;
            }
        }
    }
}

PixelRow BandChooser::PixelsOf(Sheet sheet, std::size_t layer, std::int32_t row) {
    const std::size_t slot = layer * 4 + (sheet == Sheet::Upper ? 2 : 0) + (row & 1);
    const PixelRow pixels{pixels_.At(2 * slot), pixels_.At(2 * slot + 1)};
    if (pixelRows_[slot] != row) {
        PaddedRows<float>& heights = sheet == Sheet::Upper ? tops_ : bottoms_;
        ZELMO_PICK_LANES(ProjectRow)
        (ProjectionOfRow(view_, stack_.spacing, row), heights.At(RowSlot(layer, row)), stack_.cols,
         pixels);
        pixelRows_[slot] = row;
    }
    return pixels;
}

}  // namespace zelmo
