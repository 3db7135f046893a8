#include "render/visible/row_chooser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "base/padded_rows.h"
#include "render/visible/chosen_triangles.h"
#include "render/visible/picture_view.h"
#include "render/visible/shadows.h"
#include "render/visible/sight.h"

namespace zelmo {

namespace {

enum class Sheet { Lower, Upper };

/// Looks at the rows of squares from the front to the back, and keeps what it needs of the last
/// rows of positions and squares.
class RowChooser {
public:
    RowChooser(const LayerStack& stack, const Choice& choice);

    void Choose(std::int32_t firstSquareRow, std::int32_t endSquareRow, ChosenTriangles& chosen);

    const HeightRange& Heights() const { return range_; }

private:
    std::size_t Slots(std::size_t rows) const { return rows * stack_.layers.size(); }
    std::size_t RowSlot(std::size_t layer, std::int32_t row) const {
        return layer * 4 + static_cast<std::size_t>(row & 3);
    }
    std::size_t SheetSlot(Sheet sheet, std::size_t layer) const {
        return 2 * layer + (sheet == Sheet::Upper ? 1 : 0);
    }

    void ReadRow(std::int32_t row);

    template <typename Rows>
    auto Pair(Rows& rows, std::size_t layer, std::int32_t squareRow) {
        return std::pair{rows.At(RowSlot(layer, squareRow)),
                         rows.At(RowSlot(layer, squareRow + 1))};
    }
    IndexRows Indices(PaddedRows<std::int32_t>& rows, std::size_t layer, std::int32_t squareRow) {
        const auto [front, back] = Pair(rows, layer, squareRow);
        return {front, back};
    }
    HeightRows Heights(PaddedRows<float>& rows, std::size_t layer, std::int32_t squareRow) {
        const auto [front, back] = Pair(rows, layer, squareRow);
        return {front, back};
    }

    /// Mask of the squares of a row of squares that lie inside a layer: of this row or the one
    /// before it.
    const std::int32_t* BuriedSquares(Sheet sheet, std::size_t layer, std::int32_t squareRow);

    void ChooseOfLayer(std::size_t layer, std::int32_t squareRow, std::uint8_t* bytes);

    /// Each rule in turn takes triangles out.
    void ChooseOfSheet(Sheet sheet, std::size_t layer, std::int32_t squareRow,
                       const TriangleMasks& triangles);
    bool RemoveBuriedOnes(Sheet sheet, std::size_t layer, std::int32_t squareRow,
                          const TriangleMasks& triangles);
    void RemoveShadowedOnes(Sheet sheet, std::size_t layer, std::int32_t squareRow,
                            const TriangleMasks& triangles);

    /// Where a row of a sheet is on the picture.
    PixelRow PixelsOf(Sheet sheet, std::size_t layer, std::int32_t row);

    const LayerStack& stack_;
    const Sight& sight_;
    std::span<const Shadow> shadows_;
    const PictureView& view_;
    HidingRules rules_;
    PaddedRows<float> tops_;
    PaddedRows<float> bottoms_;
    PaddedRows<std::int32_t> thick_;
    PaddedRows<std::int32_t> aboveUpper_;
    PaddedRows<std::int32_t> aboveLower_;
    PaddedRows<std::int32_t> standsOn_;
    PaddedRows<std::int32_t> buried_;
    std::vector<std::int32_t> buriedSquareRows_;  ///< which rows of squares these are
    PaddedRows<std::int32_t> masks_;
    PaddedRows<float> pixels_;             ///< x and y of two rows of both sheets of every layer
    std::vector<std::int32_t> pixelRows_;  ///< which rows these are
    PaddedRows<float> hidingDepths_;
    std::vector<SheetRow> sheets_;
    HeightRange range_ = noHeights;
};

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

RowChooser::RowChooser(const LayerStack& stack, const Choice& choice)
    : stack_(stack),
      sight_(choice.sight),
      shadows_(choice.shadows),
      view_(choice.view),
      rules_(choice.rules),
      tops_(Slots(4), stack.cols),
      bottoms_(Slots(4), stack.cols),
      thick_(Slots(4), stack.cols),
      aboveUpper_(Slots(4), stack.cols),
      aboveLower_(Slots(4), stack.cols),
      standsOn_(Slots(4), stack.cols),
      buried_(Slots(4), stack.cols),
      buriedSquareRows_(Slots(4), -1),
      masks_(6, stack.cols),
      pixels_(Slots(8), stack.cols),
      pixelRows_(Slots(4), -1),
      hidingDepths_(2, stack.cols) {
    const std::vector<float> edge(static_cast<std::size_t>(stack.cols), sight_.edgeHidingDepth);
    std::vector<float> inside(edge.size(), sight_.hidingDepth);
    inside.front() = inside.back() = sight_.edgeHidingDepth;
    hidingDepths_.Fill(0, inside);
    hidingDepths_.Fill(1, edge);
}

void RowChooser::Choose(std::int32_t firstSquareRow, std::int32_t endSquareRow,
                        ChosenTriangles& chosen) {
    for (std::int32_t row = std::max(firstSquareRow - 1, 0); row <= firstSquareRow; ++row) {
        ReadRow(row);
    }
    for (std::int32_t squareRow = firstSquareRow; squareRow < endSquareRow; ++squareRow) {
        ReadRow(squareRow + 1);
        for (std::size_t layer = 0; layer < stack_.layers.size(); ++layer) {
            ChooseOfLayer(layer, squareRow, chosen.layers[layer].Row(squareRow));
        }
    }
}

void RowChooser::ReadRow(std::int32_t row) {
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
    ZELMO_PICK_LANES(FindNeighbourLayers)
    (sheets.data(), stack_.LayerCount(), hidingDepths_.At(isBackEdge ? 1 : 0), stack_.cols, range_);
}

const std::int32_t* RowChooser::BuriedSquares(Sheet sheet, std::size_t layer,
                                              std::int32_t squareRow) {
    const std::size_t slot = SheetSlot(sheet, layer) * 2 + static_cast<std::size_t>(squareRow & 1);
    std::int32_t* buried = buried_.At(slot);
    if (buriedSquareRows_[slot] != squareRow) {
        const bool isUpper = sheet == Sheet::Upper;
        const std::int32_t squares = stack_.cols - 1;
        ZELMO_PICK_LANES(FindBuriedSquares)
        (Indices(isUpper ? aboveUpper_ : aboveLower_, layer, squareRow),
         Heights(isUpper ? tops_ : bottoms_, layer, squareRow), sight_.eye, squares, buried);
        // What lies outside the window hides nothing and is no way out.
        buried[-1] = -1;
        buried[squares] = -1;
        buriedSquareRows_[slot] = squareRow;
    }
    return buried;
}

void RowChooser::ChooseOfLayer(std::size_t layer, std::int32_t squareRow, std::uint8_t* bytes) {
    const std::int32_t squares = stack_.cols - 1;
    // In the order of the bits: what is there, and what is drawn of it.
    std::array<std::int32_t*, 6> masks{};
    for (std::size_t i = 0; i < masks.size(); ++i) {
        masks[i] = masks_.At(i);
    }
    const std::array<TriangleMasks, 3> three{TriangleMasks{masks[0], masks[1]},
                                             TriangleMasks{masks[2], masks[4]},
                                             TriangleMasks{masks[3], masks[5]}};
    if (!ZELMO_PICK_LANES(FindTriangles)(Indices(thick_, layer, squareRow), squares,
                                         three.data())) {
        std::fill_n(bytes, squares, std::uint8_t{0});
        return;
    }
    ChooseOfSheet(Sheet::Lower, layer, squareRow, three[1]);
    ChooseOfSheet(Sheet::Upper, layer, squareRow, three[2]);
    ZELMO_PICK_LANES(PackMasks)(masks.data(), squares, bytes);
}

void RowChooser::ChooseOfSheet(Sheet sheet, std::size_t layer, std::int32_t squareRow,
                               const TriangleMasks& triangles) {
    const std::int32_t squares = stack_.cols - 1;
    if (rules_.standing && sheet == Sheet::Lower &&
        !ZELMO_PICK_LANES(RemoveStanding)(Indices(standsOn_, layer, squareRow), squares,
                                          triangles)) {
        return;
    }
    if (rules_.buried && !RemoveBuriedOnes(sheet, layer, squareRow, triangles)) {
        return;
    }
    RemoveShadowedOnes(sheet, layer, squareRow, triangles);
    if (rules_.betweenPixels) {
        ZELMO_PICK_LANES(RemoveUncovering)
        (PixelsOf(sheet, layer, squareRow), PixelsOf(sheet, layer, squareRow + 1), sight_.margin,
         squares, triangles);
    }
}

bool RowChooser::RemoveBuriedOnes(Sheet sheet, std::size_t layer, std::int32_t squareRow,
                                  const TriangleMasks& triangles) {
    if (squareRow == 0) {  // it touches the front walls
        return true;
    }
    const std::array<const std::int32_t*, 2> rows{BuriedSquares(sheet, layer, squareRow - 1),
                                                  BuriedSquares(sheet, layer, squareRow)};
    return ZELMO_PICK_LANES(RemoveBuried)(rows.data(), stack_.cols - 1, triangles);
}

void RowChooser::RemoveShadowedOnes(Sheet sheet, std::size_t layer, std::int32_t squareRow,
                                    const TriangleMasks& triangles) {
    const std::size_t start = static_cast<std::size_t>(squareRow) * stack_.Squares();
    for (const Shadow& shadow : shadows_) {
        ZELMO_PICK_LANES(RemoveShadowed)
        (Heights(sheet == Sheet::Upper ? tops_ : bottoms_, layer, squareRow),
         {shadow.lowest.get() + start, shadow.highest.get() + start}, stack_.cols - 1, triangles);
    }
}

PixelRow RowChooser::PixelsOf(Sheet sheet, std::size_t layer, std::int32_t row) {
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

}  // namespace

HeightRange ChooseRows(const Choice& choice, std::int32_t firstRow, std::int32_t endRow,
                       ChosenTriangles& chosen) {
    RowChooser chooser(chosen.stack, choice);
    chooser.Choose(firstRow, endRow, chosen);
    return chooser.Heights();
}

}  // namespace zelmo
