#include "gds/cell_references.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "gds/gds_database.h"

namespace zelmo {

namespace {

/// The first cell of every name, in a table with at least one free place for each of them.
class CellsByName {
public:
    explicit CellsByName(std::vector<GdsCell>& cells)
        : cells_(cells), places_(std::bit_ceil(2 * cells.size() + 1)) {
        for (GdsCell& cell : cells_) {
            Place& place = PlaceOf(NameText(cell.name));
            if (place.cell == nullptr) {
                place = {HashOf(NameText(cell.name)), &cell};
            }
        }
    }

    /// Null where no cell has that name.
    GdsCell* Find(std::string_view name) { return PlaceOf(name).cell; }

private:
    struct Place {
        std::size_t hash = 0;
        GdsCell* cell = nullptr;
    };

    static std::size_t HashOf(std::string_view name) { return std::hash<std::string_view>()(name); }

    /// The place of that name, or the free one where it belongs.
    Place& PlaceOf(std::string_view name) {
        const std::size_t hash = HashOf(name);
        std::size_t i = hash % places_.size();
        while (places_[i].cell != nullptr &&
               (places_[i].hash != hash || NameText(places_[i].cell->name) != name)) {
            i = (i + 1) % places_.size();
        }
        return places_[i];
    }

    std::vector<GdsCell>& cells_;
    std::vector<Place> places_;
};

template <typename Reference>
bool Bind(GrowingArray<Reference>& references, CellsByName& cells) {
    const Reference* last = nullptr;
    for (Reference& reference : references) {
        if (last != nullptr && last->name.data() == reference.name.data() &&
            last->name.size() == reference.name.size()) {
            reference.cell = last->cell;
        } else {
            reference.cell = cells.Find(NameText(reference.name));
        }
        if (reference.cell == nullptr) {
            return false;
        }
        last = &reference;
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
    CellsByName cells(database.cells);
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
