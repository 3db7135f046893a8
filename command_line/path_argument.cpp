#include "command_line/path_argument.h"

#include <fmt/format.h>

#include "base/text.h"
#include "command_line/arguments.h"

namespace zelmo {

std::filesystem::path PathFromArgument(const std::string& argument) {
    return PathFromText(WideFromUtf8(argument));
}

std::string TakePath(const Arguments& arguments, const std::string& option, const std::string& text,
                     std::string_view what, std::optional<std::filesystem::path>& path) {
    if (arguments.Count(option) == 0) {
        return {};
    }
    if (text.empty()) {
        return fmt::format("{}: the {} has no name", option, what);
    }
    path = PathFromArgument(text);
    return {};
}

std::string TakeFolder(const Arguments& arguments, const std::string& option,
                       const std::string& text, std::optional<std::filesystem::path>& folder) {
    return TakePath(arguments, option, text, "folder", folder);
}

}  // namespace zelmo
