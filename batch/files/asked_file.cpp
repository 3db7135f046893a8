#include "batch/files/asked_file.h"

#include <fmt/format.h>

#include <system_error>

#include "command_line/reasons.h"
#include "command_line/whole_file.h"

namespace zelmo {

std::string WhyNotToWrite(const std::filesystem::path& file, std::string_view what,
                          bool mayReplace) {
    std::error_code ignored;
    if (!mayReplace && std::filesystem::exists(file, ignored)) {
        return fmt::format(
            "the {} {} exists already and is kept; nothing was run (--overwrite replaces it)", what,
            TextOf(file));
    }
    return WhyNotWritable(file);
}

}  // namespace zelmo
