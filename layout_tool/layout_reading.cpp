#include "layout_tool/layout_reading.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "base/log_console.h"
#include "command_line/inputs.h"
#include "gds/cell_references.h"
#include "gds/gds_reader.h"
#include "gds/layout_options.h"
#include "gds/layout_repairs.h"
#include "gds/missing_cells.h"
#include "gds/placed_boxes.h"

namespace zelmo {

namespace {

/// Nobody needs the reader's lines here.
class SilentConsole : public LogConsole {
protected:
    void AppendLine(std::wstring) override {}
};

/// Reads a file; what is wrong with it, if something is. Refuses as the other programs do.
std::optional<LayoutError> ReadDatabase(const std::filesystem::path& path, bool repair,
                                        LayoutReading& reading) {
    SilentConsole console;
    LayoutOptions options;
    options.repair = repair;
    options.texts = true;
    try {
        auto error = ReadGdsFile(reading.database, path, &console, options);
        if (error) {
            reading.outcome = LayoutRefusal(path, *error);
        }
        return error;
    } catch (const std::bad_alloc&) {
        reading.outcome = LayoutFailure(path, "there is not enough memory");
    } catch (const std::exception& error) {
        reading.outcome = LayoutFailure(path, error.what());
    }
    return std::nullopt;
}

/// Whether all cells were read, and only their references are refused.
bool IsOfReferences(const LayoutError& error) {
    return error.kind == LayoutErrorKind::CellMissing ||
           error.kind == LayoutErrorKind::CellInItself;
}

/// Binds what can be bound.
void BindTheRest(GdsDatabase& database) {
    LayoutRepairs uncounted;
    SkipMissingCells(database, uncounted);
    BindReferences(database);
}

std::vector<std::vector<ContainedCell>> FindContained(const GdsDatabase& database) {
    std::vector<std::vector<ContainedCell>> contained(database.cells.size());
    std::vector<std::size_t> places(database.cells.size(), 0);  // in the parent's list, from 1
    for (std::size_t i = 0; i < contained.size(); ++i) {
        std::vector<ContainedCell>& list = contained[i];
        const auto add = [&](const GdsCell* cell, std::uint64_t times) {
            const auto number = static_cast<std::size_t>(cell - database.cells.begin());
            std::size_t& place = places[number];
            if (place == 0) {
                list.push_back({number, 0});
                place = list.size();
            }
            list[place - 1].times += times;
        };
        for (const GdsSref& sref : database.cells[i].srefs) {
            add(sref.cell, 1);
        }
        for (const GdsAref& aref : database.cells[i].arefs) {
            add(aref.cell, InstancesOf(aref));
        }
        for (const ContainedCell& child : list) {
            places[child.cell] = 0;
        }
    }
    return contained;
}

std::vector<bool> FindAgain(const GdsDatabase& database, const LayoutProblems& problems) {
    std::vector<bool> isAgain(database.cells.size(), false);
    std::unordered_set<std::string_view> repeated;
    for (const RepeatedCell& cell : problems.repeated) {
        repeated.insert(cell.name);
    }
    std::unordered_set<std::string_view> seen;
    for (std::size_t i = 0; i < isAgain.size() && !repeated.empty(); ++i) {
        const std::string_view name = NameText(database.cells[i].name);
        isAgain[i] = repeated.contains(name) && !seen.insert(name).second;
    }
    return isAgain;
}

}  // namespace

LayoutReading ReadLayout(const std::filesystem::path& path, bool repair) {
    LayoutReading reading;
    reading.look = LookAtFile(path);
    const std::optional<LayoutError> error = ReadDatabase(path, repair, reading);
    if (reading.outcome.Failed() && !(error && IsOfReferences(*error))) {
        return reading;
    }
    reading.repairs = RepairLines(reading.database.repairs);
    reading.problems = FindLayoutProblems(reading.database);
    if (error && error->kind == LayoutErrorKind::CellMissing) {
        BindTheRest(reading.database);
    }
    try {
        reading.cells = CountCells(reading.database);
    } catch (const std::exception& fault) {  // an array without points in a refused layout
        reading.outcome = LayoutFailure(path, fault.what());
        return reading;
    }
    reading.isAgain = FindAgain(reading.database, reading.problems);
    reading.contained = FindContained(reading.database);
    reading.hasCells = true;
    return reading;
}

std::vector<std::size_t> ListedCells(const LayoutReading& reading) {
    using Key = std::tuple<bool, std::string_view, std::size_t>;
    std::vector<Key> keys;
    for (std::size_t i = 0; i < reading.cells.size(); ++i) {
        keys.emplace_back(!reading.cells[i].isTop || reading.isAgain[i],
                          NameText(reading.database.cells[i].name), i);
    }
    std::sort(keys.begin(), keys.end());
    std::vector<std::size_t> numbers;
    numbers.reserve(keys.size());
    for (const Key& key : keys) {
        numbers.push_back(std::get<std::size_t>(key));
    }
    return numbers;
}

}  // namespace zelmo
