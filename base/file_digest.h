#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace zelmo {

/// The SHA-256 digest of a file's bytes in hexadecimal digits; none if they cannot be read.
std::optional<std::string> FileDigest(const std::filesystem::path& path);

}  // namespace zelmo
