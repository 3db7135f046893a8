#pragma once

#include <filesystem>

namespace zelmo {

struct BatchOptions;

/// The folder that was asked for, or a new one beside the process file, named after it and the
/// present time.
std::filesystem::path OutputFolder(const BatchOptions& options);

}  // namespace zelmo
