#include "render/mesh/layer_mesh.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "base/conversions.h"
#include "base/row_bands.h"
#include "model/grid/drawn_square.h"
#include "render/mesh/mesh_lanes.h"
#include "render/mesh/mesh_numbers.h"
#include "render/mesh/mesh_window.h"

namespace zelmo {

namespace {

using Vector = std::array<float, 3>;

constexpr std::int32_t fewestSquareRows = 32;

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

/// The normals of a row of vertices, by mesh column.
class NormalRow {
public:
    explicit NormalRow(std::int32_t cols)
        : x_(static_cast<std::size_t>(cols)), y_(x_.size()), z_(x_.size()) {}

    void Compute(const MeshWindow& window, std::int32_t row) {
        const Layer& layer = window.layer;
        const float* here = layer.top.data() + window.GridIndex(0, row);
        const FanRow fans{row > 0 ? here - layer.cols : nullptr, here,
                          row < layer.rows - 1 ? here + layer.cols : nullptr, layer.spacing};
        // The first column, and the last one of a grid without margin, lack squares at their sides.
        const std::int32_t end = std::min(window.cols, layer.cols - 1 - window.marginCols);
        Set(window, 0, row);
        std::int32_t col = 1;
        if (end > 1) {
            col = ZELMO_PICK_LANES(SumFans)(fans, 1, end, {x_.data(), y_.data(), z_.data()});
        }
        for (; col < window.cols; ++col) {
            Set(window, col, row);
        }
    }

    Vector At(std::size_t col) const { return {x_[col], y_[col], z_[col]}; }

private:
    void Set(const MeshWindow& window, std::int32_t col, std::int32_t row) {
        const Vector normal = SurfaceNormal(window, col, row);
        const auto i = static_cast<std::size_t>(col);
        x_[i] = normal[0];
        y_[i] = normal[1];
        z_[i] = normal[2];
    }

    std::vector<float> x_;
    std::vector<float> y_;
    std::vector<float> z_;
};

/// How many vertices and indices a mesh has before one of its rows of squares.
struct RowStart {
    std::uint32_t vertices = 0;
    std::uint32_t indices = 0;
};

/// The outline of a mesh: which triangles there are, and where each row's part of it lies. With it
/// the rows of squares can be written in any order.
class MeshPlan {
public:
    explicit MeshPlan(const MeshWindow& window)
        : window_(window),
          squaresPerRow_(static_cast<std::size_t>(std::max(window.cols - 1, 0))),
          squareRows_(squaresPerRow_ > 0 ? std::max(window.rows - 1, 0) : 0),
          squares_(squaresPerRow_ * static_cast<std::size_t>(squareRows_)),
          starts_(static_cast<std::size_t>(squareRows_) + 1) {
        ForRowBands(squareRows_, fewestSquareRows,
                    [this](std::int32_t first, std::int32_t end) { FindSquares(first, end); });
        ForRowBands(squareRows_, fewestSquareRows, [this](std::int32_t first, std::int32_t end) {
            for (std::int32_t squareRow = first; squareRow < end; ++squareRow) {
                CountSquareRow(squareRow);
            }
        });
        for (std::size_t i = 1; i < starts_.size(); ++i) {
            starts_[i].vertices += starts_[i - 1].vertices;
            starts_[i].indices += starts_[i - 1].indices;
        }
        for (std::int32_t col = 0; window.rows > 0 && col + 1 < window.cols; ++col) {
            wallIndices_ += HasWall(window, col) ? 6 : 0;
        }
    }

    std::int32_t SquareRows() const { return squareRows_; }
    std::size_t SquaresPerRow() const { return squaresPerRow_; }
    const std::uint8_t* SquareRow(std::int32_t squareRow) const {
        return squares_.data() + static_cast<std::size_t>(squareRow) * squaresPerRow_;
    }
    /// Where a row of squares begins; that after the last one is the wall.
    const RowStart& StartOf(std::int32_t squareRow) const {
        return starts_[static_cast<std::size_t>(squareRow)];
    }
    std::size_t IndexCount() const { return starts_.back().indices + wallIndices_; }

private:
    void FindSquares(std::int32_t first, std::int32_t end) {
        const auto cols = static_cast<std::size_t>(window_.cols);
        std::vector<std::uint8_t> front(cols);
        std::vector<std::uint8_t> back(cols);
        FindThick(first, back);
        for (std::int32_t squareRow = first; squareRow < end; ++squareRow) {
            front.swap(back);
            FindThick(squareRow + 1, back);
            std::uint8_t* squares =
                squares_.data() + static_cast<std::size_t>(squareRow) * squaresPerRow_;
            const std::uint8_t* f = front.data();
            const std::uint8_t* b = back.data();
            for (std::size_t i = 0; i < squaresPerRow_; ++i) {
                squares[i] = DrawnTriangles(f[i], f[i + 1], b[i], b[i + 1]);
            }
        }
    }

    void FindThick(std::int32_t row, std::vector<std::uint8_t>& thick) const {
        const float* tops = window_.layer.top.data() + window_.GridIndex(0, row);
        const float* bottoms = window_.layer.bottom.data() + window_.GridIndex(0, row);
        std::uint8_t* out = thick.data();
        for (std::size_t i = 0; i < thick.size(); ++i) {
            out[i] = tops[i] - bottoms[i] == 0.0f ? 0 : 1;
        }
    }

    /// Each row's own counts stand behind its start until they are summed up.
    void CountSquareRow(std::int32_t squareRow) {
        const std::uint8_t* squares = SquareRow(squareRow);
        std::uint32_t triangles = 0;
        for (std::size_t i = 0; i < squaresPerRow_; ++i) {
            const unsigned bits = squares[i];
            triangles += (bits & 1) + (bits >> 1);
        }
        starts_[static_cast<std::size_t>(squareRow) + 1] = {
            CountNewVertices(squareRow > 0 ? SquareRow(squareRow - 1) : nullptr, squares,
                             squaresPerRow_),
            6 * triangles};
    }

    const MeshWindow& window_;
    std::size_t squaresPerRow_;
    std::int32_t squareRows_;
    std::vector<std::uint8_t> squares_;
    std::vector<RowStart> starts_;
    std::size_t wallIndices_ = 0;
};

/// Writes the vertices and indices of some rows of squares of a mesh, one after the other.
class SquareRowWriter {
public:
    SquareRowWriter(const MeshWindow& window, const MeshPlan& plan, LayerMesh& mesh)
        : window_(window),
          plan_(plan),
          mesh_(mesh),
          x_(static_cast<std::size_t>(window.cols)),
          frontNormals_(window.cols),
          backNormals_(window.cols),
          front_(x_.size()),
          back_(x_.size()) {
        for (std::size_t col = 0; col < x_.size(); ++col) {
            x_[col] = static_cast<float>(col) * window.layer.spacing;
        }
    }

    void Write(std::int32_t firstSquareRow, std::int32_t endSquareRow) {
        NumberRowBefore(firstSquareRow);
        backNormals_.Compute(window_, firstSquareRow);
        for (std::int32_t squareRow = firstSquareRow; squareRow < endSquareRow; ++squareRow) {
            std::swap(front_, back_);
            std::swap(frontNormals_, backNormals_);
            backNormals_.Compute(window_, squareRow + 1);
            WriteSquareRow(squareRow);
        }
    }

private:
    /// Numbers the vertices that a row of squares shares with the one before it, which writes them.
    void NumberRowBefore(std::int32_t squareRow) {
        const std::size_t count = plan_.SquaresPerRow();
        if (squareRow == 0) {
            MarkBackRow(nullptr, count, back_);
            return;
        }
        MarkBackRow(squareRow > 1 ? plan_.SquareRow(squareRow - 2) : nullptr, count, front_);
        NumberSquareRow(plan_.SquareRow(squareRow - 1), count, front_, back_,
                        plan_.StartOf(squareRow - 1).vertices);
    }

    void WriteSquareRow(std::int32_t squareRow) {
        const std::uint32_t next = plan_.StartOf(squareRow).vertices;
        NumberSquareRow(plan_.SquareRow(squareRow), plan_.SquaresPerRow(), front_, back_, next);
        WriteVertices(squareRow, front_, frontNormals_, next);
        WriteVertices(squareRow + 1, back_, backNormals_, next);
        WriteIndices(squareRow);
    }

    /// Writes the vertices of a row whose numbers are `next` or higher: those that are new.
    void WriteVertices(std::int32_t row, const NumberRow& numbers, const NormalRow& normals,
                       std::uint32_t next) {
        const float* tops = window_.layer.top.data() + window_.GridIndex(0, row);
        const float* bottoms = window_.layer.bottom.data() + window_.GridIndex(0, row);
        const float y = static_cast<float>(row) * window_.layer.spacing;
        MeshVertex* vertices = mesh_.vertices.data();
        for (std::size_t col = 0; col < numbers.size(); ++col) {
            const VertexNumbers& number = numbers[col];
            if (number.Given() && number.lower >= next) {
                // The lower surface is shaded by the inverted slope of the upper one.
                const Vector n = normals.At(col);
                vertices[number.lower] = {{x_[col], y, bottoms[col]},
                                          {n[0] * -1.0f, n[1] * -1.0f, n[2] * -1.0f}};
                vertices[number.upper] = {{x_[col], y, tops[col]}, {n[0], n[1], n[2]}};
            }
        }
    }

    void WriteIndices(std::int32_t squareRow) {
        const std::uint8_t* squares = plan_.SquareRow(squareRow);
        std::uint32_t* out = mesh_.indices.data() + plan_.StartOf(squareRow).indices;
        const auto write = [&out](const VertexNumbers& a, const VertexNumbers& b,
                                  const VertexNumbers& c) {
            out[0] = a.lower;
            out[1] = b.lower;
            out[2] = c.lower;
            out[3] = a.upper;
            out[4] = b.upper;
            out[5] = c.upper;
            out += 6;
        };
        for (std::size_t i = 0; i < plan_.SquaresPerRow(); ++i) {
            if ((squares[i] & hasFrontTriangle) != 0) {
                write(front_[i], front_[i + 1], back_[i]);
            }
            if ((squares[i] & hasBackTriangle) != 0) {
                write(front_[i + 1], back_[i + 1], back_[i]);
            }
        }
    }

    const MeshWindow& window_;
    const MeshPlan& plan_;
    LayerMesh& mesh_;
    std::vector<float> x_;
    NormalRow frontNormals_;
    NormalRow backNormals_;
    NumberRow front_;
    NumberRow back_;
};

void AppendWall(const MeshWindow& window, LayerMesh& mesh) {
    const auto next = static_cast<std::uint32_t>(mesh.vertices.size());
    VisitWall(window, next, [&](std::int32_t col, bool isHead, std::uint32_t number, bool isNew) {
        mesh.indices.push_back(number);
        if (isNew) {
            const std::size_t i = window.GridIndex(col, 0);
            const float z = isHead ? window.layer.top[i] : window.layer.bottom[i];
            mesh.vertices.push_back(
                {{static_cast<float>(col) * window.layer.spacing, 0.0f, z}, {0.0f, -1.0f, 0.0f}});
        }
    });
}

}  // namespace

LayerMesh MakeLayerMesh(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows) {
    const MeshWindow window(layer, marginCols, marginRows);
    const MeshPlan plan(window);
    const RowStart& sheets = plan.StartOf(plan.SquareRows());
    LayerMesh mesh;
    mesh.indices.reserve(plan.IndexCount());
    // The wall has no more vertices than indices, and no more than two a column.
    mesh.vertices.reserve(sheets.vertices + std::min(plan.IndexCount() - sheets.indices,
                                                     2 * static_cast<std::size_t>(window.cols)));
    mesh.indices.resize(sheets.indices);
    mesh.vertices.resize(sheets.vertices);
    ForRowBands(plan.SquareRows(), fewestSquareRows, [&](std::int32_t first, std::int32_t end) {
        SquareRowWriter(window, plan, mesh).Write(first, end);
    });
    if (window.rows > 0) {
        AppendWall(window, mesh);
    }
    return mesh;
}

}  // namespace zelmo
