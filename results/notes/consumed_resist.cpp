#include "results/notes/consumed_resist.h"

#include <algorithm>
#include <cstddef>

namespace zelmo {

namespace {

/// Whether there is a square of marked cells with this side.
bool HasSquare(const std::vector<std::uint8_t>& marks, std::int32_t cols, std::int32_t side) {
    // The side of the largest square that ends at a cell: one more than the least of those that
    // end at its three neighbours before it.
    const auto width = static_cast<std::size_t>(cols);
    std::vector<std::int32_t> last(width + 1, 0);
    std::vector<std::int32_t> present(width + 1, 0);
    for (std::size_t row = 0; row + width <= marks.size(); row += width) {
        for (std::size_t col = 0; col < width; ++col) {
            const std::int32_t least = std::min({last[col], last[col + 1], present[col]});
            present[col + 1] = marks[row + col] != 0 ? least + 1 : 0;
            if (present[col + 1] >= side) {
                return true;
            }
        }
        std::swap(last, present);
    }
    return false;
}

/// Pieces of resist, found one after the other.
class Pieces {
public:
    explicit Pieces(const ConsumedResist& resist)
        : resist_(resist),
          cols_(static_cast<std::size_t>(resist.cols)),
          rows_(resist.before.size() / cols_),
          isOpen_(resist.before) {}

    /// Whether all of the piece around a cell is gone; it is not looked at again.
    bool TakePiece(std::size_t cell) {
        bool isGone = true;
        bool isWhole = true;
        std::size_t size = 0;
        Visit(cell);
        while (!waiting_.empty()) {
            const std::size_t here = waiting_.back();
            waiting_.pop_back();
            ++size;
            isGone = isGone && resist_.consumed[here] != 0;
            isWhole = VisitAround(here) && isWhole;
        }
        return isGone && isWhole && size >= smallestPiece;
    }

    bool IsOpen(std::size_t cell) const { return isOpen_[cell] != 0; }

private:
    /// A few cells are dust.
    static constexpr std::size_t smallestPiece = 9;

    void Visit(std::size_t cell) {
        if (isOpen_[cell] != 0) {
            isOpen_[cell] = 0;
            waiting_.push_back(cell);
        }
    }

    /// False at the window's edge, where the piece may go on.
    bool VisitAround(std::size_t cell) {
        const std::size_t col = cell % cols_;
        const std::size_t row = cell / cols_;
        if (col == 0 || row == 0 || col + 1 == cols_ || row + 1 == rows_) {
            VisitAtEdge(cell, col, row);
            return false;
        }
        Visit(cell - 1);
        Visit(cell + 1);
        Visit(cell - cols_);
        Visit(cell + cols_);
        return true;
    }

    void VisitAtEdge(std::size_t cell, std::size_t col, std::size_t row) {
        if (col > 0) {
            Visit(cell - 1);
        }
        if (col + 1 < cols_) {
            Visit(cell + 1);
        }
        if (row > 0) {
            Visit(cell - cols_);
        }
        if (row + 1 < rows_) {
            Visit(cell + cols_);
        }
    }

    const ConsumedResist& resist_;
    std::size_t cols_;
    std::size_t rows_;
    std::vector<std::uint8_t> isOpen_;
    std::vector<std::size_t> waiting_;
};

bool IsAPieceGone(const ConsumedResist& resist) {
    Pieces pieces(resist);
    for (std::size_t cell = 0; cell < resist.consumed.size(); ++cell) {
        if (resist.consumed[cell] != 0 && pieces.IsOpen(cell) && pieces.TakePiece(cell)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool IsMoreThanSlopes(const ConsumedResist& resist, std::int32_t slope) {
    return HasSquare(resist.consumed, resist.cols, 2 * slope + 1) || IsAPieceGone(resist);
}

}  // namespace zelmo
