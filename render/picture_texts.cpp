#include "render/picture_texts.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "render/number_format.h"

namespace zelmo {

namespace {

constexpr float unitsPerMicrometre = 10000.0f;
constexpr std::int32_t dotsLength = 3;

/// Without the digits that single precision does not hold.
std::string Nanometres(float micrometres) {
    return fmt::format("{:.6g} nm", static_cast<double>(micrometres) * 1000.0);
}

}  // namespace

std::string HeightText(float height) {
    const float units = height * unitsPerMicrometre;
    if (units >= -9223372036854775808.0f && units < 9223372036854775808.0f) {
        return FormatThousands(static_cast<std::int64_t>(units));
    }
    return FormatThousands(std::numeric_limits<std::int64_t>::min());
}

std::string WidthText(float windowWidth) {
    return static_cast<double>(windowWidth) > 0.2
               ? fmt::format("W = {:.2f} um", windowWidth)
               : fmt::format("W = {:.2f} nm", windowWidth * 1000.0f);
}

std::string LegendText(const std::string& label, std::int32_t maxChars) {
    const auto cut = static_cast<std::size_t>(std::max(maxChars - dotsLength, 0));
    return label.size() < cut ? label : label.substr(0, cut) + "...";
}

std::string ShortenedText(const std::string& text, std::int32_t maxChars) {
    if (text.size() <= static_cast<std::size_t>(std::max(maxChars, 0))) {
        return text;
    }
    return text.substr(0, static_cast<std::size_t>(std::max(maxChars - dotsLength, 0))) + "...";
}

std::string TitleText(std::int32_t number, std::size_t stepCount, std::string_view description) {
    return fmt::format("{} of {}: {}", number, stepCount, description);
}

std::string LengthText(double length) {
    return length >= 1.0 ? fmt::format("{:.6g} um", length)
                         : fmt::format("{:.6g} nm", length * 1000.0);
}

std::string ThickenedText(float thickness) {
    const std::string text = Nanometres(thickness);
    return fmt::format("Films thinner than {} are drawn {} thick", text, text);
}

}  // namespace zelmo
