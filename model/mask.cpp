#include "model/mask.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <vector>

#include "model/conversions.h"

namespace zelmo {

namespace {

constexpr float largestFloat = std::numeric_limits<float>::max();

std::size_t CellIndex(const ProcessModel& model, std::int32_t col, std::int32_t row) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(model.gridColumns) +
           static_cast<std::size_t>(col);
}

/// Calls visit(x) for every crossing of the polygon's outline with the horizontal line at y. An
/// edge counts its lower end and not its upper one, so that shared corners cross once.
template <typename Visit>
void VisitCrossings(const MaskPolygon& polygon, double y, Visit visit) {
    if (polygon.points.empty()) {
        throw std::out_of_range("invalid vector subscript");
    }
    const MaskPoint* previous = &polygon.points.back();
    for (const MaskPoint& point : polygon.points) {
        if ((point.y > y) != (previous->y > y)) {
            visit((previous->x - point.x) * (y - point.y) / (previous->y - point.y) + point.x);
        }
        previous = &point;
    }
}

/// The cells whose corner points are tested against a polygon; the upper ends are exclusive.
struct CellRange {
    std::int32_t firstCol = 0;
    std::int32_t firstRow = 0;
    std::int32_t endCol = 0;
    std::int32_t endRow = 0;
};

CellRange CellsOfBox(const ProcessModel& model, const MaskPolygon& polygon) {
    const double spacing = model.gridSpacing;
    const auto toCells = [spacing](double position) {
        return TruncateToI32(std::floor(position / spacing));
    };
    CellRange range;
    range.firstCol = std::max(0, toCells(polygon.minX));
    range.firstRow = std::max(0, toCells(polygon.minY));
    range.endCol = std::min(model.gridColumns, toCells(polygon.maxX));
    range.endRow = std::min(model.gridRows, toCells(polygon.maxY));
    return range;
}

/// Writes `value` into the polygon's cells. The crossings are the same for all cells of a row, so
/// they are found once and counted off from left to right: a cell with an odd number of crossings
/// to its right lies inside.
void FillPolygon(const ProcessModel& model, const MaskPolygon& polygon,
                 std::span<std::uint8_t> rawMask, std::uint8_t value) {
    const CellRange range = CellsOfBox(model, polygon);
    if (range.firstCol >= range.endCol) {
        return;
    }
    std::vector<double> crossings;
    for (std::int32_t row = range.firstRow; row < range.endRow; ++row) {
        const float y = static_cast<float>(row) * model.gridSpacing;
        crossings.clear();
        VisitCrossings(polygon, y, [&crossings](double crossing) {
            if (!std::isnan(crossing)) {
                crossings.push_back(crossing);
            }
        });
        std::sort(crossings.begin(), crossings.end());

        auto right = crossings.begin();
        for (std::int32_t col = range.firstCol; col < range.endCol; ++col) {
            const double x = static_cast<float>(col) * model.gridSpacing;
            while (right != crossings.end() && *right <= x) {
                ++right;
            }
            if ((crossings.end() - right) % 2 != 0) {
                rawMask[CellIndex(model, col, row)] = value;
            }
        }
    }
}

}  // namespace

double RasteriseMask(const ProcessModel& model, std::span<std::uint8_t> rawMask,
                     std::uint32_t maskId, bool maskDark) {
    const std::uint8_t inside = maskDark ? 1 : 0;
    std::fill(rawMask.begin(), rawMask.end(), static_cast<std::uint8_t>(1 - inside));
    float smallest = largestFloat;
    for (const MaskPolygon& polygon : model.polygons) {
        if (polygon.layer != maskId) {
            continue;
        }
        FillPolygon(model, polygon, rawMask, inside);
        const double size = std::min(polygon.maxY - polygon.minY, polygon.maxX - polygon.minX);
        if (size < smallest) {
            smallest = static_cast<float>(size);
        }
    }
    return smallest;
}

bool PointInPolygon(const MaskPolygon& polygon, double x, double y) {
    bool inside = false;
    VisitCrossings(polygon, y, [&inside, x](double crossing) {
        if (crossing > x) {
            inside = !inside;
        }
    });
    return inside;
}

}  // namespace zelmo
