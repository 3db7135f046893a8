#include "tests/plain/mesh_plain.h"

#include <cstddef>
#include <vector>

#include "model/stack.h"

namespace zelmo {

namespace {

struct Vector {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
};

Vector CrossProduct(Vector a, Vector b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector Plus(Vector a, Vector b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

/// The sum over the fan of neighbours of one mesh vertex.
Vector PlainNormal(const Layer& layer, int mx, int my, int c, int r) {
    const float s = layer.spacing;
    const auto top = [&](int col, int row) {
        return layer.top.at(static_cast<std::size_t>((row + my) * layer.cols + mx + col));
    };
    const float h = top(c, r);
    const auto neighbour = [&](int dCol, int dRow) {
        return Vector{static_cast<float>(dCol) * s, static_cast<float>(dRow) * s,
                      top(c + dCol, r + dRow) - h};
    };
    Vector sum{0.0f, 0.0f, 0.0f};
    if (c != 0 && r < layer.rows - 1) {
        sum = Plus(sum, CrossProduct(neighbour(0, 1), neighbour(-1, 1)));
        sum = Plus(sum, CrossProduct(neighbour(-1, 1), neighbour(-1, 0)));
    }
    if (c != 0 && r > 0) {
        sum = Plus(sum, CrossProduct(neighbour(-1, 0), neighbour(-1, -1)));
        sum = Plus(sum, CrossProduct(neighbour(-1, -1), neighbour(0, -1)));
    }
    if (c < layer.cols - 1 && r > 0) {
        sum = Plus(sum, CrossProduct(neighbour(0, -1), neighbour(1, -1)));
        sum = Plus(sum, CrossProduct(neighbour(1, -1), neighbour(1, 0)));
    }
    if (c < layer.cols - 1 && r < layer.rows - 1) {
        sum = Plus(sum, CrossProduct(neighbour(1, 0), neighbour(1, 1)));
        sum = Plus(sum, CrossProduct(neighbour(1, 1), neighbour(0, 1)));
    }
    return sum;
}

}  // namespace

LayerMesh MakeLayerMeshPlain(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows) {
    const int mx = marginCols;
    const int my = marginRows;
    const int w = layer.cols - 2 * mx;
    const int h = layer.rows - 2 * my;
    const int p = w * h;
    const float s = layer.spacing;
    const auto cell = [&](int c, int r) {
        return static_cast<std::size_t>((r + my) * layer.cols + mx + c);
    };

    std::vector<MeshVertex> work(static_cast<std::size_t>(2 * (p + w)));
    for (int r = 0; r < h; ++r) {
        for (int c = 0; c < w; ++c) {
            const float x = static_cast<float>(c) * s;
            const float y = static_cast<float>(r) * s;
            const Vector n = PlainNormal(layer, mx, my, c, r);
            const auto k = static_cast<std::size_t>(r * w + c);
            work.at(k) = {{x, y, layer.bottom.at(cell(c, r))},
                          {n.x * -1.0f, n.y * -1.0f, n.z * -1.0f}};
            work.at(k + static_cast<std::size_t>(p)) = {{x, y, layer.top.at(cell(c, r))},
                                                        {n.x, n.y, n.z}};
        }
    }
    for (int c = 0; c < w; ++c) {
        const float x = static_cast<float>(c) * s;
        work.at(static_cast<std::size_t>(2 * p + c)) = {{x, 0.0f, layer.bottom.at(cell(c, 0))},
                                                        {0.0f, -1.0f, 0.0f}};
        work.at(static_cast<std::size_t>(2 * p + w + c)) = {{x, 0.0f, layer.top.at(cell(c, 0))},
                                                            {0.0f, -1.0f, 0.0f}};
    }

    std::vector<int> indices;
    const auto append = [&](int a, int b, int c) { indices.insert(indices.end(), {a, b, c}); };
    const auto thick = [&](int c, int r) {
        const float thickness = layer.top.at(cell(c, r)) - layer.bottom.at(cell(c, r));
        return thickness != 0.0f;
    };
    for (int r = 0; r <= h - 2; ++r) {
        for (int c = 0; c <= w - 2; ++c) {
            const int k = r * w + c;
            if (thick(c, r) || thick(c + 1, r) || thick(c, r + 1)) {
                append(k, k + 1, k + w);
                append(p + k, p + k + 1, p + k + w);
            }
            if (thick(c + 1, r) || thick(c + 1, r + 1) || thick(c, r + 1)) {
                append(k + 1, k + w + 1, k + w);
                append(p + k + 1, p + k + w + 1, p + k + w);
            }
        }
    }
    for (int c = 0; c <= w - 2; ++c) {
        const int foot = 2 * p + c;
        if (thick(c, 0) || thick(c + 1, 0)) {
            append(foot, foot + w + 1, foot + w);
            append(foot, foot + 1, foot + w + 1);
        }
    }

    LayerMesh mesh;
    std::vector<int> places(work.size(), -1);
    for (const int index : indices) {
        int& place = places.at(static_cast<std::size_t>(index));
        if (place == -1) {
            place = static_cast<int>(mesh.vertices.size());
            mesh.vertices.push_back(work.at(static_cast<std::size_t>(index)));
        }
        mesh.indices.push_back(static_cast<std::uint32_t>(place));
    }
    return mesh;
}

}  // namespace zelmo
