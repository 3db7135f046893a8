#include "results/models/stack_model.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <utility>

#include "base/row_bands.h"
#include "model/grid/shown_window.h"
#include "model/process_model.h"
#include "results/models/border_walls.h"
#include "results/models/layer_area.h"
#include "results/models/model_vertices.h"
#include "results/models/surface_triangles.h"

namespace zelmo {

namespace {

constexpr double nanometresPerMicrometre = 1000.0;

/// The surfaces of a layer within the bounds on places and on its volume.
LayerSurfaces FittedSurfaces(const LayerArea& area, const ModelAccuracy& accuracy) {
    // What is merged lies within a bound of a plane, and so does what it becomes.
    double bound = accuracy.tolerance / 2.0 / nanometresPerMicrometre;
    const double most = accuracy.VolumeShare() * std::abs(area.Volume());
    // More than a few times that over all of the layer is not likely to be balanced elsewhere.
    constexpr double usualBalance = 10.0;
    bound = std::min(bound, usualBalance * most / area.Extent());
    constexpr int attempts = 4;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        LayerSurfaces surfaces = TriangulateSurfaces(area, bound);
        const double change = std::abs(surfaces.top.volumeChange - surfaces.bottom.volumeChange);
        if (change <= most) {
            return surfaces;
        }
        bound *= std::max(0.1, 0.7 * most / change);
    }
    return TriangulateSurfaces(area, 0.0);
}

/// Puts a layer's triangles together.
class LayerAssembly {
public:
    LayerAssembly(const LayerArea& area, LayerModel& model)
        : area_(area), vertices_(area), model_(model) {}

    void Add(LayerSide side, const SurfaceTriangles& surface) {
        const auto cols = static_cast<std::uint32_t>(area_.Cols());
        for (const NodeTriangle& nodes : surface.triangles) {
            std::array<GridStep, 3> places{};
            for (std::size_t i = 0; i < 3; ++i) {
                places[i] = {static_cast<std::int32_t>(nodes[i] % cols),
                             static_cast<std::int32_t>(nodes[i] / cols)};
            }
            std::array<std::uint32_t, 3> corners{};
            for (std::size_t i = 0; i < 3; ++i) {
                const auto& [col, row] = places[i];
                const auto& [nextCol, nextRow] = places[(i + 1) % 3];
                const int sector =
                    area_.IsThick(col, row) ? 0 : SectorOf(nextCol - col, nextRow - row);
                corners[i] = vertices_.VertexAt(side, col, row, sector);
            }
            if (side == LayerSide::Bottom) {
                std::swap(corners[1], corners[2]);
            }
            model_.triangles.push_back(corners);
        }
    }

    void Add(const std::vector<WallTriangle>& walls) {
        for (const WallTriangle& wall : walls) {
            std::array<std::uint32_t, 3> corners{};
            for (std::size_t i = 0; i < 3; ++i) {
                corners[i] =
                    vertices_.VertexAt(wall[i].side, wall[i].col, wall[i].row, wall[i].sector);
            }
            model_.triangles.push_back(corners);
        }
    }

    /// Places the vertices; the first node lies at this place.
    void Finish(double x, double y) {
        model_.vertices.reserve(vertices_.Sources().size());
        for (const auto& [side, col, row] : vertices_.Sources()) {
            model_.vertices.push_back({static_cast<float>(x + col * area_.Spacing()),
                                       static_cast<float>(y + row * area_.Spacing()),
                                       area_.Height(side, col, row)});
        }
    }

private:
    const LayerArea& area_;
    ModelVertices vertices_;
    LayerModel& model_;
};

/// Fills a layer's model; why it has none, or nothing.
std::string FillLayer(const Layer& layer, const ProcessModel& stack, const ModelAccuracy& accuracy,
                      LayerModel& model) {
    const ShownWindow window = FindShownWindow(stack.grid);
    const LayerArea area(layer, window);
    if (area.IsEmpty()) {
        return {};
    }
    if (!area.IsFinite()) {
        return fmt::format("the surfaces of layer {} \"{}\" are no numbers at some places",
                           model.facts.number, model.facts.label);
    }
    const LayerSurfaces surfaces = FittedSurfaces(area, accuracy);
    const std::vector<WallTriangle> walls = MakeBorderWalls(area, surfaces);
    model.triangles.reserve(surfaces.bottom.triangles.size() + surfaces.top.triangles.size() +
                            walls.size());
    LayerAssembly assembly(area, model);
    assembly.Add(LayerSide::Bottom, surfaces.bottom);
    assembly.Add(LayerSide::Top, surfaces.top);
    assembly.Add(walls);
    const Grid& grid = stack.grid;
    assembly.Finish(window.marginCols * area.Spacing() - static_cast<double>(grid.marginX),
                    window.marginRows * area.Spacing() - static_cast<double>(grid.marginY));
    return {};
}

}  // namespace

StackModel MakeStackModel(const ProcessModel& model, const ModelAccuracy& accuracy) {
    std::vector<std::size_t> slots;
    for (std::size_t slot = 0; slot < model.stack.layers.size(); ++slot) {
        if (model.stack.layers[slot] != nullptr) {
            slots.push_back(slot);
        }
    }
    std::vector<LayerModel> layers(slots.size());
    std::vector<std::string> failures(slots.size());
    std::atomic<std::size_t> next = 0;
    // Each thread takes the next layer that is left.
    ForRowBands(RowThreads(), 1, [&](std::int32_t /*first*/, std::int32_t /*end*/) {
        for (std::size_t i = next++; i < slots.size(); i = next++) {
            layers[i].facts = FactsOf(model.stack, slots[i]);
            failures[i] = FillLayer(*model.stack.layers[slots[i]], model, accuracy, layers[i]);
        }
    });
    StackModel result;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (!failures[i].empty()) {
            return {{}, failures[i]};
        }
        if (!layers[i].triangles.empty()) {
            result.layers.push_back(std::move(layers[i]));
        }
    }
    return result;
}

}  // namespace zelmo
