#include "command_line/window_argument.h"

#include <fmt/format.h>

#include <array>
#include <optional>
#include <span>

#include "command_line/number_argument.h"

namespace zelmo {

namespace {

constexpr std::string_view fitWord = "fit";

WindowArgument Refuse(std::string_view text, std::string_view reason) {
    return {{}, fmt::format("--window: \"{}\" {}", text, reason)};
}

WindowArgument ReadFit(std::string_view text) {
    const std::string_view rest = text.substr(fitWord.size());
    if (rest.empty()) {
        return {FittedWindow{}, {}};
    }
    const std::optional<float> margin = ReadNumber<float>(rest.substr(1));
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
    if (!ReadNumbers(text, std::span(values))) {
        return Refuse(text, "is neither X,Y,DX,DY, four numbers in um, nor fit or fit:MARGIN");
    }
    const auto [x, y, width, height] = values;
    if (width <= 0.0f || height <= 0.0f) {
        return Refuse(text, "has a DX or DY that is not above 0");
    }
    return {GivenWindow{x, y, width, height}, {}};
}

}  // namespace zelmo
