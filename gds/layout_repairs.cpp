#include "gds/layout_repairs.h"

#include <fmt/format.h>

#include <string_view>

#include "gds/path_repair.h"

namespace zelmo {

void CountPath(LayoutRepairs& repairs, const PathFaults& faults) {
    repairs.repeatedPoints += faults.repeatedPoints ? 1 : 0;
    repairs.collinearPoints += faults.collinearPoints ? 1 : 0;
    repairs.refusedEnds += faults.refusedEnds ? 1 : 0;
    repairs.noLength += faults.noLength ? 1 : 0;
}

void AddPaths(LayoutRepairs& repairs, const LayoutRepairs& others) {
    repairs.repeatedPoints += others.repeatedPoints;
    repairs.collinearPoints += others.collinearPoints;
    repairs.refusedEnds += others.refusedEnds;
    repairs.noLength += others.noLength;
}

std::vector<std::string> RepairLines(const LayoutRepairs& repairs) {
    std::vector<std::string> lines;
    const auto add = [&](std::size_t count, std::string_view thing, std::string_view rest) {
        if (count != 0) {
            lines.push_back(fmt::format("{} {}{} {}", count, thing, count == 1 ? "" : "s", rest));
        }
    };
    add(repairs.repeatedPoints, "path", "with repeated points, each of which counts once");
    add(repairs.collinearPoints, "path",
        "with segments in one line, which become one or fold back");
    add(repairs.refusedEnds, "path", "of type 2 with ends that are refused, which are extended");
    add(repairs.noLength, "path", "without length, of which only ends that are not flush remain");
    add(repairs.missingCells, "reference",
        fmt::format("to cells that are not in the file, which are skipped (the first is \"{}\")",
                    repairs.firstMissingCell));
    return lines;
}

}  // namespace zelmo
