#include "render/visible_triangles.h"

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <optional>

#include "model/process_model.h"
#include "model/row_bands.h"
#include "render/layer_stack.h"
#include "render/mesh_numbers.h"
#include "render/mesh_window.h"
#include "render/roofs.h"
#include "render/sight.h"
#include "render/visible_lanes.h"

namespace zelmo {

namespace {

// What a square of a mesh has to draw, as bits beside those of what it has at all.
constexpr std::uint8_t drawLowerFront = 4;
constexpr std::uint8_t drawUpperFront = 8;
constexpr std::uint8_t drawLowerBack = 16;
constexpr std::uint8_t drawUpperBack = 32;

constexpr std::int32_t smallestBand = 16;

constexpr HeightRange noHeights{std::numeric_limits<float>::max(),
                                std::numeric_limits<float>::lowest(), 0.0f};

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

/// Rows of values, padded for the lane kernels.
template <typename T>
class PaddedRows {
public:
    PaddedRows(std::size_t count, std::int32_t cols)
        : stride_(static_cast<std::size_t>(cols) + 3 * rowPad), values_(count * stride_) {}

    T* At(std::size_t row) { return values_.data() + row * stride_ + rowPad; }

    /// Copies a row and repeats its last value behind it.
    void Fill(std::size_t row, std::span<const T> values) {
        T* start = At(row);
        std::copy(values.begin(), values.end(), start);
        std::fill_n(start + values.size(), rowPad, values.back());
    }

private:
    std::size_t stride_;
    std::vector<T> values_;
};

}  // namespace

/// The choice of a picture: bits for every square of every layer's mesh.
struct VisibleTriangles::Choice {
    Choice(LayerStack theStack, const Sight& theSight, const PictureView& theView)
        : stack(std::move(theStack)),
          sight(theSight),
          view(theView),
          squares(stack.layers.size() * static_cast<std::size_t>(stack.rows - 1) *
                  stack.Squares()) {}

    std::uint8_t* Band(std::size_t layer, std::int32_t band) {
        const auto bands = static_cast<std::size_t>(stack.rows - 1);
        return squares.data() + (layer * bands + static_cast<std::size_t>(band)) * stack.Squares();
    }

    std::span<const std::uint32_t> WriteIndices(std::size_t layer);

    LayerStack stack;
    Sight sight;
    PictureView view;
    std::vector<std::uint8_t> squares;
    std::vector<std::uint32_t> indices;
};

namespace {

enum class Sheet { Lower, Upper };

/// Looks at the bands of squares from the front to the back, and keeps what it needs of four rows
/// of places and three bands.
class BandChooser {
public:
    BandChooser(const LayerStack& stack, const Sight& sight, std::span<const Roof> roofs,
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
    std::size_t Slots(std::size_t rows) const { return rows * stack_.layers.size(); }
    std::size_t RowSlot(std::size_t layer, std::int32_t row) const {
        return layer * 4 + static_cast<std::size_t>(row & 3);
    }
    std::size_t BandSlot(std::size_t layer, std::int32_t band) const {
        return layer * 3 + static_cast<std::size_t>(band % 3);
    }

    void ReadRow(std::int32_t row) {
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
    void BuryBand(std::int32_t band) {
        for (std::size_t layer = 0; layer < stack_.layers.size(); ++layer) {
            const std::size_t slot = BandSlot(layer, band);
            BurySheet(Places(aboveUpper_, layer, band), Heights(tops_, layer, band),
                      buriedUpper_.At(slot));
            BurySheet(Places(aboveLower_, layer, band), Heights(bottoms_, layer, band),
                      buriedLower_.At(slot));
        }
    }

    void BurySheet(const PlaceRows& places, const HeightRows& heights, std::int32_t* buried) {
        const std::int32_t squares = stack_.cols - 1;
        ZELMO_PICK_LANES(FindBuriedSquares)(places, heights, sight_.eye, squares, buried);
        // What lies outside the window hides nothing and is no way out.
        buried[-1] = -1;
        buried[squares] = -1;
    }

    void ChooseOfLayer(std::size_t layer, std::int32_t band, std::uint8_t* bytes) {
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

    void ChooseOfSheet(Sheet sheet, std::size_t layer, std::int32_t band,
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
                RemoveUnderRoof(roof,
                                Heights(sheet == Sheet::Upper ? tops_ : bottoms_, layer, band),
                                band, triangles);
            }
        }
        ZELMO_PICK_LANES(RemoveUncovering)
        (PixelsOf(sheet, layer, band), PixelsOf(sheet, layer, band + 1), sight_.margin, squares,
         triangles);
    }

    /// Takes the triangles out that the eye could see only through the places that a roof hides.
    void RemoveUnderRoof(const Roof& roof, const HeightRows& heights, std::int32_t band,
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

    /// Where a row of a sheet is on the picture.
    PixelRow PixelsOf(Sheet sheet, std::size_t layer, std::int32_t row) {
        const std::size_t slot = layer * 4 + (sheet == Sheet::Upper ? 2 : 0) + (row & 1);
        const PixelRow pixels{pixels_.At(2 * slot), pixels_.At(2 * slot + 1)};
        if (pixelRows_[slot] != row) {
            PaddedRows<float>& heights = sheet == Sheet::Upper ? tops_ : bottoms_;
            ZELMO_PICK_LANES(ProjectRow)
            (ProjectionOfRow(view_, stack_.spacing, row), heights.At(RowSlot(layer, row)),
             stack_.cols, pixels);
            pixelRows_[slot] = row;
        }
        return pixels;
    }

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

/// What a band of a mesh adds to its vertices, and to the indices that are drawn.
struct BandCounts {
    std::uint32_t vertices = 0;
    std::uint32_t indices = 0;
};

std::uint32_t CountDrawn(const std::uint8_t* squares, std::size_t count) {
    std::uint32_t triangles = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned bits = squares[i];
        triangles += ((bits >> 2) & 1) + ((bits >> 3) & 1) + ((bits >> 4) & 1) + ((bits >> 5) & 1);
    }
    return triangles * 3;
}

/// Writes the indices of a band's triangles that are drawn; returns their end.
std::uint32_t* WriteBand(const std::uint8_t* squares, std::size_t count, const NumberRow& front,
                         const NumberRow& back, std::uint32_t* out) {
    const auto write = [&](std::uint32_t a, std::uint32_t b, std::uint32_t c) {
        out[0] = a;
        out[1] = b;
        out[2] = c;
        out += 3;
    };
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned bits = squares[i];
        if ((bits & drawLowerFront) != 0) {
            write(front[i].lower, front[i + 1].lower, back[i].lower);
        }
        if ((bits & drawUpperFront) != 0) {
            write(front[i].upper, front[i + 1].upper, back[i].upper);
        }
        if ((bits & drawLowerBack) != 0) {
            write(front[i + 1].lower, back[i + 1].lower, back[i].lower);
        }
        if ((bits & drawUpperBack) != 0) {
            write(front[i + 1].upper, back[i + 1].upper, back[i].upper);
        }
    }
    return out;
}

/// Whether a layer's mesh has been made from heights with so many triangles on each sheet.
bool IsMeshOf(const MeshWindow& window, std::int64_t sheetTriangles) {
    std::int64_t walls = 0;
    for (std::int32_t col = 0; col + 1 < window.cols; ++col) {
        walls += HasWall(window, col) ? 1 : 0;
    }
    return window.layer.indexCount == 6 * (sheetTriangles + walls);
}

/// Numbers the vertices of some bands and writes the indices that are drawn. Only what is drawn
/// needs numbers: a band's own, and those of the row that it shares with the band before it.
template <typename Choice>
void WriteBands(Choice& choice, std::size_t layer, const std::vector<BandCounts>& starts,
                std::int32_t first, std::int32_t end) {
    const std::size_t count = choice.stack.Squares();
    const auto draws = [&](std::int32_t band) {
        const auto i = static_cast<std::size_t>(band);
        return band >= first && band < end && starts[i + 1].indices > starts[i].indices;
    };
    NumberRow front(count + 1);
    NumberRow back(count + 1);
    std::int32_t numbered = -1;  // the band whose back row has its numbers
    for (std::int32_t band = std::max(first - 1, 0); band < end; ++band) {
        if (!draws(band) && !draws(band + 1)) {
            continue;
        }
        const std::uint8_t* squares = choice.Band(layer, band);
        front.swap(back);
        if (band == 0 || numbered != band - 1) {
            MarkBackRow(band > 0 ? choice.Band(layer, band - 1) : nullptr, count, front);
        }
        const BandCounts& start = starts[static_cast<std::size_t>(band)];
        NumberBand(squares, count, front, back, start.vertices);
        numbered = band;
        if (draws(band)) {
            WriteBand(squares, count, front, back, choice.indices.data() + start.indices);
        }
    }
}

}  // namespace

/// The indices to draw of the layer at this place in the stack.
std::span<const std::uint32_t> VisibleTriangles::Choice::WriteIndices(std::size_t layer) {
    const std::int32_t bands = stack.rows - 1;
    // Each band's own counts stand behind its place until they are summed up.
    std::vector<BandCounts> starts(static_cast<std::size_t>(bands) + 1);
    ForRowBands(bands, smallestBand, [&](std::int32_t first, std::int32_t end) {
        for (std::int32_t band = first; band < end; ++band) {
            const std::uint8_t* before = band > 0 ? Band(layer, band - 1) : nullptr;
            starts[static_cast<std::size_t>(band) + 1] = {
                CountNewVertices(before, Band(layer, band), stack.Squares()),
                CountDrawn(Band(layer, band), stack.Squares())};
        }
    });
    for (std::size_t i = 1; i < starts.size(); ++i) {
        starts[i].vertices += starts[i - 1].vertices;
        starts[i].indices += starts[i - 1].indices;
    }
    indices.resize(starts.back().indices);
    ForRowBands(bands, smallestBand, [&](std::int32_t first, std::int32_t end) {
        WriteBands(*this, layer, starts, first, end);
    });
    VisitWall(
        stack.layers[layer], starts.back().vertices,
        [this](std::int32_t, bool, std::uint32_t number, bool) { indices.push_back(number); });
    return indices;
}

VisibleTriangles::VisibleTriangles(const ProcessModel& model, const PictureView& view) {
    std::optional<LayerStack> stack = FindStack(model);
    const std::optional<Sight> sight = stack ? FindSight(*stack, view) : std::nullopt;
    if (!sight) {
        return;
    }
    auto choice = std::make_unique<Choice>(std::move(*stack), *sight, view);
    const std::vector<Roof> roofs = FindRoofs(choice->stack, choice->sight);
    const std::size_t layerCount = choice->stack.layers.size();
    std::mutex mutex;
    HeightRange heights = noHeights;
    std::vector<std::int64_t> triangles(layerCount);
    ForRowBands(choice->stack.rows - 1, smallestBand, [&](std::int32_t first, std::int32_t end) {
        BandChooser chooser(choice->stack, choice->sight, roofs, choice->view);
        chooser.Choose(first, end, [&](std::size_t layer, std::int32_t band) {
            return choice->Band(layer, band);
        });
        const std::lock_guard lock(mutex);
        heights.lowest = std::min(heights.lowest, chooser.Heights().lowest);
        heights.highest = std::max(heights.highest, chooser.Heights().highest);
        heights.sum += chooser.Heights().sum;
        for (std::size_t i = 0; i < layerCount; ++i) {
            triangles[i] += chooser.TriangleCounts()[i];
        }
    });
    for (std::size_t i = 0; i < layerCount; ++i) {
        if (!IsMeshOf(choice->stack.layers[i], triangles[i])) {
            return;
        }
    }
    // Heights without number, or a stack that the view cuts off, leave holes to look through.
    const std::array<double, 3> size{
        static_cast<double>(choice->stack.spacing) * (choice->stack.cols - 1),
        static_cast<double>(choice->stack.spacing) * (choice->stack.rows - 1),
        static_cast<double>(heights.highest)};
    if (heights.sum == 0.0f &&
        ShowsWholeBox(view.transform, size, static_cast<double>(heights.lowest))) {
        choice_ = std::move(choice);
    }
}

VisibleTriangles::~VisibleTriangles() = default;

bool VisibleTriangles::Chosen() const {
    return choice_ != nullptr;
}

std::span<const std::uint32_t> VisibleTriangles::IndicesOf(std::size_t slot) {
    const auto place =
        std::lower_bound(choice_->stack.slots.begin(), choice_->stack.slots.end(), slot);
    return choice_->WriteIndices(static_cast<std::size_t>(place - choice_->stack.slots.begin()));
}

}  // namespace zelmo
