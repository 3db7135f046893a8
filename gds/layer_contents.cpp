#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <utility>

#include "gds/cell_order.h"
#include "gds/layout_contents.h"
#include "gds/placed_boxes.h"
#include "gds/placement_key.h"

namespace zelmo {

namespace {

__extension__ using Integer128 = __int128;

/// Twice the area of a polygon whose coordinates are of 32 bits, with a sign.
Integer128 TwiceArea(std::span<const NarrowPoint> points) {
    Integer128 sum = 0;
    const std::int64_t x0 = points[0].x;
    const std::int64_t y0 = points[0].y;
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        const std::int64_t ax = points[i].x - x0;
        const std::int64_t ay = points[i].y - y0;
        const std::int64_t bx = points[i + 1].x - x0;
        const std::int64_t by = points[i + 1].y - y0;
        sum += static_cast<Integer128>(ax) * by - static_cast<Integer128>(bx) * ay;
    }
    return sum;
}

/// The same in floating point.
double TwiceArea(std::span<const GdsPoint> points) {
    double sum = 0.0;
    const auto x0 = static_cast<double>(points[0].x);
    const auto y0 = static_cast<double>(points[0].y);
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        const double ax = static_cast<double>(points[i].x) - x0;
        const double ay = static_cast<double>(points[i].y) - y0;
        const double bx = static_cast<double>(points[i + 1].x) - x0;
        const double by = static_cast<double>(points[i + 1].y) - y0;
        sum += ax * by - bx * ay;
    }
    return sum;
}

/// What has no area adds none, however often it is there.
void AddArea(LayerContents& layer, double scale, double area) {
    layer.area += area == 0.0 ? 0.0 : scale * area;
}

/// A cell under the linear part of a placement, and where all such placements of it are.
struct PlacedTurn {
    GdsTransform transform;  ///< without offset
    GdsRect offsets;
};

/// How often and where a cell is placed below another.
struct Placements {
    FlatCount count;
    double scale = 0.0;  ///< the sum of the squares of all magnifications
    std::vector<PlacedTurn> turns;
};

/// Goes from a cell down to all that it contains, each behind all cells that contain it.
class DownwardCount {
public:
    DownwardCount(const GdsDatabase& database, const ContentLimits& limits)
        : database_(database), limits_(limits), placements_(database.cells.size()) {}

    CellLayers Run(std::size_t start) {
        const CellOrder order = OrderCells(database_);
        MapTexts();
        placements_[start] = {CountOf(1), 1.0, {{GdsTransform(), {0, 0, 0, 0}}}};
        auto cell = std::find(order.childrenFirst.rbegin(), order.childrenFirst.rend(), start);
        for (; cell != order.childrenFirst.rend(); ++cell) {
            if (placements_[*cell].count != FlatCount()) {
                TakeElements(*cell);
                PassOn(*cell);
                placements_[*cell] = {};
            }
        }
        std::sort(result_.layers.begin(), result_.layers.end(), [](const auto& a, const auto& b) {
            return std::pair(a.layer, a.datatype) < std::pair(b.layer, b.datatype);
        });
        return std::move(result_);
    }

private:
    void MapTexts() {
        for (const CellTexts& texts : database_.texts) {
            texts_.emplace(texts.cell, texts.texts);
        }
    }

    LayerContents& LayerOf(std::uint16_t layer, std::uint16_t datatype) {
        const std::uint32_t key = std::uint32_t{layer} << 16 | datatype;
        if (key != lastKey_ || result_.layers.empty()) {
            const auto [found, isNew] = numbers_.try_emplace(key, result_.layers.size());
            if (isNew) {
                result_.layers.push_back({layer, datatype, {}, {}, 0.0, {}});
            }
            lastKey_ = key;
            last_ = found->second;
        }
        return result_.layers[last_];
    }

    /// Adds a cell's own shapes and texts, as often as it is placed.
    void TakeElements(std::size_t number) {
        const GdsCell& cell = database_.cells[number];
        const Placements& placed = placements_[number];
        for (const GdsBoundary& boundary : cell.boundaries) {
            LayerContents& layer = LayerOf(boundary.layer, boundary.datatype);
            layer.shapes = layer.shapes + placed.count;
            AddArea(layer, placed.scale, AreaOf(boundary));
        }
        if (const auto texts = texts_.find(number); texts != texts_.end()) {
            for (const GdsText& text : texts->second) {
                LayerContents& layer = LayerOf(text.layer, text.texttype);
                layer.texts = layer.texts + placed.count;
            }
        }
        for (const PlacedTurn& turn : placed.turns) {
            WidenLayers(cell, turn);
        }
    }

    void WidenLayers(const GdsCell& cell, const PlacedTurn& turn) {
        const LinearPart linear = LinearPartOf(turn.transform);
        for (const GdsBoundary& boundary : cell.boundaries) {
            WidenByShape(LayerOf(boundary.layer, boundary.datatype).box, boundary, linear,
                         turn.offsets);
        }
        CountTurn(cell.boundaries.size());
    }

    void CountTurn(std::uint64_t elements) {
        turnedElements_ += elements;
        ++turns_;
        if (turns_ > limits_.turns || turnedElements_ > limits_.turnedElements) {
            result_.haveBoxes = false;
        }
    }

    void PassOn(std::size_t number) {
        for (const GdsSref& sref : database_.cells[number].srefs) {
            if (sref.cell != nullptr) {
                PassOnTo(sref, 1, placements_[number],
                         [&](const GdsTransform&, const LinearPart& linear) {
                             const GdsPoint offset = TurnPoint(sref.origin, linear);
                             return GdsRect{offset.x, offset.y, offset.x, offset.y};
                         });
            }
        }
        for (const GdsAref& aref : database_.cells[number].arefs) {
            const std::uint64_t instances = InstancesOf(aref);
            if (aref.cell != nullptr && instances != 0) {
                PassOnTo(aref, instances, placements_[number],
                         [&](const GdsTransform& transform, const LinearPart& linear) {
                             return OffsetsOf(aref, transform, linear);
                         });
            }
        }
    }

    template <typename Reference, typename Offsets>
    void PassOnTo(const Reference& reference, std::uint64_t instances, const Placements& parent,
                  Offsets offsetsOf) {
        const GdsCell& cell = *reference.cell;
        Placements& child = placements_[static_cast<std::size_t>(&cell - database_.cells.begin())];
        child.count = child.count + parent.count * CountOf(instances);
        child.scale +=
            parent.scale * (reference.mag * reference.mag) * static_cast<double>(instances);
        for (const PlacedTurn& turn : parent.turns) {
            if (!result_.haveBoxes) {
                return;
            }
            const LinearPart linear = LinearPartOf(turn.transform);
            const GdsTransform placed = PlaceChild({}, reference.mag, reference.angle,
                                                   reference.strans, turn.transform, linear);
            AddTurn(child, cell, placed, MoveRect(offsetsOf(turn.transform, linear), turn.offsets));
        }
    }

    void AddTurn(Placements& child, const GdsCell& cell, const GdsTransform& placed,
                 const GdsRect& offsets) {
        const auto [found, isNew] =
            turnNumbers_.try_emplace(LinearKeyOf(cell, placed), child.turns.size());
        if (isNew) {
            child.turns.push_back({TransformOf(found->first), offsets});
            CountTurn(0);
        } else {
            MergeRect(child.turns[found->second].offsets, offsets);
        }
    }

    const GdsDatabase& database_;
    ContentLimits limits_;
    std::vector<Placements> placements_;
    std::unordered_map<std::size_t, std::span<const GdsText>> texts_;
    std::unordered_map<std::uint32_t, std::size_t> numbers_;  ///< of layers in the result
    std::uint32_t lastKey_ = 0;
    std::size_t last_ = 0;
    std::unordered_map<PlacementKey, std::size_t, PlacementKeyHash> turnNumbers_;
    std::size_t turns_ = 0;
    std::uint64_t turnedElements_ = 0;
    CellLayers result_;
};

}  // namespace

double AreaOf(const GdsBoundary& boundary) {
    if (boundary.points.empty()) {
        return 0.0;
    }
    return boundary.points.As(
        [](const auto points) { return std::abs(static_cast<double>(TwiceArea(points))) / 2.0; });
}

CellLayers CountLayers(const GdsDatabase& database, std::size_t cell, const ContentLimits& limits) {
    return DownwardCount(database, limits).Run(cell);
}

}  // namespace zelmo
