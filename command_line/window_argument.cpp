#include "command_line/window_argument.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <system_error>

namespace zelmo {

namespace {

constexpr std::string_view fitWord = "fit";

/// The whole text as a finite number.
std::optional<float> ReadNumber(std::string_view text) {
    float value = 0.0f;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    const bool isNumber = error == std::errc() && stop == end && std::isfinite(value);
    return isNumber ? std::optional(value) : std::nullopt;
}

/// Exactly as many numbers as `values` has places, with commas between them.
bool ReadNumbers(std::string_view text, std::span<float> values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t end = i + 1 == values.size() ? text.size() : text.find(',');
        const std::optional<float> value =
            end == std::string_view::npos ? std::nullopt : ReadNumber(text.substr(0, end));
        if (!value) {
            return false;
        }
        values[i] = *value;
        text.remove_prefix(i + 1 == values.size() ? end : end + 1);
    }
    return true;
}

WindowArgument Refuse(std::string_view text, std::string_view reason) {
    return {{}, fmt::format("--window: \"{}\" {}", text, reason)};
}

WindowArgument ReadFit(std::string_view text) {
    const std::string_view rest = text.substr(fitWord.size());
    if (rest.empty()) {
        return {FittedWindow{}, {}};
    }
    const std::optional<float> margin = ReadNumber(rest.substr(1));
    if (!margin || *margin < 0.0f) {
        return Refuse(text, "has no margin in um, 0 or more, behind its colon");
    }
    return {FittedWindow{*margin}, {}};
}

}  // namespace

WindowArgument ParseWindowArgument(std::string_view text) {
    if (text == fitWord || (text.starts_with(fitWord) && text[fitWord.size()] == ':')) {
        return ReadFit(text);
    }
    std::array<float, 4> values{};
    if (!ReadNumbers(text, values)) {
        return Refuse(text, "is neither X,Y,DX,DY, four numbers in um, nor fit or fit:MARGIN");
    }
    const auto [x, y, width, height] = values;
    if (width <= 0.0f || height <= 0.0f) {
        return Refuse(text, "has a DX or DY that is not above 0");
    }
    return {GivenWindow{x, y, width, height}, {}};
}

}  // namespace zelmo
