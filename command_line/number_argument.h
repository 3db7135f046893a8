#pragma once

#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

namespace zelmo {

/// The whole text as a finite number, in decimal digits; none where it is not one, or beyond the
/// range of the type.
template <typename Number>
std::optional<Number> ReadNumber(std::string_view text) {
    Number value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    bool isNumber = error == std::errc() && stop == end;
    if constexpr (std::floating_point<Number>) {
        isNumber = isNumber && std::isfinite(value);
    }
    return isNumber ? std::optional(value) : std::nullopt;
}

/// Reads exactly as many numbers as `values` has places, with commas between them; false where
/// the text is something else.
template <typename Number, std::size_t extent>
bool ReadNumbers(std::string_view text, std::span<Number, extent> values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t end = i + 1 == values.size() ? text.size() : text.find(',');
        const std::optional<Number> value =
            end == std::string_view::npos ? std::nullopt : ReadNumber<Number>(text.substr(0, end));
        if (!value) {
            return false;
        }
        values[i] = *value;
        text.remove_prefix(i + 1 == values.size() ? end : end + 1);
    }
    return true;
}

}  // namespace zelmo
