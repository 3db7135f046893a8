#include "batch/option_groups/folder_argument.h"

#include <CLI/CLI.hpp>

#include "base/text.h"

namespace zelmo {

std::filesystem::path PathFromArgument(const std::string& argument) {
    return PathFromText(WideFromUtf8(argument));
}

std::string TakeFolder(const CLI::App& app, const std::string& option, const std::string& text,
                       std::optional<std::filesystem::path>& folder) {
    if (app.count(option) == 0) {
        return {};
    }
    if (text.empty()) {
        return option + ": the folder has no name";
    }
    folder = PathFromArgument(text);
    return {};
}

}  // namespace zelmo
