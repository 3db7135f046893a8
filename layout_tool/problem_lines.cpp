#include <fmt/format.h>

#include "layout_tool/layout_reading.h"
#include "layout_tool/shown_text.h"
#include "process_file/first_command.h"

namespace zelmo {

namespace {

using Lines = std::vector<ProblemLine>;

std::string Quoted(const std::string& name) {
    return fmt::format("\"{}\"", ShownText(name));
}

/// What a file is that is no layout, or holds none. Any file without a mark of its own can be a
/// layout.
void AddLook(Lines& lines, const LayoutReading& reading) {
    const FileLook& look = reading.look;
    const bool holdsNothing = !reading.hasCells || reading.problems.noCells;
    if (!holdsNothing || look.kind == FileKind::Stream || look.kind == FileKind::Unreadable) {
        return;
    }
    if (look.kind == FileKind::Text && look.firstWord == firstCommandWord) {
        lines.push_back({"look",
                         "the file is a process file: the layout is to stand first, the "
                         "process file behind --process"});
        return;
    }
    lines.push_back({"look", fmt::format("the file is {}, not a GDSII stream file: export the "
                                         "layout as GDSII",
                                         LookText(look))});
}

void AddEnd(Lines& lines, const LayoutReading& reading) {
    const LayoutProblems& problems = reading.problems;
    const bool isLayout = !problems.noCells || reading.look.kind == FileKind::Stream;
    if (problems.cutOff && isLayout) {
        const std::string where = reading.database.end.inCell
                                      ? fmt::format(" in cell {}", Quoted(problems.cutCell))
                                      : std::string();
        lines.push_back(
            {"cut-off", fmt::format("the file ends at byte {}{} without an ENDLIB: it is "
                                    "probably cut off; copy or export it again",
                                    problems.bytes, where)});
    }
    if (problems.noCells) {
        lines.push_back({"no-cells", "there is no cell in the file"});
    }
    if (problems.nothingDrawn) {
        lines.push_back({"nothing-drawn", "no cell has a polygon or a path"});
    }
}

void AddReferences(Lines& lines, const LayoutProblems& problems) {
    for (const MissingCell& missing : problems.missing) {
        lines.push_back(
            {"cell-missing",
             fmt::format("cell {} is not in the file, but {} reference{} to it (the first in cell "
                         "{}): add it, or read the layout with --repair",
                         Quoted(missing.name), missing.references,
                         missing.references == 1 ? " leads" : "s lead", Quoted(missing.firstIn))});
    }
    for (const std::string& name : problems.inThemselves) {
        lines.push_back({"cell-in-itself",
                         fmt::format("cell {} contains itself, directly or through others: take a "
                                     "reference out of that circle",
                                     Quoted(name))});
    }
}

void AddCells(Lines& lines, const LayoutProblems& problems) {
    for (const RepeatedCell& repeated : problems.repeated) {
        lines.push_back({"cell-twice", fmt::format("cell {} is there {} times: the first counts, "
                                                   "rename or remove the others",
                                                   Quoted(repeated.name), repeated.times)});
    }
    for (const std::string& name : problems.empty) {
        lines.push_back({"cell-empty", fmt::format("cell {} is empty", Quoted(name))});
    }
}

void AddSkipped(Lines& lines, const SkippedElements& skipped) {
    if (skipped.boxes != 0) {
        lines.push_back({"boxes-skipped",
                         fmt::format("{} BOX element{} skipped, as no mask has them: draw them as "
                                     "boundaries if they are meant",
                                     skipped.boxes, skipped.boxes == 1 ? " is" : "s are")});
    }
    if (skipped.nodes != 0) {
        lines.push_back(
            {"nodes-skipped", fmt::format("{} NODE element{} skipped, as no mask has them",
                                          skipped.nodes, skipped.nodes == 1 ? " is" : "s are")});
    }
}

}  // namespace

std::vector<ProblemLine> ProblemLines(const LayoutReading& reading) {
    Lines lines;
    AddLook(lines, reading);
    if (reading.hasCells) {
        AddEnd(lines, reading);
        AddReferences(lines, reading.problems);
        AddCells(lines, reading.problems);
        AddSkipped(lines, reading.database.skipped);
    }
    return lines;
}

}  // namespace zelmo
