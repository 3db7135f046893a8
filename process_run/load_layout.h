#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "gds/layout_error.h"
#include "gds/layout_options.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;

/// A loaded layout, or what is wrong with it and no database.
struct LayoutLoad {
    std::optional<LayoutError> error;
    std::unique_ptr<GdsDatabase> database;
};

/// Reads a layout and reports the load, with its time, on the console. Repairs are told by the
/// database alone (RepairLines in gds/layout_repairs.h has the words).
LayoutLoad LoadLayout(const std::filesystem::path& path, LogConsole* console,
                      const LayoutOptions& options = {});

}  // namespace zelmo
