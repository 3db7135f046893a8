#include "command_line/path_argument.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "base/text.h"

namespace zelmo {

std::filesystem::path PathFromArgument(const std::string& argument) {
    return PathFromText(WideFromUtf8(argument));
}

std::string TakePath(const CLI::App& app, const std::string& option, const std::string& text,
                     std::string_view what, std::optional<std::filesystem::path>& path) {
    if (app.count(option) == 0) {
        return {};
    }
    if (text.empty()) {
        return fmt::format("{}: the {} has no name", option, what);
    }
    path = PathFromArgument(text);
    return {};
}

std::string TakeFolder(const CLI::App& app, const std::string& option, const std::string& text,
                       std::optional<std::filesystem::path>& folder) {
    return TakePath(app, option, text, "folder", folder);
}

}  // namespace zelmo
