#pragma once

#include <filesystem>
#include <optional>

#include "gds/layout_error.h"
#include "gds/layout_options.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;

/// Reads a GDSII stream file, plain or gzip-compressed, into an empty database, sizes all cells and
/// lists them on the console. Returns what is wrong with the layout, if something is; what was read
/// by then stays for the caller to drop. Throws std::out_of_range("invalid vector subscript") if a
/// boundary, a path or an array has no points.
std::optional<LayoutError> ReadGdsFile(GdsDatabase& database, const std::filesystem::path& path,
                                       LogConsole* console, const LayoutOptions& options = {});

}  // namespace zelmo
