#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "command_line/command_end.h"
#include "command_line/diagnostics.h"
#include "model/mask/mask_layer.h"
#include "process_run/view_choice.h"

namespace zelmo {

/// What the command line asks for.
struct LayoutToolOptions {
    std::filesystem::path layout;
    std::optional<std::string> cell;  ///< none: all cells, or the process file's
    std::optional<std::filesystem::path> process;
    WindowChoice window;  ///< in place of what the process file says
    std::optional<std::filesystem::path> picture;
    std::optional<std::filesystem::path> assets;  ///< none: where the program's own are
    std::vector<MaskLayer> layers;                ///< that alone are told of; none: all
    std::optional<std::string> places;            ///< the cell whose places are told
    std::size_t texts = 0;                        ///< most that are listed
    bool json = false;
    bool repair = false;
    DiagnosticStyle diagnostics = DiagnosticStyle::Plain;
};

using LayoutCommandLine = CommandLineOf<LayoutToolOptions>;

/// Reads the arguments behind the program's name, all in UTF-8 (on Linux, the bytes as they are).
LayoutCommandLine ParseLayoutCommandLine(const std::vector<std::string>& arguments);

}  // namespace zelmo
