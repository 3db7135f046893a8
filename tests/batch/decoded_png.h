#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelmo {

struct Pixels {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> rgb;  ///< top row first
};

/// The picture of a PNG file without transparency. Throws std::runtime_error.
Pixels DecodePng(const std::string& bytes);

}  // namespace zelmo
