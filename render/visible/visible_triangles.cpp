#include "render/visible/visible_triangles.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>

#include "base/row_bands.h"
#include "model/process_model.h"
#include "render/mesh/mesh_numbers.h"
#include "render/mesh/mesh_window.h"
#include "render/visible/band_chooser.h"
#include "render/visible/layer_stack.h"
#include "render/visible/level_parts.h"
#include "render/visible/shadows.h"
#include "render/visible/sight.h"

namespace zelmo {

namespace {

constexpr std::int32_t smallestBand = 16;

}  // namespace

/// The choice of a picture: bits for every square of every layer's mesh.
struct VisibleTriangles::Choice {
    Choice(LayerStack theStack, const Sight& theSight, const PictureView& theView)
        : stack(std::move(theStack)),
          sight(theSight),
          view(theView),
          squares(
              std::make_unique_for_overwrite<std::uint8_t[]>(stack.layers.size() * SquareCount())),
          levelMarks(std::make_unique_for_overwrite<std::uint8_t[]>(SquareCount())) {}

    std::size_t SquareCount() const {
        return static_cast<std::size_t>(stack.rows - 1) * stack.Squares();
    }

    std::uint8_t* Band(std::size_t layer, std::int32_t band) {
        const auto bands = static_cast<std::size_t>(stack.rows - 1);
        return squares.get() + (layer * bands + static_cast<std::size_t>(band)) * stack.Squares();
    }

    std::uint8_t* LevelMarks(std::int32_t band) {
        return levelMarks.get() + static_cast<std::size_t>(band) * stack.Squares();
    }

    std::size_t PlaceOf(std::size_t slot) const {
        const auto place = std::lower_bound(stack.slots.begin(), stack.slots.end(), slot);
        return static_cast<std::size_t>(place - stack.slots.begin());
    }

    void MergeLevelParts();
    bool TakeOut(const LevelPart& part);
    void MakeRoom(std::size_t count);
    std::span<const std::uint32_t> WriteIndices(std::size_t layer);
    std::span<const MeshVertex> WriteLevelCorners(std::size_t layer);

    LayerStack stack;
    Sight sight;
    PictureView view;
    std::unique_ptr<std::uint8_t[]> squares;
    std::unique_ptr<std::uint8_t[]> levelMarks;
    std::vector<LevelPart> levelParts;
    std::unique_ptr<std::uint32_t[]> indices;
    std::size_t room = 0;  // of the indices
    std::vector<MeshVertex> levelCorners;
};

namespace {

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
        if ((bits & ~unsigned{hasSquare}) == 0) {
            continue;
        }
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
            WriteBand(squares, count, front, back, choice.indices.get() + start.indices);
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
    const std::size_t wallRoom = 6 * stack.Squares();
    MakeRoom(starts.back().indices + wallRoom);
    ForRowBands(bands, smallestBand, [&](std::int32_t first, std::int32_t end) {
        WriteBands(*this, layer, starts, first, end);
    });
    std::size_t count = starts.back().indices;
    VisitWall(stack.layers[layer], starts.back().vertices,
              [&](std::int32_t, bool, std::uint32_t number, bool) { indices[count++] = number; });
    return {indices.get(), count};
}

/// For so many indices; what was there may be lost.
void VisibleTriangles::Choice::MakeRoom(std::size_t count) {
    if (room < count) {
        indices = std::make_unique_for_overwrite<std::uint32_t[]>(count);
        room = count;
    }
}

/// Takes the triangles of a level part out of those that are drawn. True if there were any.
bool VisibleTriangles::Choice::TakeOut(const LevelPart& part) {
    constexpr unsigned drawUpper = drawUpperFront | drawUpperBack;
    unsigned drawn = 0;
    for (std::int32_t band = part.band; band < part.band + levelPartSize; ++band) {
        std::uint8_t* bytes = Band(part.layer, band);
        for (std::int32_t col = part.col; col < part.col + levelPartSize; ++col) {
            drawn |= bytes[col] & drawUpper;
            bytes[col] = static_cast<std::uint8_t>(bytes[col] & ~drawUpper);
        }
    }
    return drawn != 0;
}

void VisibleTriangles::Choice::MergeLevelParts() {
    for (const LevelPart& part : FindLevelParts(stack, {levelMarks.get(), SquareCount()})) {
        if (TakeOut(part)) {
            levelParts.push_back(part);
        }
    }
}

std::span<const MeshVertex> VisibleTriangles::Choice::WriteLevelCorners(std::size_t layer) {
    levelCorners.clear();
    for (const LevelPart& part : levelParts) {
        if (part.layer == layer) {
            AppendCorners(part, stack.spacing, levelCorners);
        }
    }
    return levelCorners;
}

VisibleTriangles::VisibleTriangles(const ProcessModel& model, const PictureView& view) {
    std::optional<LayerStack> stack = FindStack(model);
    const std::optional<Sight> sight = stack ? FindSight(*stack, view) : std::nullopt;
    if (!sight) {
        return;
    }
    auto choice = std::make_unique<Choice>(std::move(*stack), *sight, view);
    const std::vector<Shadow> shadows = FindShadows(choice->stack, choice->sight);
    const std::size_t layerCount = choice->stack.layers.size();
    std::mutex mutex;
    HeightRange heights = noHeights;
    std::vector<std::int64_t> triangles(layerCount);
    ForRowBands(choice->stack.rows - 1, smallestBand, [&](std::int32_t first, std::int32_t end) {
        BandChooser chooser(choice->stack, choice->sight, shadows, choice->view);
        chooser.Choose(first, end, *choice);
        const std::lock_guard lock(mutex);
        heights.lowest = std::min(heights.lowest, chooser.Heights().lowest);
        heights.highest = std::max(heights.highest, chooser.Heights().highest);
        heights.sum += chooser.Heights().sum;
        for (std::size_t i = 0; i < layerCount; ++i) {
            triangles[i] += chooser.TriangleCounts()[i];
        }
    });
    // Heights without number, or a stack that the view cuts off, leave holes to look through.
    const std::array<double, 3> size{
        static_cast<double>(choice->stack.spacing) * (choice->stack.cols - 1),
        static_cast<double>(choice->stack.spacing) * (choice->stack.rows - 1),
        static_cast<double>(heights.highest)};
    if (heights.sum == 0.0f &&
        ShowsWholeBox(view.transform, size, static_cast<double>(heights.lowest))) {
        choice_ = std::move(choice);
    }
    // Markers have depths of their own.
    if (choice_ != nullptr && !model.settings.showHeights) {
        choice_->MergeLevelParts();
    }
}

VisibleTriangles::~VisibleTriangles() = default;

bool VisibleTriangles::Chosen() const {
    return choice_ != nullptr;
}

std::span<const std::uint32_t> VisibleTriangles::IndicesOf(std::size_t slot) {
    return choice_->WriteIndices(choice_->PlaceOf(slot));
}

std::span<const MeshVertex> VisibleTriangles::LevelCornersOf(std::size_t slot) {
    return choice_->WriteLevelCorners(choice_->PlaceOf(slot));
}

}  // namespace zelmo
