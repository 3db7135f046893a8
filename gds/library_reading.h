#pragma once

#include <filesystem>
#include <optional>

#include "gds/layout_error.h"
#include "gds/layout_options.h"
#include "gds/stream_blocks.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;

/// What became of the records of a library.
struct LibraryReading {
    std::optional<LayoutError> error;  ///< the first of the file
    bool flatSeen = false;             ///< some polygon has no points, no width or no height
};

/// Reads the records of a stream file into an empty database; one of more than a block, or a
/// compressed one, on all cores of the machine (base/row_bands.h). Whatever else is wrong with a
/// compressed file, the error is that it cannot be unpacked to its end, if it cannot. The cells are
/// neither sized nor their references bound. Whatever the number of cores and the sizes, the
/// result, the error with its byte and the lines on the console are the same. Throws
/// std::out_of_range("invalid vector subscript") if a path has no points.
LibraryReading ReadLibrary(GdsDatabase& database, const std::filesystem::path& path,
                           LogConsole* console, const PieceSizes& sizes = {},
                           const LayoutOptions& options = {});

}  // namespace zelmo
