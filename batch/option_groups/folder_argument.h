#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace zelmo {

/// A path as it was typed, in UTF-8 (on Linux, the bytes as they are).
std::filesystem::path PathFromArgument(const std::string& argument);

/// Sets the folder that an option names, if it was given; the reason why not, or nothing.
std::string TakeFolder(const CLI::App& app, const std::string& option, const std::string& text,
                       std::optional<std::filesystem::path>& folder);

}  // namespace zelmo
