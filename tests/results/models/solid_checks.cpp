#include "tests/results/models/solid_checks.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "model/grid/shown_window.h"
#include "model/process_model.h"

namespace zelmo {

namespace {

using Vector = std::array<double, 3>;

Vector PositionOf(const LayerModel& solid, std::uint32_t vertex) {
    const auto& [x, y, z] = solid.vertices[vertex];
    return {x, y, z};
}

Vector Minus(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector CrossOf(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double Length(const Vector& a) {
    return std::sqrt(Dot(a, a));
}

}  // namespace

std::string WhyNotClosed(const LayerModel& solid) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> edges;
    // By vertex, from each neighbour to the next one around it
    std::vector<std::map<std::uint32_t, std::uint32_t>> around(solid.vertices.size());
    for (const auto& corners : solid.triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            const std::uint32_t from = corners[i];
            const std::uint32_t to = corners[(i + 1) % 3];
            if (++edges[{from, to}] > 1) {
                return fmt::format("two triangles run from {} to {}", from, to);
            }
            around[from][to] = corners[(i + 2) % 3];
        }
    }
    for (const auto& [edge, count] : edges) {
        if (!edges.contains({edge.second, edge.first})) {
            return fmt::format("no triangle lies across {} to {}", edge.first, edge.second);
        }
    }
    for (std::size_t vertex = 0; vertex < around.size(); ++vertex) {
        if (around[vertex].empty()) {
            return fmt::format("vertex {} is not used", vertex);
        }
        std::size_t count = 0;
        std::uint32_t neighbour = around[vertex].begin()->first;
        do {
            neighbour = around[vertex].at(neighbour);
            ++count;
        } while (neighbour != around[vertex].begin()->first);
        if (count != around[vertex].size()) {
            return fmt::format("vertex {} holds several fans", vertex);
        }
    }
    return {};
}

std::string WhyNotClosedByPosition(const LayerModel& solid) {
    using Place = std::array<float, 3>;
    std::map<std::pair<Place, Place>, int> edges;
    for (const auto& corners : solid.triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            const Place& from = solid.vertices[corners[i]];
            const Place& to = solid.vertices[corners[(i + 1) % 3]];
            ++edges[{from, to}];
            --edges[{to, from}];
        }
    }
    for (const auto& [edge, count] : edges) {
        if (count != 0) {
            return fmt::format("an edge at ({}, {}, {}) is open", edge.first[0], edge.first[1],
                               edge.first[2]);
        }
    }
    return {};
}

std::string WhyNotClean(const LayerModel& solid) {
    for (const auto& corners : solid.triangles) {
        const Vector first = PositionOf(solid, corners[0]);
        const double twiceArea = Length(CrossOf(Minus(PositionOf(solid, corners[1]), first),
                                                Minus(PositionOf(solid, corners[2]), first)));
        if (!(twiceArea > 1e-12)) {
            return fmt::format("the triangle {}, {}, {} has no area", corners[0], corners[1],
                               corners[2]);
        }
        for (std::size_t i = 0; i < 3; ++i) {
            const Vector start = PositionOf(solid, corners[i]);
            const Vector edge = Minus(PositionOf(solid, corners[(i + 1) % 3]), start);
            const double length = Length(edge);
            for (std::uint32_t vertex = 0; vertex < solid.vertices.size(); ++vertex) {
                const Vector way = Minus(PositionOf(solid, vertex), start);
                const double along = Dot(way, edge) / length;
                constexpr double close = 1e-6;
                if (along > close && along < length - close &&
                    Length(CrossOf(way, edge)) / length < close) {
                    return fmt::format("vertex {} lies within the edge from {} to {}", vertex,
                                       corners[i], corners[(i + 1) % 3]);
                }
            }
        }
    }
    return {};
}

std::string WhyMoved(const LayerModel& solid, const Layer& layer, const ProcessModel& model,
                     double tolerance) {
    const ShownWindow window = FindShownWindow(model.grid);
    const double spacing = layer.spacing;
    const double x =
        static_cast<double>(solid.vertices.empty() ? 0.0f : window.marginCols) * spacing -
        static_cast<double>(model.grid.marginX);
    const double y = window.marginRows * spacing - static_cast<double>(model.grid.marginY);
    for (const auto& corners : solid.triangles) {
        std::array<Vector, 3> places{};  // in cells
        for (std::size_t i = 0; i < 3; ++i) {
            const Vector place = PositionOf(solid, corners[i]);
            places[i] = {std::round((place[0] - x) / spacing), std::round((place[1] - y) / spacing),
                         place[2]};
        }
        const auto turn = [](const Vector& a, const Vector& b, double col, double row) {
            return (b[0] - a[0]) * (row - a[1]) - (b[1] - a[1]) * (col - a[0]);
        };
        const double area = turn(places[0], places[1], places[2][0], places[2][1]);
        if (area == 0.0) {
            continue;  // a wall
        }
        const auto& surface = area > 0.0 ? layer.top : layer.bottom;
        const auto [left, right] = std::minmax({places[0][0], places[1][0], places[2][0]});
        const auto [front, back] = std::minmax({places[0][1], places[1][1], places[2][1]});
        for (double row = front; row <= back; row += 1.0) {
            for (double col = left; col <= right; col += 1.0) {
                std::array<double, 3> shares{};
                for (std::size_t i = 0; i < 3; ++i) {
                    shares[i] = turn(places[(i + 1) % 3], places[(i + 2) % 3], col, row) / area;
                }
                if (*std::min_element(shares.begin(), shares.end()) < 0.0) {
                    continue;
                }
                const double height =
                    shares[0] * places[0][2] + shares[1] * places[1][2] + shares[2] * places[2][2];
                const double drawn = surface[window.GridIndex(static_cast<std::int32_t>(col),
                                                              static_cast<std::int32_t>(row))];
                if (std::abs(height - drawn) * 1000.0 > tolerance + 1e-6) {
                    return fmt::format("({}, {}) is moved by {} nm", col, row,
                                       (height - drawn) * 1000.0);
                }
            }
        }
    }
    return {};
}

double VolumeOf(const LayerModel& solid) {
    double sixfold = 0.0;
    for (const auto& corners : solid.triangles) {
        sixfold += Dot(PositionOf(solid, corners[0]),
                       CrossOf(PositionOf(solid, corners[1]), PositionOf(solid, corners[2])));
    }
    return sixfold / 6.0;
}

double DrawnVolume(const Layer& layer, const ProcessModel& model) {
    const ShownWindow window = FindShownWindow(model.grid);
    const auto thickness = [&](std::int32_t col, std::int32_t row) {
        const std::size_t i = window.GridIndex(col, row);
        return static_cast<double>(layer.top[i]) - static_cast<double>(layer.bottom[i]);
    };
    double sum = 0.0;
    for (std::int32_t row = 0; row + 1 < window.rows; ++row) {
        for (std::int32_t col = 0; col + 1 < window.cols; ++col) {
            sum += thickness(col, row) + thickness(col + 1, row) + thickness(col, row + 1);
            sum += thickness(col + 1, row + 1) + thickness(col + 1, row) + thickness(col, row + 1);
        }
    }
    const double spacing = layer.spacing;
    return sum * spacing * spacing / 6.0;
}

}  // namespace zelmo
