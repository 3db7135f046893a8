#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zelmo {

struct GdsDatabase;

// What is probably not meant in a layout that was read. Names of cells are the bytes of the file,
// up to their first NUL. Nothing here depends on whether the references are bound.

/// A name that several cells have. References mean the first one.
struct RepeatedCell {
    std::string name;
    std::size_t times = 0;  ///< 2 or more

    bool operator==(const RepeatedCell&) const = default;
};

/// A name that references have and no cell.
struct MissingCell {
    std::string name;
    std::uint64_t references = 0;  ///< single ones and arrays
    std::string firstIn;           ///< the cell with the first of them

    bool operator==(const MissingCell&) const = default;
};

/// Each list is in the order of the file, with every name once.
struct LayoutProblems {
    bool cutOff = false;        ///< the library's end is missing
    std::uint64_t bytes = 0;    ///< that were read then, unpacked
    std::string cutCell;        ///< the cell that was open there; empty outside
    bool noCells = false;       ///< there is no cell
    bool nothingDrawn = false;  ///< there are cells, and none has a polygon or path
    std::vector<RepeatedCell> repeated;
    std::vector<MissingCell> missing;
    std::vector<std::string> inThemselves;  ///< cells that contain themselves, also through others
    std::vector<std::string> empty;         ///< cells without elements of any kind that is kept

    bool operator==(const LayoutProblems&) const = default;
};

/// Finds all of them in a database that was read, to its end or up to a reference that is refused.
LayoutProblems FindLayoutProblems(const GdsDatabase& database);

}  // namespace zelmo
