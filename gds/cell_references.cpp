#include "gds/cell_references.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "gds/gds_database.h"

namespace zelmo {

namespace {

/// The first cell of every name, in a table with at least one free place for each of them.
class CellsByName {
public:
    explicit CellsByName(std::span<GdsCell> cells)
        : cells_(cells), places_(std::bit_ceil(2 * cells.size() + 1)) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::string_view name = NameText(cells[i].name);
            Place& place = PlaceOf(name);
            if (place.cell == 0) {
                place = {ShortHash(name), static_cast<std::uint32_t>(i + 1)};
            }
        }
    }

    /// Null where no cell has that name.
    GdsCell* Find(std::string_view name) {
        const std::uint32_t cell = PlaceOf(name).cell;
        return cell == 0 ? nullptr : &cells_[cell - 1];
    }

private:
    struct Place {
        std::uint32_t hash = 0;
        std::uint32_t cell = 0;  ///< its number, counted from 1; 0 where the place is free
    };

    static std::uint32_t ShortHash(std::string_view name) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
    }

    /// The place of that name, or the free one where it belongs.
    Place& PlaceOf(std::string_view name) {
        const std::uint32_t hash = ShortHash(name);
        std::size_t i = hash % places_.size();
        while (places_[i].cell != 0 &&
               (places_[i].hash != hash || NameText(cells_[places_[i].cell - 1].name) != name)) {
            i = (i + 1) % places_.size();
        }
        return places_[i];
    }

    std::span<GdsCell> cells_;
    std::vector<Place> places_;
};

/// Finds cells for references, of which many share one copy of a name: those looked up of late are
/// known by where it lies.
class ReferenceBinder {
public:
    explicit ReferenceBinder(std::span<GdsCell> cells) : cells_(cells) {}

    /// False if there is no such cell.
    template <typename Reference>
    bool Bind(std::span<Reference> references) {
        for (Reference& reference : references) {
            reference.cell = CellOf(reference.name);
            if (reference.cell == nullptr) {
                return false;
            }
        }
        return true;
    }

private:
    struct Found {
        std::string_view name;
        GdsCell* cell = nullptr;
    };

    GdsCell* CellOf(std::string_view name) {
        Found& found = lately_[std::hash<const void*>()(name.data()) / 2 % lately_.size()];
        if (found.cell == nullptr || found.name.data() != name.data() ||
            found.name.size() != name.size()) {
            found = {name, cells_.Find(NameText(name))};
        }
        return found.cell;
    }

    CellsByName cells_;
    std::array<Found, 4096> lately_;
};

const GdsCell* ReferencedCell(const GdsCell& cell, std::size_t index) {
    return index < cell.srefs.size() ? cell.srefs[index].cell
                                     : cell.arefs[index - cell.srefs.size()].cell;
}

enum class Mark : std::uint8_t { Unseen, Open, Done };

/// A walk down the references, on a stack of its own: a file can nest cells as deep as it likes.
class CircleSearch {
public:
    explicit CircleSearch(const GdsDatabase& database)
        : cells_(database.cells.Items()), marks_(database.cells.size(), Mark::Unseen) {}

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

    std::span<const GdsCell> cells_;
    std::vector<Mark> marks_;
    std::vector<Visit> path_;
};

}  // namespace

bool BindReferences(GdsDatabase& database) {
    ReferenceBinder binder(database.cells.Items());
    for (GdsCell& cell : database.cells) {
        if (!binder.Bind(cell.srefs) || !binder.Bind(cell.arefs)) {
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
