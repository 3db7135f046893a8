#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "report/field_store.h"
#include "report/page_grid.h"

// What a page tells of a run, as plain values. All texts are as they are read by users, in UTF-8;
// what is none of it is replaced when it is written.

namespace zelmo {

/// A picture as the bytes of its file; none where they are empty.
struct PagePicture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint8_t> bytes{};
};

/// An argument as it stands in a step's line.
struct PageArgument {
    std::string name;
    std::string value;
    std::string meaning;  ///< with its unit; empty where the command knows no such argument
};

/// Something suspicious about a run.
struct PageNote {
    std::string kind;
    std::string file;
    std::int32_t line = 0;  ///< 0: the file as a whole
    std::string text;
};

/// A step of a page.
struct PageStep {
    int number = 0;         ///< in the run; the substrate's is 1
    std::string name;       ///< "Oxide deposition"
    std::string kind;       ///< the command's word, or "substrate"
    std::int32_t line = 0;  ///< of the process file; 0: of none
    double seconds = 0.0;
    std::vector<PageArgument> arguments{};
    std::vector<PageNote> notes{};
    std::vector<std::string> console{};  ///< its lines
    PagePicture picture{};
    PagePicture thumbnail{};
    PageStack stack{};
};

/// All of a page.
struct Page {
    std::string program;  ///< with its version
    std::string title;
    std::string layout;
    std::string cell;
    double windowX = 0.0;  ///< micrometres, in coordinates of the layout
    double windowY = 0.0;
    double windowWidth = 0.0;
    double windowHeight = 0.0;
    std::string unit;           ///< "um" or "nm", of the process file's lengths in the layout
    double zero = 0.0;          ///< micrometres: the level from which users count heights
    std::size_t stepCount = 0;  ///< of the run
    PagePositions positions;
    std::vector<std::string> processFile;  ///< its lines
    std::vector<PageNote> notes;           ///< that belong to none of the steps
    std::vector<PageStep> steps;
    std::vector<PageChunk> chunks;
};

}  // namespace zelmo
