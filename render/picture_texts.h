#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The texts in pictures.

namespace zelmo {

/// A height above the substrate's top, in micrometres, in units of 0.1 nm, truncated.
std::string HeightText(float height);

/// The width of the window, in micrometres, as "W = 12.50 um", or in nm where it is small.
std::string WidthText(float windowWidth);

/// The label's text where it is shorter than `maxChars` less the room for three dots, else as much
/// of it and the dots.
std::string LegendText(const std::string& label, std::int32_t maxChars);

/// The text, or where it has more characters, as much of it as leaves room for three dots.
std::string ShortenedText(const std::string& text, std::int32_t maxChars);

/// "3 of 66: Oxide deposition", for the step with this number, counted from 1.
std::string TitleText(std::int32_t number, std::size_t stepCount, std::string_view description);

/// A round length in micrometres: "2 um", "500 nm".
std::string LengthText(double length);

/// What is said where thin films are drawn thicker, in micrometres: "Films thinner than 20 nm are
/// drawn 20 nm thick".
std::string ThickenedText(float thickness);

}  // namespace zelmo
