#pragma once

#include <string_view>

namespace zelmo {

/// The word that the first command of every process file has: what a text can be known by.
constexpr std::string_view firstCommandWord = "settings";

}  // namespace zelmo
