#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zelmo {

/// Base64 (RFC 4648, with padding) of bytes that come piece by piece.
class Base64Encoder {
public:
    /// Appends to `text` what these bytes complete.
    void Add(std::span<const std::uint8_t> bytes, std::string& text);

    /// Appends the rest, and is as in the beginning again.
    void End(std::string& text);

private:
    std::array<std::uint8_t, 3> rest_{};  ///< bytes that are no whole group yet
    std::size_t restSize_ = 0;
};

/// The same of all bytes at once.
std::string Base64(std::span<const std::uint8_t> bytes);

}  // namespace zelmo
