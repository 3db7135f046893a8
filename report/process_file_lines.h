#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zelmo {

/// The lines of a process file as its errors count them, as users read them and without their
/// ends; those behind its `stop` as well. None where it cannot be read.
std::vector<std::string> ProcessFileLines(const std::filesystem::path& path);

/// The same of its text.
std::vector<std::string> LinesOfProcessText(std::string_view text);

}  // namespace zelmo
