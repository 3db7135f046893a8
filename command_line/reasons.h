#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zelmo {

/// A path as users read it, in UTF-8.
std::string TextOf(const std::filesystem::path& path);

/// Why the last call of the system failed (errno).
std::string SystemReason();

/// Of some errors the first, and how many more there are: a reason for standard error.
std::string FirstOf(const std::vector<std::string>& errors);

}  // namespace zelmo
