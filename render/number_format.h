#pragma once

#include <cstdint>
#include <string>

namespace zelmo {

/// The decimal digits of a number in groups of three with "," between them: -1,002,003.
std::string FormatThousands(std::int64_t value);

}  // namespace zelmo
