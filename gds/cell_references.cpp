#include "gds/cell_references.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "base/row_bands.h"
#include "gds/gds_database.h"

namespace zelmo {

namespace {

/// The first cell of every name, in a table with at least one free slot for each of them. The slots
/// are in the order of the hashes.
class CellsByName {
public:
    explicit CellsByName(std::span<GdsCell> cells)
        : cells_(cells), bits_(std::bit_width(2 * cells.size())), slots_(std::size_t{1} << bits_) {
        std::vector<Slot> newcomers;
        newcomers.reserve(cells.size());
        for (const GdsCell& cell : cells) {
            const auto number = static_cast<std::uint32_t>(newcomers.size() + 1);
            newcomers.push_back({ShortHash(NameText(cell.name)), number});
        }
        // In rough order their slots lie close together, and are in the processor's own memory.
        for (const Slot& newcomer : InRoughOrder(newcomers)) {
            Slot& slot = slots_[SlotOf(newcomer.hash, [&] { return NameOf(newcomer); })];
            slot = slot.cell == 0 ? newcomer : slot;
        }
    }

    /// Null where no cell has that name.
    GdsCell* Find(std::string_view name) const {
        const std::uint32_t cell = slots_[SlotOf(ShortHash(name), [&] { return name; })].cell;
        return cell == 0 ? nullptr : &cells_[cell - 1];
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t cell = 0;  ///< its number, counted from 1; 0 where the slot is free
    };

    static std::uint32_t ShortHash(std::string_view name) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
    }

    /// Sorted by the first digits of the hashes; those that share them stay in order.
    static std::vector<Slot> InRoughOrder(const std::vector<Slot>& slots) {
        constexpr unsigned otherDigits = 24;
        std::array<std::size_t, 257> starts = {};
        for (const Slot& slot : slots) {
            ++starts[(slot.hash >> otherDigits) + 1];
        }
        std::partial_sum(starts.begin(), starts.end(), starts.begin());
        std::vector<Slot> sorted(slots.size());
        for (const Slot& slot : slots) {
            sorted[starts[slot.hash >> otherDigits]++] = slot;
        }
        return sorted;
    }

    std::string_view NameOf(const Slot& slot) const { return NameText(cells_[slot.cell - 1].name); }

    /// The slot of the name that `name` gives, or the free one where it belongs.
    template <typename Name>
    std::size_t SlotOf(std::uint32_t hash, Name name) const {
        std::size_t i = std::uint64_t{hash} << bits_ >> 32;
        while (slots_[i].cell != 0 && (slots_[i].hash != hash || NameOf(slots_[i]) != name())) {
            i = (i + 1) % slots_.size();
        }
        return i;
    }

    std::span<GdsCell> cells_;
    int bits_;  ///< of the number of a slot
    std::vector<Slot> slots_;
};

/// Finds cells for references, of which many share one copy of a name: those looked up of late are
/// known by where it lies.
class ReferenceBinder {
public:
    explicit ReferenceBinder(const CellsByName& cells) : cells_(cells) {}

    /// False if there is no such cell.
    template <typename Reference>
    bool Bind(Reference& reference) {
        reference.cell = CellOf(reference.name);
        return reference.cell != nullptr;
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

    const CellsByName& cells_;
    std::array<Found, 4096> lately_;
};

/// References are counted through: the srefs and arefs of the first cell, those of the second, ...
struct ReferenceRange {
    std::size_t first = 0;
    std::size_t end = 0;
};

std::size_t ReferenceCount(const GdsDatabase& database) {
    const auto add = [](std::size_t count, const GdsCell& cell) {
        return count + cell.srefs.size() + cell.arefs.size();
    };
    return std::accumulate(database.cells.begin(), database.cells.end(), std::size_t{0}, add);
}

/// Calls `take` for every reference of the range, until it returns false. Returns the number of the
/// reference where it did, or the end of the range.
template <typename Take>
std::size_t ForReferences(GdsDatabase& database, ReferenceRange range, Take take) {
    std::size_t number = 0;  // of the first one in the list
    std::size_t at = range.first;
    const auto pass = [&](auto references) {
        while (at < std::min(number + references.size(), range.end)) {
            if (!take(references[at - number])) {
                return false;
            }
            ++at;
        }
        number += references.size();
        return true;
    };
    for (GdsCell& cell : database.cells) {
        if (at == range.end || !pass(cell.srefs) || !pass(cell.arefs)) {
            break;
        }
    }
    return at;
}

/// The position of a cell's reference that is counted through its srefs and arefs.
ReferencePosition PositionIn(const GdsCell& cell, std::size_t cellNumber, std::size_t number) {
    const std::size_t srefs = cell.srefs.size();
    const bool isArray = number >= srefs;
    return {cellNumber, isArray, isArray ? number - srefs : number};
}

ReferencePosition PositionOf(const GdsDatabase& database, std::size_t number) {
    std::size_t cell = 0;
    const auto references = [&] {
        return database.cells[cell].srefs.size() + database.cells[cell].arefs.size();
    };
    for (; number >= references(); ++cell) {
        number -= references();
    }
    return PositionIn(database.cells[cell], cell, number);
}

const GdsCell* ReferencedCell(const GdsCell& cell, std::size_t index) {
    return index < cell.srefs.size() ? cell.srefs[index].cell
                                     : cell.arefs[index - cell.srefs.size()].cell;
}

enum class CellState : std::uint8_t { Unseen, Open, Done };

/// A walk down the references, on a stack of its own: a file can nest cells as deep as it likes.
class CircleSearch {
public:
    explicit CircleSearch(const GdsDatabase& database)
        : cells_(database.cells.Items()), marks_(database.cells.size(), CellState::Unseen) {}

    /// The reference that closes a circle, if one can be reached from the cell.
    std::optional<ReferencePosition> From(const GdsCell& start) {
        if (MarkOf(start) == CellState::Unseen) {
            Open(start);
        }
        while (!path_.empty()) {
            auto& [cell, next] = path_.back();
            if (next == cell->srefs.size() + cell->arefs.size()) {
                MarkOf(*cell) = CellState::Done;
                path_.pop_back();
                continue;
            }
            const GdsCell& child = *ReferencedCell(*cell, next);
            if (MarkOf(child) == CellState::Open) {
                return PositionIn(*cell, NumberOf(*cell), next);
            }
            ++next;
            if (MarkOf(child) == CellState::Unseen) {
                Open(child);
            }
        }
        return std::nullopt;
    }

private:
    struct Visit {
        const GdsCell* cell;
        std::size_t next;  ///< the reference to follow next
    };

    std::size_t NumberOf(const GdsCell& cell) const {
        return static_cast<std::size_t>(&cell - cells_.data());
    }
    CellState& MarkOf(const GdsCell& cell) { return marks_[NumberOf(cell)]; }

    void Open(const GdsCell& cell) {
        MarkOf(cell) = CellState::Open;
        path_.push_back({&cell, 0});
    }

    std::span<const GdsCell> cells_;
    std::vector<CellState> marks_;
    std::vector<Visit> path_;
};

}  // namespace

std::optional<ReferencePosition> BindReferences(GdsDatabase& database) {
    constexpr std::size_t smallestShare = 20000;
    const CellsByName cells(database.cells.Items());
    const std::size_t count = ReferenceCount(database);
    const std::size_t shares = std::clamp<std::size_t>(count / smallestShare, 1, 64);
    std::vector<std::size_t> unbound(shares, count);
    ForRowBands(static_cast<std::int32_t>(shares), 1, [&](std::int32_t first, std::int32_t end) {
        ReferenceBinder binder(cells);
        const auto share = static_cast<std::size_t>(first);
        const ReferenceRange range{count * share / shares,
                                   count * static_cast<std::size_t>(end) / shares};
        const std::size_t reached =
            ForReferences(database, range, [&](auto& reference) { return binder.Bind(reference); });
        unbound[share] = reached == range.end ? count : reached;
    });
    const std::size_t firstUnbound = *std::min_element(unbound.begin(), unbound.end());
    if (firstUnbound == count) {
        return std::nullopt;
    }
    ForReferences(database, {firstUnbound, count}, [](auto& reference) {
        reference.cell = nullptr;
        return true;
    });
    return PositionOf(database, firstUnbound);
}

std::optional<ReferencePosition> FindReferenceCircle(const GdsDatabase& database) {
    CircleSearch search(database);
    for (const GdsCell& cell : database.cells) {
        if (const auto closing = search.From(cell)) {
            return closing;
        }
    }
    return std::nullopt;
}

}  // namespace zelmo
