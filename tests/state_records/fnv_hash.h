#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace zelmo {

/// 64-bit FNV-1a over little-endian bytes. A negative zero counts as zero, and a NaN is like any
/// other.
class FnvHash {
public:
    void Add(std::string_view text) {
        for (const char c : text) {
            AddByte(static_cast<std::uint8_t>(c));
        }
    }

    void Add(std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8) {
            AddByte(static_cast<std::uint8_t>(value >> shift));
        }
    }

    void Add(std::int32_t value) { Add(static_cast<std::uint32_t>(value)); }

    void Add(float value) {
        constexpr std::uint32_t notANumber = 0x7FC00000;
        const auto bits = std::bit_cast<std::uint32_t>(value == 0.0f ? 0.0f : value);
        Add(value == value ? bits : notANumber);
    }

    template <typename Range>
    void AddAll(const Range& values) {
        for (const auto& value : values) {
            Add(value);
        }
    }

    std::string Text() const { return fmt::format("{:016x}", hash_); }

private:
    void AddByte(std::uint8_t byte) { hash_ = (hash_ ^ byte) * 1099511628211u; }

    std::uint64_t hash_ = 1469598103934665603u;
};

}  // namespace zelmo
