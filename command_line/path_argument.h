#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace zelmo {

class Arguments;

/// A path as it was typed, in UTF-8 (on Linux, the bytes as they are).
std::filesystem::path PathFromArgument(const std::string& argument);

/// Sets the path that an option names, if it was given; the reason why not, or nothing. `what` is
/// "folder" or "file".
std::string TakePath(const Arguments& arguments, const std::string& option, const std::string& text,
                     std::string_view what, std::optional<std::filesystem::path>& path);

/// The same for a folder.
std::string TakeFolder(const Arguments& arguments, const std::string& option,
                       const std::string& text, std::optional<std::filesystem::path>& folder);

}  // namespace zelmo
