#include "results/models/border_walls.h"

#include <cstddef>

namespace zelmo {

namespace {

/// A corner of a piece of wall, in the wall's plane.
struct FlatCorner {
    WallCorner corner;
    std::int32_t along = 0;
    double height = 0.0;
};

/// Twice the area of a triangle, above 0 where its corners run counter-clockwise.
double Turn(const FlatCorner& a, const FlatCorner& b, const FlatCorner& c) {
    return static_cast<double>(b.along - a.along) * (c.height - a.height) -
           (b.height - a.height) * static_cast<double>(c.along - a.along);
}

/// Triangulates a piece of wall between two lines that lead from its left to its right end, by a
/// sweep that keeps the corners which are not finished on a stack.
class WallPiece {
public:
    explicit WallPiece(std::vector<WallTriangle>& triangles) : triangles_(triangles) {}

    /// The corners from left to right; where both lines have one, the lower one first.
    void Add(const FlatCorner& corner) {
        if (stack_.size() < 2) {
            stack_.push_back(corner);
            return;
        }
        if (corner.corner.side != stack_.back().corner.side) {
            AddFan(corner);
        } else {
            AddOnLine(corner);
        }
    }

    /// The right end, which belongs to both lines.
    void End(const FlatCorner& corner) {
        AddFan(corner);
        stack_.clear();
    }

private:
    /// To all that is left of the other line.
    void AddFan(const FlatCorner& corner) {
        const bool isLower = stack_.back().corner.side == LayerSide::Top;
        for (std::size_t i = 0; i + 1 < stack_.size(); ++i) {
            Append(stack_[i], corner, stack_[i + 1], isLower);
        }
        const FlatCorner last = stack_.back();
        stack_ = {last, corner};
    }

    /// To what can be seen of its own line.
    void AddOnLine(const FlatCorner& corner) {
        const bool isLower = corner.corner.side == LayerSide::Bottom;
        while (stack_.size() > 1) {
            const FlatCorner& last = stack_.back();
            const FlatCorner& before = stack_[stack_.size() - 2];
            const double turn = Turn(before, last, corner);
            if (!(isLower ? turn > 0.0 : turn < 0.0)) {
                break;
            }
            Append(before, last, corner, isLower);
            stack_.pop_back();
        }
        stack_.push_back(corner);
    }

    void Append(const FlatCorner& a, const FlatCorner& b, const FlatCorner& c, bool asGiven) {
        if (asGiven) {
            triangles_.push_back({a.corner, b.corner, c.corner});
        } else {
            triangles_.push_back({a.corner, c.corner, b.corner});
        }
    }

    std::vector<WallTriangle>& triangles_;
    std::vector<FlatCorner> stack_;
};

/// One side of the window, seen from outside.
class Wall {
public:
    Wall(const LayerArea& area, const LayerSurfaces& surfaces, GridStep start, GridStep step,
         std::int32_t count, std::vector<WallTriangle>& triangles)
        : area_(area),
          surfaces_(surfaces),
          start_(start),
          step_(step),
          count_(count),
          triangles_(triangles) {}

    void Build() const {
        std::int32_t first = 0;
        for (std::int32_t i = 1; i < count_; ++i) {
            const bool isEnd = i + 1 == count_ || !IsThick(i);
            if (isEnd) {
                if (IsThick(first) || IsThick(i) || i - first > 1) {
                    BuildPiece(first, i);
                }
                first = i;
            }
        }
    }

private:
    GridStep At(std::int32_t along) const {
        return {start_.col + along * step_.col, start_.row + along * step_.row};
    }

    bool IsThick(std::int32_t along) const {
        const auto [col, row] = At(along);
        return area_.IsThick(col, row);
    }

    FlatCorner CornerAt(LayerSide side, std::int32_t along, int sector = 0) const {
        const auto [col, row] = At(along);
        return {{side, col, row, sector}, along, area_.Height(side, col, row)};
    }

    /// The direction in which the wall runs: the window is on its left.
    int Direction() const {
        int direction = 0;
        while (edgeSteps[direction].col != step_.col || edgeSteps[direction].row != step_.row) {
            ++direction;
        }
        return direction;
    }

    /// Between two nodes of which each is an end of the wall, or lacks the layer. It exists at all
    /// nodes between them.
    void BuildPiece(std::int32_t first, std::int32_t last) const {
        const int firstSector = Direction();
        const int lastSector = (Direction() + 2) % 6;
        WallPiece piece(triangles_);
        piece.Add(CornerAt(LayerSide::Bottom, first, firstSector));
        if (IsThick(first)) {
            piece.Add(CornerAt(LayerSide::Top, first));
        }
        for (std::int32_t along = first + 1; along < last; ++along) {
            const auto [col, row] = At(along);
            const std::size_t node = area_.Node(col, row);
            if (surfaces_.bottom.kept[node] != 0) {
                piece.Add(CornerAt(LayerSide::Bottom, along));
            }
            if (surfaces_.top.kept[node] != 0) {
                piece.Add(CornerAt(LayerSide::Top, along));
            }
        }
        if (IsThick(last)) {
            piece.Add(CornerAt(LayerSide::Bottom, last));
        }
        piece.End(CornerAt(LayerSide::Top, last, lastSector));
    }

    const LayerArea& area_;
    const LayerSurfaces& surfaces_;
    GridStep start_;
    GridStep step_;
    std::int32_t count_;  ///< of nodes
    std::vector<WallTriangle>& triangles_;
};

}  // namespace

std::vector<WallTriangle> MakeBorderWalls(const LayerArea& area, const LayerSurfaces& surfaces) {
    std::vector<WallTriangle> triangles;
    const std::int32_t cols = area.Cols();
    const std::int32_t rows = area.Rows();
    Wall(area, surfaces, {0, 0}, {1, 0}, cols, triangles).Build();
    Wall(area, surfaces, {cols - 1, 0}, {0, 1}, rows, triangles).Build();
    Wall(area, surfaces, {cols - 1, rows - 1}, {-1, 0}, cols, triangles).Build();
    Wall(area, surfaces, {0, rows - 1}, {0, -1}, rows, triangles).Build();
    return triangles;
}

}  // namespace zelmo
