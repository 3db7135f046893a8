#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace zelmo {

/// The decimal number that `text` begins with: an optional sign, digits with an optional point,
/// an optional exponent; what follows is ignored. Rounded once to single precision, whatever the
/// locale; too large gives infinity, too small a zero. Nothing if `text` begins with no number,
/// which "inf" and "nan" are not.
std::optional<float> ParseDecimal(std::string_view text);

/// The length of that number in `text`; 0 if it begins with none.
std::size_t DecimalLength(std::string_view text);

}  // namespace zelmo
