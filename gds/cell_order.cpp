#include "gds/cell_order.h"

#include <cstdint>

#include "gds/gds_database.h"

namespace zelmo {

namespace {

enum class Mark : std::uint8_t { Unseen, Open, Done };

/// A walk down the references, on a stack of its own: a file can nest cells as deep as it likes.
class OrderingWalk {
public:
    explicit OrderingWalk(const GdsDatabase& database)
        : database_(database), marks_(database.cells.size(), Mark::Unseen) {
        order_.isEndless.resize(database.cells.size(), false);
        order_.isTop.resize(database.cells.size(), true);
    }

    CellOrder Run() {
        for (std::size_t cell = 0; cell < marks_.size(); ++cell) {
            if (marks_[cell] == Mark::Unseen) {
                WalkFrom(cell);
            }
        }
        return std::move(order_);
    }

private:
    struct Visit {
        std::size_t cell;
        std::size_t next;  ///< the reference to follow next: srefs, then arefs
    };

    void Open(std::size_t cell) {
        marks_[cell] = Mark::Open;
        path_.push_back({cell, 0});
    }

    const GdsCell* Child(const GdsCell& cell, std::size_t index) const {
        return index < cell.srefs.size() ? cell.srefs[index].cell
                                         : cell.arefs[index - cell.srefs.size()].cell;
    }

    void WalkFrom(std::size_t start) {
        Open(start);
        while (!path_.empty()) {
            auto& [number, next] = path_.back();
            const GdsCell& cell = database_.cells[number];
            if (next == cell.srefs.size() + cell.arefs.size()) {
                Leave(number);
                continue;
            }
            const GdsCell* const child = Child(cell, next++);
            if (child != nullptr) {
                Follow(number, static_cast<std::size_t>(child - database_.cells.begin()));
            }
        }
    }

    void Follow(std::size_t cell, std::size_t child) {
        if (child != cell) {
            order_.isTop[child] = false;
        }
        if (marks_[child] == Mark::Unseen) {
            Open(child);
        } else if (marks_[child] == Mark::Open || order_.isEndless[child]) {
            order_.isEndless[cell] = true;
        }
    }

    void Leave(std::size_t cell) {
        marks_[cell] = Mark::Done;
        order_.childrenFirst.push_back(cell);
        path_.pop_back();
        if (!path_.empty() && order_.isEndless[cell]) {
            order_.isEndless[path_.back().cell] = true;
        }
    }

    const GdsDatabase& database_;
    std::vector<Mark> marks_;
    std::vector<Visit> path_;
    CellOrder order_;
};

}  // namespace

CellOrder OrderCells(const GdsDatabase& database) {
    return OrderingWalk(database).Run();
}

}  // namespace zelmo
