#include "command_line/whole_number.h"

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <utility>

#include "command_line/number_argument.h"

namespace zelmo {

WholeNumber ReadWholeNumber(std::string_view option, std::string_view text, std::int32_t least,
                            std::int32_t most, std::string_view unit) {
    const std::optional<std::uint32_t> value = ReadNumber<std::uint32_t>(text);
    if (value && std::in_range<std::int32_t>(*value)) {
        const auto number = static_cast<std::int32_t>(*value);
        if (number >= least && number <= most) {
            return {number, {}};
        }
    }
    return {0, fmt::format("{}: \"{}\" is no whole number{} from {} to {}", option, text, unit,
                           least, most)};
}

}  // namespace zelmo
