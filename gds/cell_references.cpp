#include "gds/cell_references.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "gds/gds_database.h"

namespace zelmo {

namespace {

using CellsByName = std::unordered_map<std::string_view, GdsCell*>;

template <typename Reference>
bool Bind(std::vector<Reference>& references, const CellsByName& cells) {
    for (Reference& reference : references) {
        const auto found = cells.find(NameText(reference.name));
        reference.cell = found == cells.end() ? nullptr : found->second;
        if (reference.cell == nullptr) {
            return false;
        }
    }
    return true;
}

const GdsCell* ReferencedCell(const GdsCell& cell, std::size_t index) {
    return index < cell.srefs.size() ? cell.srefs[index].cell
                                     : cell.arefs[index - cell.srefs.size()].cell;
}

enum class Mark : std::uint8_t { Unseen, Open, Done };

/// A walk down the references, on a stack of its own: a file can nest cells as deep as it likes.
class CircleSearch {
public:
    explicit CircleSearch(const GdsDatabase& database)
        : cells_(database.cells), marks_(database.cells.size(), Mark::Unseen) {}

    /// Whether a circle can be reached from the cell.
    bool From(const GdsCell& start) {
        if (MarkOf(start) == Mark::Unseen) {
            Open(start);
        }
        while (!path_.empty()) {
            auto& [cell, next] = path_.back();
            if (next == cell->srefs.size() + cell->arefs.size()) {
                MarkOf(*cell) = Mark::Done;
                path_.pop_back();
                continue;
            }
            const GdsCell& child = *ReferencedCell(*cell, next++);
            if (MarkOf(child) == Mark::Open) {
                return true;
            }
            if (MarkOf(child) == Mark::Unseen) {
                Open(child);
            }
        }
        return false;
    }

private:
    struct Visit {
        const GdsCell* cell;
        std::size_t next;  ///< the reference to follow next
    };

    Mark& MarkOf(const GdsCell& cell) {
        return marks_[static_cast<std::size_t>(&cell - cells_.data())];
    }

    void Open(const GdsCell& cell) {
        MarkOf(cell) = Mark::Open;
        path_.push_back({&cell, 0});
    }

    const std::vector<GdsCell>& cells_;
    std::vector<Mark> marks_;
    std::vector<Visit> path_;
};

}  // namespace

bool BindReferences(GdsDatabase& database) {
    CellsByName cells;
    cells.reserve(database.cells.size());
    for (GdsCell& cell : database.cells) {
        cells.emplace(NameText(cell.name), &cell);  // of two cells with one name the first counts
    }
    for (GdsCell& cell : database.cells) {
        if (!Bind(cell.srefs, cells) || !Bind(cell.arefs, cells)) {
            return false;
        }
    }
    return true;
}

bool HasReferenceCircle(const GdsDatabase& database) {
    CircleSearch search(database);
    for (const GdsCell& cell : database.cells) {
        if (search.From(cell)) {
            return true;
        }
    }
    return false;
}

}  // namespace zelmo
