#include "render/number_format.h"

#include <fmt/format.h>

namespace zelmo {

std::string FormatThousands(std::int64_t value) {
    // Unsigned, since the most negative number has no absolute value among the signed ones.
    auto rest = static_cast<std::uint64_t>(value);
    if (value < 0) {
        rest = 0 - rest;
    }
    std::string text;
    while (rest >= 1000) {
        text.insert(0, fmt::format(",{:03d}", rest % 1000));
        rest /= 1000;
    }
    text.insert(0, fmt::format("{}{}", value < 0 ? "-" : "", rest));
    return text;
}

}  // namespace zelmo
