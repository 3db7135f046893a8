#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zelmo {

/// Of every picture as a value.
inline constexpr std::size_t bytesPerPixel = 4;

/// The captured picture of a step: 4 bytes a pixel in the order blue, green, red, alpha, row 0 at
/// the bottom of the picture.
struct StepImage {
    std::vector<std::uint8_t> pixels;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::wstring name;           ///< "001 oxide deposition"
    bool isTransparent = false;  ///< alpha tells how much of a background shows through
};

/// The name of the picture with this number, of a step with this description: "008 oxide
/// deposition".
std::wstring StepImageName(std::int32_t imageNumber, std::string_view description);

}  // namespace zelmo
