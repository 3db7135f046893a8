#pragma once

#include <cstdint>
#include <filesystem>

namespace zelmo {

class LogConsole;
struct ProcessModel;

/// Reads a process file into the model's settings and steps. Reports every error to `console` and
/// reads on. Returns 0, or 1 if the file could not be opened or had an error.
std::int32_t ReadProcessFile(ProcessModel& model, const std::filesystem::path& path,
                             LogConsole* console);

}  // namespace zelmo
