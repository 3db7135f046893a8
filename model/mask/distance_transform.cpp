#include "model/mask/distance_transform.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "base/row_bands.h"

// Distances along the columns first, in two sweeps. A cell of a row then sees, in every column u of
// the row, a free cell at the distance g(u) above or below: the least of (x - u)^2 + g(u)^2 over
// all u is its squared distance. These are parabolas of one shape; their lower envelope along the
// row is built in one sweep and read off in another, all in whole numbers.

namespace zelmo {

namespace {

constexpr std::int32_t narrowestBand = 64;

/// A grid's mask and what is worked out for it.
struct Transform {
    const std::uint8_t* mask;
    std::int32_t* values;
    std::int32_t cols;
    std::int32_t rows;

    std::int32_t Far() const { return rows; }  ///< more than any distance along a column
    const std::uint8_t* MaskRow(std::int32_t row) const { return mask + Offset(row); }
    std::int32_t* Row(std::int32_t row) const { return values + Offset(row); }

private:
    std::size_t Offset(std::int32_t row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(cols);
    }
};

/// Distances to the nearest free cell of the same column, Far() or more without any.
void MeasureColumns(const Transform& transform, std::int32_t firstCol, std::int32_t endCol) {
    for (std::int32_t col = firstCol; col < endCol; ++col) {
        transform.Row(0)[col] = transform.MaskRow(0)[col] != 0 ? transform.Far() : 0;
    }
    for (std::int32_t row = 1; row < transform.rows; ++row) {
        const std::int32_t* above = transform.Row(row - 1);
        const std::uint8_t* mask = transform.MaskRow(row);
        std::int32_t* here = transform.Row(row);
        for (std::int32_t col = firstCol; col < endCol; ++col) {
            here[col] = mask[col] != 0 ? above[col] + 1 : 0;
        }
    }
    for (std::int32_t row = transform.rows - 2; row >= 0; --row) {
        const std::int32_t* below = transform.Row(row + 1);
        std::int32_t* here = transform.Row(row);
        for (std::int32_t col = firstCol; col < endCol; ++col) {
            here[col] = std::min(here[col], below[col] + 1);
        }
    }
}

/// One column's parabola.
struct Parabola {
    std::int32_t col;
    std::int32_t height;  ///< g^2 + col^2: what is left of (x - col)^2 + g^2 without x

    std::int32_t At(std::int32_t x) const { return height + x * (x - 2 * col); }
};

/// Whether `middle` lies nowhere below both of its neighbours to the left and to the right.
bool IsHidden(const Parabola& left, const Parabola& middle, const Parabola& right) {
    return static_cast<std::int64_t>(right.height - middle.height) * (middle.col - left.col) <=
           static_cast<std::int64_t>(middle.height - left.height) * (right.col - middle.col);
}

/// The lower envelope of parabolas that come from left to right.
class Envelope {
public:
    explicit Envelope(std::int32_t cols) : parabolas_(static_cast<std::size_t>(cols)) {}

    void Clear() { count_ = 0; }

    void Add(std::int32_t col, std::int32_t distance) {
        const Parabola added{col, distance * distance + col * col};
        while (count_ >= 2 && IsHidden(parabolas_[count_ - 2], parabolas_[count_ - 1], added)) {
            --count_;
        }
        parabolas_[count_++] = added;
    }

    /// Writes its values over the columns from `first` up to but without `end`.
    void Read(std::int32_t* values, std::int32_t first, std::int32_t end) const {
        std::size_t lowest = 0;
        for (std::int32_t x = first; x < end; ++x) {
            while (lowest + 1 < count_ &&
                   parabolas_[lowest + 1].At(x) <= parabolas_[lowest].At(x)) {
                ++lowest;
            }
            values[x] = parabolas_[lowest].At(x);
        }
    }

private:
    std::vector<Parabola> parabolas_;
    std::size_t count_ = 0;
};

/// Turns the distances along the columns into squared distances, in the masked cells of a row from
/// `first` up to but without `end`. The cells beside them are free or outside the grid: nothing
/// beyond them is nearer, and no column whose free cell is farther than theirs matters.
void MeasureRun(const Transform& transform, Envelope& envelope, std::int32_t* values,
                std::int32_t first, std::int32_t end) {
    const bool freeLeft = first > 0;
    const bool freeRight = end < transform.cols;
    const std::int32_t length = end - first;
    const std::int32_t farthest = freeLeft && freeRight   ? (length + 1) / 2
                                  : freeLeft || freeRight ? length
                                                          : transform.Far();
    const std::int32_t reach = std::min(farthest, transform.Far());
    envelope.Clear();
    if (freeLeft) {
        envelope.Add(first - 1, 0);
    }
    for (std::int32_t col = first; col < end; ++col) {
        if (values[col] < reach) {
            envelope.Add(col, values[col]);
        }
    }
    if (freeRight) {
        envelope.Add(end, 0);
    }
    envelope.Read(values, first, end);
}

const std::uint8_t* FirstFree(const std::uint8_t* first, const std::uint8_t* end) {
    const void* found = std::memchr(first, 0, static_cast<std::size_t>(end - first));
    return found != nullptr ? static_cast<const std::uint8_t*>(found) : end;
}

void MeasureRow(const Transform& transform, Envelope& envelope, std::int32_t row) {
    const std::uint8_t* mask = transform.MaskRow(row);
    const std::uint8_t* maskEnd = mask + transform.cols;
    const std::uint8_t* next = mask;
    while (next != maskEnd) {
        const std::uint8_t* first =
            std::find_if(next, maskEnd, [](std::uint8_t cell) { return cell != 0; });
        next = FirstFree(first, maskEnd);
        if (first != next) {
            MeasureRun(transform, envelope, transform.Row(row),
                       static_cast<std::int32_t>(first - mask),
                       static_cast<std::int32_t>(next - mask));
        }
    }
}

}  // namespace

bool SquaredDistanceTransform(std::span<std::int32_t> squared, std::span<const std::uint8_t> mask,
                              std::int32_t cols, std::int32_t rows) {
    if (FirstFree(mask.data(), mask.data() + mask.size()) == mask.data() + mask.size()) {
        return false;
    }
    const Transform transform{mask.data(), squared.data(), cols, rows};
    ForRowBands(cols, narrowestBand, [&](std::int32_t firstCol, std::int32_t endCol) {
        MeasureColumns(transform, firstCol, endCol);
    });
    ForRowBands(rows, narrowestBand, [&](std::int32_t firstRow, std::int32_t endRow) {
        Envelope envelope(cols);
        for (std::int32_t row = firstRow; row < endRow; ++row) {
            MeasureRow(transform, envelope, row);
        }
    });
    return true;
}

}  // namespace zelmo
