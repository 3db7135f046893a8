#include "gds/layout_problems.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "gds/gds_database.h"

namespace zelmo {

namespace {

constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();

/// The number of the first cell of every name.
using CellNumbers = std::unordered_map<std::string_view, std::size_t>;

CellNumbers NumberCells(const GdsDatabase& database) {
    CellNumbers numbers;
    numbers.reserve(database.cells.size());
    for (std::size_t i = 0; i < database.cells.size(); ++i) {
        numbers.emplace(NameText(database.cells[i].name), i);
    }
    return numbers;
}

/// Which cells each cell refers to, every one once; and those that are missing.
class ReferenceMap {
public:
    ReferenceMap(const GdsDatabase& database, const CellNumbers& numbers)
        : database_(database),
          numbers_(numbers),
          children_(database.cells.size()),
          lastParents_(database.cells.size(), nowhere) {
        for (std::size_t i = 0; i < database.cells.size(); ++i) {
            TakeAll(database.cells[i].srefs, i);
            TakeAll(database.cells[i].arefs, i);
        }
    }

    const std::vector<std::vector<std::size_t>>& Children() const { return children_; }
    std::vector<MissingCell>& Missing() { return missing_; }

private:
    template <typename Elements>
    void TakeAll(const Elements& references, std::size_t cell) {
        for (const auto& reference : references) {
            const std::size_t child = NumberOf(reference);
            if (child == nowhere) {
                TakeMissing(NameText(reference.name), cell);
            } else if (lastParents_[child] != cell) {
                lastParents_[child] = cell;
                children_[cell].push_back(child);
            }
        }
    }

    template <typename Reference>
    std::size_t NumberOf(const Reference& reference) const {
        if (reference.cell != nullptr) {
            return static_cast<std::size_t>(reference.cell - database_.cells.begin());
        }
        const auto found = numbers_.find(NameText(reference.name));
        return found == numbers_.end() ? nowhere : found->second;
    }

    void TakeMissing(std::string_view name, std::size_t cell) {
        const auto [known, isNew] = missingNumbers_.try_emplace(name, missing_.size());
        if (isNew) {
            missing_.push_back(
                {std::string(name), 0, std::string(NameText(database_.cells[cell].name))});
        }
        ++missing_[known->second].references;
    }

    const GdsDatabase& database_;
    const CellNumbers& numbers_;
    std::vector<std::vector<std::size_t>> children_;
    std::vector<std::size_t> lastParents_;  ///< of each cell, the last that was seen to have it
    CellNumbers missingNumbers_;
    std::vector<MissingCell> missing_;
};

/// Finds the circles of references, on a stack of its own: a file can nest cells as deep as it
/// likes. What is reached from a cell and leads back to it forms a group with it.
class CircleFinder {
public:
    explicit CircleFinder(const std::vector<std::vector<std::size_t>>& children)
        : children_(children),
          order_(children.size(), 0),
          lowest_(children.size(), 0),
          isOpen_(children.size(), false),
          inCircle_(children.size(), false) {
        for (std::size_t cell = 0; cell < children.size(); ++cell) {
            if (order_[cell] == 0) {
                Walk(cell);
            }
        }
    }

    bool IsInCircle(std::size_t cell) const { return inCircle_[cell]; }

private:
    struct Visit {
        std::size_t cell;
        std::size_t next;  ///< the child to follow next
    };

    void Open(std::size_t cell) {
        order_[cell] = lowest_[cell] = ++count_;
        isOpen_[cell] = true;
        group_.push_back(cell);
        path_.push_back({cell, 0});
    }

    void Walk(std::size_t start) {
        Open(start);
        while (!path_.empty()) {
            auto& [cell, next] = path_.back();
            if (next == children_[cell].size()) {
                Leave();
                continue;
            }
            const std::size_t child = children_[cell][next++];
            inCircle_[cell] = inCircle_[cell] || child == cell;
            if (order_[child] == 0) {
                Open(child);
            } else if (isOpen_[child]) {
                lowest_[cell] = std::min(lowest_[cell], order_[child]);
            }
        }
    }

    /// Closes the last cell of the path, and its group if it is where that was entered.
    void Leave() {
        const std::size_t cell = path_.back().cell;
        path_.pop_back();
        if (!path_.empty()) {
            const std::size_t parent = path_.back().cell;
            lowest_[parent] = std::min(lowest_[parent], lowest_[cell]);
        }
        if (lowest_[cell] != order_[cell]) {
            return;
        }
        const bool isAlone = group_.back() == cell;
        for (std::size_t member = nowhere; member != cell;) {
            member = group_.back();
            group_.pop_back();
            isOpen_[member] = false;
            inCircle_[member] = inCircle_[member] || !isAlone;
        }
    }

    const std::vector<std::vector<std::size_t>>& children_;
    std::size_t count_ = 0;
    std::vector<std::size_t> order_;   ///< of the visits, from 1; 0: not visited
    std::vector<std::size_t> lowest_;  ///< that is known to be reached
    std::vector<bool> isOpen_;
    std::vector<bool> inCircle_;
    std::vector<std::size_t> group_;
    std::vector<Visit> path_;
};

std::vector<RepeatedCell> FindRepeated(const GdsDatabase& database, const CellNumbers& numbers) {
    std::vector<std::size_t> times(database.cells.size(), 0);
    if (numbers.size() == database.cells.size()) {
        return {};
    }
    for (const GdsCell& cell : database.cells) {
        ++times[numbers.at(NameText(cell.name))];
    }
    std::vector<RepeatedCell> repeated;
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (times[i] > 1) {
            repeated.push_back({std::string(NameText(database.cells[i].name)), times[i]});
        }
    }
    return repeated;
}

/// The names of the cells with these numbers, each once.
template <typename IsChosen>
std::vector<std::string> NamesWhere(const GdsDatabase& database, IsChosen isChosen) {
    std::vector<std::string> names;
    std::unordered_set<std::string_view> seen;
    for (std::size_t i = 0; i < database.cells.size(); ++i) {
        const std::string_view name = NameText(database.cells[i].name);
        if (isChosen(i) && seen.insert(name).second) {
            names.emplace_back(name);
        }
    }
    return names;
}

/// Cells that hold nothing. Elements that the reader passes do not count, as no mask has them;
/// texts count where they were kept.
std::vector<std::string> FindEmpty(const GdsDatabase& database) {
    std::vector<bool> hasTexts(database.cells.size(), false);
    for (const CellTexts& texts : database.texts) {
        hasTexts[texts.cell] = true;
    }
    return NamesWhere(database, [&](std::size_t i) {
        const GdsCell& cell = database.cells[i];
        return cell.boundaries.empty() && cell.srefs.empty() && cell.arefs.empty() && !hasTexts[i];
    });
}

}  // namespace

LayoutProblems FindLayoutProblems(const GdsDatabase& database) {
    LayoutProblems problems;
    problems.cutOff = !database.end.seen;
    problems.bytes = database.end.bytes;
    problems.cutCell = database.end.cell;
    problems.noCells = database.cells.empty();
    problems.nothingDrawn =
        !problems.noCells &&
        std::all_of(database.cells.begin(), database.cells.end(),
                    [](const GdsCell& cell) { return cell.boundaries.empty(); });
    const CellNumbers numbers = NumberCells(database);
    ReferenceMap references(database, numbers);
    const CircleFinder circles(references.Children());
    problems.repeated = FindRepeated(database, numbers);
    problems.missing = std::move(references.Missing());
    problems.inThemselves =
        NamesWhere(database, [&](std::size_t i) { return circles.IsInCircle(i); });
    problems.empty = FindEmpty(database);
    return problems;
}

}  // namespace zelmo
