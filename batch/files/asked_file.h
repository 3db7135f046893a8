#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zelmo {

/// Why a file that was asked for could not be written, or is there and is not to be replaced: a
/// line for the user, before anything is run; empty if all is well. `what` is what it holds:
/// "page".
std::string WhyNotToWrite(const std::filesystem::path& file, std::string_view what,
                          bool mayReplace);

}  // namespace zelmo
