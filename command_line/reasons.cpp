#include "command_line/reasons.h"

#include <fmt/format.h>

#include <cerrno>
#include <system_error>

#include "base/text.h"

namespace zelmo {

std::string TextOf(const std::filesystem::path& path) {
    return Utf8FromWide(PathText(path));
}

std::string SystemReason() {
    return std::generic_category().message(errno);
}

std::string FirstOf(const std::vector<std::string>& errors) {
    return errors.size() < 2 ? errors.at(0)
                             : fmt::format("{} (and {} more)", errors[0], errors.size() - 1);
}

}  // namespace zelmo
