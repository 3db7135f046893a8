#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <vector>

#include "base/conversions.h"
#include "base/row_bands.h"
#include "model/grid/grid.h"
#include "model/mask/mask.h"

// A cell lies in a polygon if an odd number of crossings of the outline with the cell's row lie to
// its right. Every edge writes its crossings down once, as one bit each in the row that it crosses,
// at the first cell that no longer has the crossing to its right. Read from left to right, the bits
// of a row are the ends of the spans to fill.

namespace zelmo {

namespace {

constexpr std::int32_t narrowestBand = 64;

const MaskPoint& LastPoint(const MaskPolygon& polygon) {
    if (polygon.points.empty()) {
        throw std::out_of_range("invalid vector subscript");
    }
    return polygon.points.back();
}

/// Where the outline from `previous` to `point` crosses the horizontal line at y.
double CrossingAt(const MaskPoint& point, const MaskPoint& previous, double y) {
    return (previous.x - point.x) * (y - point.y) / (previous.y - point.y) + point.x;
}

/// The positions of the cells' corner points along an axis, in rising order.
class GridLines {
public:
    GridLines(std::int32_t count, float spacing)
        : positions_(static_cast<std::size_t>(count)),
          linesPerUnit_(1.0 / static_cast<double>(spacing)) {
        for (std::int32_t line = 0; line < count; ++line) {
            positions_[static_cast<std::size_t>(line)] = static_cast<float>(line) * spacing;
        }
    }

    double operator[](std::int32_t line) const {
        return positions_[static_cast<std::size_t>(line)];
    }

    /// The first line in [first, end) that does not lie below `position`, or `end`. Guessed, and
    /// corrected by comparisons with the lines as they are.
    std::int32_t FirstFrom(double position, std::int32_t first, std::int32_t end) const {
        const double guess = position * linesPerUnit_;
        std::int32_t line = first;
        if (guess > static_cast<double>(first)) {
            line = guess < static_cast<double>(end) ? static_cast<std::int32_t>(guess) : end;
        }
        while (line > first && (*this)[line - 1] >= position) {
            --line;
        }
        while (line < end && (*this)[line] < position) {
            ++line;
        }
        return line;
    }

private:
    std::vector<double> positions_;
    double linesPerUnit_;
};

/// The cells whose corner points are tested against a polygon; the upper ends are exclusive.
struct CellRange {
    std::int32_t firstCol = 0;
    std::int32_t firstRow = 0;
    std::int32_t endCol = 0;
    std::int32_t endRow = 0;

    bool IsEmpty() const { return firstCol >= endCol || firstRow >= endRow; }
};

CellRange CellsOfBox(const Grid& grid, const MaskPolygon& polygon) {
    const double spacing = grid.spacing;
    const auto toCells = [spacing](double position) {
        return TruncateToI32(std::floor(position / spacing));
    };
    CellRange range;
    range.firstCol = std::max(0, toCells(polygon.minX));
    range.firstRow = std::max(0, toCells(polygon.minY));
    range.endCol = std::min(grid.columns, toCells(polygon.maxX));
    range.endRow = std::min(grid.rows, toCells(polygon.maxY));
    return range;
}

/// Fills polygons into some rows of a mask, one after the other.
class PolygonFiller {
public:
    PolygonFiller(const GridLines& lines, std::span<std::uint8_t> mask, std::int32_t cols,
                  std::uint8_t value)
        : lines_(lines), mask_(mask), cols_(static_cast<std::size_t>(cols)), value_(value) {}

    void Fill(const MaskPolygon& polygon, const CellRange& range) {
        range_ = range;
        // One bit more than there are cells: that of crossings to the right of all of them.
        wordsPerRow_ = static_cast<std::size_t>(range.endCol - range.firstCol) / 64 + 1;
        const std::size_t rows = static_cast<std::size_t>(range.endRow - range.firstRow);
        crossings_.resize(std::max(crossings_.size(), rows * wordsPerRow_));
        MarkCrossings(polygon);
        for (std::int32_t row = range.firstRow; row < range.endRow; ++row) {
            FillRow(row);
        }
    }

private:
    /// Flips the bits of all crossings. An edge counts its lower end and not its upper one, so that
    /// shared corners cross once. An end that is not a number makes crossings that are none either,
    /// and those count nowhere.
    void MarkCrossings(const MaskPolygon& polygon) {
        const MaskPoint* previous = &LastPoint(polygon);
        std::int32_t previousRow = FirstRowFrom(previous->y);
        for (const MaskPoint& point : polygon.points) {
            const std::int32_t row = FirstRowFrom(point.y);
            if (row != previousRow && !std::isnan(point.y) && !std::isnan(previous->y)) {
                const std::int32_t end = std::max(row, previousRow);
                for (std::int32_t crossed = std::min(row, previousRow); crossed < end; ++crossed) {
                    MarkCrossing(crossed, CrossingAt(point, *previous, lines_[crossed]));
                }
            }
            previous = &point;
            previousRow = row;
        }
    }

    std::int32_t FirstRowFrom(double y) const {
        return lines_.FirstFrom(y, range_.firstRow, range_.endRow);
    }

    void MarkCrossing(std::int32_t row, double x) {
        if (std::isnan(x)) {
            return;
        }
        const auto bit = static_cast<std::size_t>(
            lines_.FirstFrom(x, range_.firstCol, range_.endCol) - range_.firstCol);
        WordsOfRow(row)[bit / 64] ^= std::uint64_t{1} << bit % 64;
    }

    std::uint64_t* WordsOfRow(std::int32_t row) {
        return &crossings_[static_cast<std::size_t>(row - range_.firstRow) * wordsPerRow_];
    }

    /// Fills the spans of a row, and clears its bits for the next polygon.
    void FillRow(std::int32_t row) {
        std::uint64_t* words = WordsOfRow(row);
        std::uint64_t all = 0;
        for (std::size_t i = 0; i < wordsPerRow_; ++i) {
            all ^= words[i];
        }
        // An odd number of crossings, one being lost: what lies left of all of them is inside.
        bool inside = std::popcount(all) % 2 != 0;
        std::size_t spanStart = 0;
        std::uint8_t* cells = &mask_[static_cast<std::size_t>(row) * cols_ +
                                     static_cast<std::size_t>(range_.firstCol)];
        for (std::size_t i = 0; i < wordsPerRow_; ++i) {
            for (; words[i] != 0; words[i] &= words[i] - 1) {
                const std::size_t crossing =
                    64 * i + static_cast<std::size_t>(std::countr_zero(words[i]));
                if (inside) {
                    std::memset(cells + spanStart, value_, crossing - spanStart);
                }
                spanStart = crossing;
                inside = !inside;
            }
        }
    }

    const GridLines& lines_;
    std::span<std::uint8_t> mask_;
    std::size_t cols_;
    std::uint8_t value_;
    CellRange range_;
    std::size_t wordsPerRow_ = 0;
    std::vector<std::uint64_t> crossings_;  ///< zero between polygons
};

}  // namespace

bool BelongsTo(std::span<const MaskLayer> mask, const MaskPolygon& polygon) {
    return IsPartOf(mask, polygon.layer, polygon.datatype);
}

double RasteriseMask(const Grid& grid, std::span<const MaskPolygon> polygons,
                     std::span<std::uint8_t> rawMask, std::span<const MaskLayer> mask,
                     bool maskDark) {
    const std::uint8_t inside = maskDark ? 1 : 0;
    std::fill(rawMask.begin(), rawMask.end(), static_cast<std::uint8_t>(1 - inside));
    const GridLines lines(std::max(grid.columns, grid.rows), grid.spacing);
    ForRowBands(grid.rows, narrowestBand, [&](std::int32_t firstRow, std::int32_t endRow) {
        PolygonFiller filler(lines, rawMask, grid.columns, inside);
        for (const MaskPolygon& polygon : polygons) {
            if (BelongsTo(mask, polygon)) {
                CellRange range = CellsOfBox(grid, polygon);
                range.firstRow = std::max(range.firstRow, firstRow);
                range.endRow = std::min(range.endRow, endRow);
                if (!range.IsEmpty()) {
                    filler.Fill(polygon, range);
                }
            }
        }
    });
    float smallest = std::numeric_limits<float>::max();
    for (const MaskPolygon& polygon : polygons) {
        const double size = std::min(polygon.maxY - polygon.minY, polygon.maxX - polygon.minX);
        if (size < smallest && BelongsTo(mask, polygon)) {
            smallest = static_cast<float>(size);
        }
    }
    return smallest;
}

bool PointInPolygon(const MaskPolygon& polygon, double x, double y) {
    bool inside = false;
    const MaskPoint* previous = &LastPoint(polygon);
    for (const MaskPoint& point : polygon.points) {
        if ((point.y > y) != (previous->y > y) && CrossingAt(point, *previous, y) > x) {
            inside = !inside;
        }
        previous = &point;
    }
    return inside;
}

}  // namespace zelmo
