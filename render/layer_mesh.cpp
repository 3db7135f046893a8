#include "render/layer_mesh.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>

#include "model/conversions.h"
#include "model/height_markers.h"

namespace zelmo {

namespace {

using Vector = std::array<float, 3>;

/// The part of a layer's grid that its mesh covers, in mesh columns and rows.
struct MeshWindow {
    MeshWindow(const Layer& source, std::int32_t leftCols, std::int32_t frontRows)
        : layer(source),
          // A margin below nothing comes from a position that single precision cannot hold.
          marginCols(std::max(leftCols, 0)),
          marginRows(std::max(frontRows, 0)) {
        const std::int64_t width = std::int64_t{source.cols} - 2 * std::int64_t{marginCols};
        const std::int64_t height = std::int64_t{source.rows} - 2 * std::int64_t{marginRows};
        if (width > 0 && height > 0) {
            cols = static_cast<std::int32_t>(width);
            rows = static_cast<std::int32_t>(height);
        }
    }

    std::size_t GridIndex(std::int32_t col, std::int32_t row) const {
        return static_cast<std::size_t>(row + marginRows) * static_cast<std::size_t>(layer.cols) +
               static_cast<std::size_t>(col + marginCols);
    }

    /// Whether the layer exists at a cell: its thickness is anything but exactly zero, NaN too.
    bool IsThick(std::int32_t col, std::int32_t row) const {
        const std::size_t i = GridIndex(col, row);
        return !(layer.top[i] - layer.bottom[i] == 0.0f);
    }

    const Layer& layer;
    std::int32_t marginCols;
    std::int32_t marginRows;
    std::int32_t cols = 0;
    std::int32_t rows = 0;
};

/// Calls `surface` with the three mesh positions of every triangle that has material at a corner,
/// then `wall` with the left column of every such piece of the front wall.
template <typename Surface, typename Wall>
void VisitTriangles(const MeshWindow& window, Surface&& surface, Wall&& wall) {
    for (std::int32_t row = 0; row + 1 < window.rows; ++row) {
        bool lowerLeft = window.IsThick(0, row);
        bool upperLeft = window.IsThick(0, row + 1);
        for (std::int32_t col = 0; col + 1 < window.cols; ++col) {
            const bool lowerRight = window.IsThick(col + 1, row);
            const bool upperRight = window.IsThick(col + 1, row + 1);
            if (lowerLeft || lowerRight || upperLeft) {
                surface(col, row, col + 1, row, col, row + 1);
            }
            if (lowerRight || upperRight || upperLeft) {
                surface(col + 1, row, col + 1, row + 1, col, row + 1);
            }
            lowerLeft = lowerRight;
            upperLeft = upperRight;
        }
    }
    for (std::int32_t col = 0; window.rows > 0 && col + 1 < window.cols; ++col) {
        if (window.IsThick(col, 0) || window.IsThick(col + 1, 0)) {
            wall(col);
        }
    }
}

std::size_t CountIndices(const MeshWindow& window) {
    std::size_t count = 0;
    VisitTriangles(
        window,
        [&](std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t) {
            count += 6;
        },
        [&](std::int32_t) { count += 6; });
    return count;
}

void AddCross(Vector& sum, const Vector& a, const Vector& b) {
    sum[0] += a[1] * b[2] - a[2] * b[1];
    sum[1] += a[2] * b[0] - a[0] * b[2];
    sum[2] += a[0] * b[1] - a[1] * b[0];
}

/// The sum of the cross products of a vertex's neighbours on the upper surface. The fan is cut
/// short at the window's left and front edges, and at the grid's right and back edges.
Vector SurfaceNormal(const MeshWindow& window, std::int32_t col, std::int32_t row) {
    const Layer& layer = window.layer;
    const float height = layer.top[window.GridIndex(col, row)];
    const auto neighbour = [&](std::int32_t dCol, std::int32_t dRow) {
        return Vector{static_cast<float>(dCol) * layer.spacing,
                      static_cast<float>(dRow) * layer.spacing,
                      layer.top[window.GridIndex(col + dCol, row + dRow)] - height};
    };
    const auto addSquare = [&](Vector& sum, const Vector& first, const Vector& middle,
                               const Vector& last) {
        AddCross(sum, first, middle);
        AddCross(sum, middle, last);
    };
    const bool hasLeft = col != 0;
    const bool hasFront = row > 0;
    const bool hasRight = col < layer.cols - 1;
    const bool hasBack = row < layer.rows - 1;
    Vector sum{0.0f, 0.0f, 0.0f};
    if (hasLeft && hasBack) {
        addSquare(sum, neighbour(0, 1), neighbour(-1, 1), neighbour(-1, 0));
    }
    if (hasLeft && hasFront) {
        addSquare(sum, neighbour(-1, 0), neighbour(-1, -1), neighbour(0, -1));
    }
    if (hasRight && hasFront) {
        addSquare(sum, neighbour(0, -1), neighbour(1, -1), neighbour(1, 0));
    }
    if (hasRight && hasBack) {
        addSquare(sum, neighbour(1, 0), neighbour(1, 1), neighbour(0, 1));
    }
    return sum;
}

constexpr std::uint32_t unnumbered = std::numeric_limits<std::uint32_t>::max();

/// Appends triangles to a mesh and numbers each vertex when it is first used.
class MeshBuilder {
public:
    explicit MeshBuilder(const MeshWindow& window)
        : window_(window),
          lower_(static_cast<std::size_t>(window.cols) * static_cast<std::size_t>(window.rows),
                 unnumbered),
          upper_(lower_.size(), unnumbered),
          foot_(static_cast<std::size_t>(window.cols), unnumbered),
          head_(foot_.size(), unnumbered) {
        const std::size_t indexCount = CountIndices(window);
        mesh_.indices.reserve(indexCount);
        mesh_.vertices.reserve(std::min(indexCount, 2 * (lower_.size() + foot_.size())));
    }

    LayerMesh Build() {
        VisitTriangles(
            window_,
            [this](std::int32_t c0, std::int32_t r0, std::int32_t c1, std::int32_t r1,
                   std::int32_t c2, std::int32_t r2) {
                AddLowerVertex(c0, r0);
                AddLowerVertex(c1, r1);
                AddLowerVertex(c2, r2);
                AddUpperVertex(c0, r0);
                AddUpperVertex(c1, r1);
                AddUpperVertex(c2, r2);
            },
            [this](std::int32_t col) {
                const auto& bottom = window_.layer.bottom;
                const auto& top = window_.layer.top;
                AddWallVertex(foot_, bottom, col);
                AddWallVertex(head_, top, col + 1);
                AddWallVertex(head_, top, col);
                AddWallVertex(foot_, bottom, col);
                AddWallVertex(foot_, bottom, col + 1);
                AddWallVertex(head_, top, col + 1);
            });
        return std::move(mesh_);
    }

private:
    std::size_t MeshIndex(std::int32_t col, std::int32_t row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(window_.cols) +
               static_cast<std::size_t>(col);
    }

    /// Appends an index; true if its vertex is new and must be appended by the caller.
    bool AppendIndex(std::uint32_t& number) {
        const bool isNew = number == unnumbered;
        if (isNew) {
            number = static_cast<std::uint32_t>(mesh_.vertices.size());
        }
        mesh_.indices.push_back(number);
        return isNew;
    }

    void AppendVertex(std::int32_t col, std::int32_t row, float z, const Vector& normal) {
        const float spacing = window_.layer.spacing;
        mesh_.vertices.push_back(
            {{static_cast<float>(col) * spacing, static_cast<float>(row) * spacing, z},
             {normal[0], normal[1], normal[2]}});
    }

    void AddLowerVertex(std::int32_t col, std::int32_t row) {
        if (AppendIndex(lower_[MeshIndex(col, row)])) {
            // The lower surface is shaded by the inverted slope of the upper one.
            const Vector n = SurfaceNormal(window_, col, row);
            AppendVertex(col, row, window_.layer.bottom[window_.GridIndex(col, row)],
                         {n[0] * -1.0f, n[1] * -1.0f, n[2] * -1.0f});
        }
    }

    void AddUpperVertex(std::int32_t col, std::int32_t row) {
        const std::size_t i = MeshIndex(col, row);
        if (AppendIndex(upper_[i])) {
            // The vertex below it has just been made.
            const auto& n = mesh_.vertices[lower_[i]].normal;
            AppendVertex(col, row, window_.layer.top[window_.GridIndex(col, row)],
                         {n[0] * -1.0f, n[1] * -1.0f, n[2] * -1.0f});
        }
    }

    void AddWallVertex(std::vector<std::uint32_t>& numbers, const std::vector<float>& heights,
                       std::int32_t col) {
        if (AppendIndex(numbers[static_cast<std::size_t>(col)])) {
            AppendVertex(col, 0, heights[window_.GridIndex(col, 0)], {0.0f, -1.0f, 0.0f});
        }
    }

    const MeshWindow& window_;
    std::vector<std::uint32_t> lower_;  ///< vertex numbers by mesh position
    std::vector<std::uint32_t> upper_;
    std::vector<std::uint32_t> foot_;  ///< vertex numbers of the wall by mesh column
    std::vector<std::uint32_t> head_;
    LayerMesh mesh_;
};

}  // namespace

LayerMesh MakeLayerMesh(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows) {
    const MeshWindow window(layer, marginCols, marginRows);
    return MeshBuilder(window).Build();
}

void BuildLayerMesh(Layer& layer, std::int32_t marginCols, std::int32_t marginRows) {
    if (layer.graphics == nullptr) {
        const MeshWindow window(layer, marginCols, marginRows);
        layer.indexCount = static_cast<std::int32_t>(CountIndices(window));
        return;
    }
    const LayerMesh mesh = MakeLayerMesh(layer, marginCols, marginRows);
    layer.indexCount = static_cast<std::int32_t>(mesh.indices.size());
    layer.graphics->UploadLayerMesh(layer, mesh.vertices, mesh.indices);
}

float UpdateMeshes(ProcessModel& model) {
    float highest = std::numeric_limits<float>::min();
    for (const CoverCell& cell : model.coverMap) {
        if (cell.height > highest) {
            highest = cell.height;
        }
    }
    const std::int32_t marginCols = TruncateToI32(model.marginX / model.gridSpacing);
    const std::int32_t marginRows = TruncateToI32(model.marginY / model.gridSpacing);
    std::int32_t layerCount = 0;
    for (std::unique_ptr<Layer>& layer : model.layers) {
        if (layer && layer->meshDirty) {
            BuildLayerMesh(*layer, marginCols, marginRows);
            layer->meshDirty = false;
            if (layer->indexCount == 0) {
                DestroyLayer(layer);
            }
        }
        layerCount += layer ? 1 : 0;
    }
    UpdateHeightMarkers(model.heightMarkers);
    model.layerCount = layerCount;
    return highest;
}

}  // namespace zelmo
