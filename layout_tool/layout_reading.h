#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "command_line/exit_status.h"
#include "gds/file_look.h"
#include "gds/gds_database.h"
#include "gds/layout_contents.h"
#include "gds/layout_problems.h"

namespace zelmo {

/// Cells that a cell refers to by one name.
struct ContainedCell {
    std::size_t cell = 0;     ///< its number
    std::uint64_t times = 0;  ///< every instance of an array counted
};

/// A layout and what is known of it.
struct LayoutReading {
    /// How it came out: also where the layout is refused for its references alone, it can be told
    /// of.
    Outcome outcome;
    bool hasCells = false;  ///< whether it was read so far that it can be told of
    FileLook look;
    GdsDatabase database;
    std::vector<std::string> repairs;  ///< what was read otherwise than it stands in the file
    LayoutProblems problems;
    std::vector<CellContents> cells;  ///< of all cells, by their numbers
    /// Of all cells: another one of the same name stands before, and nothing can refer to it
    std::vector<bool> isAgain;
    std::vector<std::vector<ContainedCell>> contained;  ///< of all cells, in the order of the file
};

/// Reads a layout with its texts.
LayoutReading ReadLayout(const std::filesystem::path& path, bool repair);

/// The numbers of all cells: those on top first, then all others, by name and then as in the file.
/// A name's later cells, which nothing can refer to, are not on top.
std::vector<std::size_t> ListedCells(const LayoutReading& reading);

/// One thing that is wrong with a layout.
struct ProblemLine {
    const char* kind;  ///< a short name that stays
    std::string text;  ///< one line of UTF-8
};

/// All that is wrong with a layout, the gravest first.
std::vector<ProblemLine> ProblemLines(const LayoutReading& reading);

}  // namespace zelmo
