#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "gds/layout_error.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;

/// A loaded layout, or what is wrong with it and no database.
struct LayoutLoad {
    std::optional<LayoutError> error;
    std::unique_ptr<GdsDatabase> database;
};

/// Reads a layout and reports the load, with its time, on the console.
LayoutLoad LoadLayout(const std::filesystem::path& path, LogConsole* console);

}  // namespace zelmo
