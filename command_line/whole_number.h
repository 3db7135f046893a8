#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zelmo {

/// A whole number of a command line, or the line that says why it is none.
struct WholeNumber {
    std::int32_t value = 0;
    std::string failure;  ///< empty with a value
};

/// Reads what was given to an option: a whole number without a sign, from `least` to `most`. `unit`
/// stands in the line behind "whole number", such as " of pixels".
WholeNumber ReadWholeNumber(std::string_view option, std::string_view text, std::int32_t least,
                            std::int32_t most, std::string_view unit = "");

}  // namespace zelmo
