#include "render/visible/band_chooser.h"

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

BandChooser::BandChooser(const LayerStack& stack, const Sight& sight,
                         std::span<const Shadow> shadows, const PictureView& view)
    : stack_(stack),
      sight_(sight),
      shadows_(shadows),
      view_(view),
      tops_(Slots(4), stack.cols),
      bottoms_(Slots(4), stack.cols),
      thick_(Slots(4), stack.cols),
      aboveUpper_(Slots(4), stack.cols),
      aboveLower_(Slots(4), stack.cols),
      standsOn_(Slots(4), stack.cols),
      buried_(Slots(2 * 2), stack.cols),
      buriedBands_(Slots(2 * 2), -1),
      masks_(6, stack.cols),
      levelCodes_(4, stack.cols),
      levelHeights_(4, stack.cols),
      uneven_(1, stack.cols),
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
    ZELMO_PICK_LANES(FindLevelPlaces)
    (sheets.data(), stack_.LayerCount(), sight_.level, stack_.cols, LevelPlaces(row));
}

const std::int32_t* BandChooser::BuriedSquares(Sheet sheet, std::size_t layer, std::int32_t band) {
    const std::size_t slot = SheetSlot(sheet, layer) * 2 + static_cast<std::size_t>(band & 1);
    std::int32_t* buried = buried_.At(slot);
    if (buriedBands_[slot] != band) {
        const bool isUpper = sheet == Sheet::Upper;
        const std::int32_t squares = stack_.cols - 1;
        ZELMO_PICK_LANES(FindBuriedSquares)
        (Places(isUpper ? aboveUpper_ : aboveLower_, layer, band),
         Heights(isUpper ? tops_ : bottoms_, layer, band), sight_.eye, squares, buried);
        // What lies outside the window hides nothing and is no way out.
        buried[-1] = -1;
        buried[squares] = -1;
        buriedBands_[slot] = band;
    }
    return buried;
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
    if (!ZELMO_PICK_LANES(FindTriangles)(Places(thick_, layer, band), squares, three.data(),
                                         uneven_.At(0))) {
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
        const std::array<const std::int32_t*, 2> rows{BuriedSquares(sheet, layer, band - 1),
                                                      BuriedSquares(sheet, layer, band)};
        if (!ZELMO_PICK_LANES(RemoveBuried)(rows.data(), squares, triangles)) {
            return;
        }
    }
    const std::size_t start = static_cast<std::size_t>(band) * stack_.Squares();
    for (const Shadow& shadow : shadows_) {
        ZELMO_PICK_LANES(RemoveShadowed)
        (Heights(sheet == Sheet::Upper ? tops_ : bottoms_, layer, band),
         {shadow.lowest.get() + start, shadow.highest.get() + start}, squares, triangles);
    }
    ZELMO_PICK_LANES(RemoveUncovering)
    (PixelsOf(sheet, layer, band), PixelsOf(sheet, layer, band + 1), sight_.margin, squares,
     triangles);
}

void BandChooser::MarkLevelSquares(std::int32_t band, std::uint8_t* marks) {
    ZELMO_PICK_LANES(FindLevelSquares)
    (LevelPlaces(band), LevelPlaces(band + 1), uneven_.At(0), stack_.cols - 1, marks);
}

PixelRow BandChooser::PixelsOf(Sheet sheet, std::size_t layer, std::int32_t row) {
    const std::size_t slot = SheetSlot(sheet, layer) * 2 + static_cast<std::size_t>(row & 1);
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
