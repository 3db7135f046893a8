#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "command_line/exit_status.h"

namespace zelmo {

class NoteTeller;
struct BatchOptions;
struct GdsDatabase;
struct ProcessModel;
struct Reporting;

/// Where colours and shaders are looked for: in the folder that was given, or in the program's own
/// ones and the current directory.
std::vector<std::filesystem::path> AssetFolders(const std::optional<std::filesystem::path>& given);

/// Reads both files, the layout only if `database` is null, into a model that is ready to run.
/// Tells the notes about them, which may be what it fails for.
Outcome Prepare(const BatchOptions& options, const std::vector<std::filesystem::path>& assetFolders,
                Reporting& reporting, NoteTeller& notes, std::unique_ptr<GdsDatabase>& database,
                std::unique_ptr<ProcessModel>& model);

}  // namespace zelmo
