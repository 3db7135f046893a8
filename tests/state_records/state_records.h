#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "process_file/color_table.h"

namespace zelmo {

class LogConsole;

/// Takes one line of the records, without its line end.
using RecordSink = std::function<void(std::string_view)>;

/// Runs a process on a layout without a GL context and tells the state after every step: hashes of
/// the grid's tables, the polygons, every surface, mesh, camera and marker, and some heights as
/// they stand. Two builds that give the same lines give the same pictures. Throws
/// std::runtime_error if the layout does not load or the run cannot be prepared; the reasons stand
/// on `console`.
void TellStateRecords(const std::filesystem::path& layout, const std::filesystem::path& process,
                      const ColorTable& colors, LogConsole* console, const RecordSink& sink);

}  // namespace zelmo
