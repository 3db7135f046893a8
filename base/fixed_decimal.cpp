#include "base/fixed_decimal.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

// A float is a whole number of less than 24 bits times a power of two, and a power of ten is one of
// five times one of two. So a float times 10^12 is a whole number of less than 52 bits, which has
// only to be shifted: to the left without a loss, as far as 64 bits reach, or to the right with one
// rounding. No step of this rounds but that one.

namespace zelmo {

namespace {

constexpr std::uint32_t fractionBits = 23;
constexpr std::uint32_t hiddenBit = 1U << fractionBits;

/// The biased exponent of 2^23. What is as large or larger is a whole number, infinite or none.
constexpr std::uint32_t exponentOfWholeNumbers = 127 + fractionBits;

constexpr std::uint64_t Power(std::uint64_t base, int exponent) {
    return exponent == 0 ? 1 : base * Power(base, exponent - 1);
}

constexpr std::array<char, 200> MakeDigitPairs() {
    std::array<char, 200> pairs{};
    for (std::size_t number = 0; number < 100; ++number) {
        pairs[2 * number] = static_cast<char>('0' + number / 10);
        pairs[2 * number + 1] = static_cast<char>('0' + number % 10);
    }
    return pairs;
}

constexpr std::array<char, 200> digitPairs = MakeDigitPairs();

/// Writes a number below 10^digits with its leading zeros.
template <int digits>
char* WriteDigits(std::uint64_t number, char* out) {
    static_assert(digits % 2 == 0);
    if constexpr (digits > 4) {
        out = WriteDigits<digits - 4>(number / 10000, out);
        return WriteDigits<4>(number % 10000, out);
    } else if constexpr (digits == 4) {
        out = WriteDigits<2>(number / 100, out);
        return WriteDigits<2>(number % 100, out);
    } else {
        std::memcpy(out, &digitPairs[2 * number], 2);
        return out + 2;
    }
}

/// Writes a number below 10^8 without leading zeros.
char* WriteWholeNumber(std::uint64_t number, char* out) {
    if (number < 10) {
        *out = static_cast<char>('0' + number);
        return out + 1;
    }
    std::array<char, 8> digits{};
    WriteDigits<8>(number, digits.data());
    const auto first =
        std::find_if(digits.begin(), digits.end(), [](char digit) { return digit != '0'; });
    return std::copy(first, digits.end(), out);
}

/// The magnitude of a float below 2^23 times 10^decimals, rounded to a whole number.
template <int decimals>
std::uint64_t Scaled(std::uint32_t bits) {
    const std::uint32_t exponent = (bits >> fractionBits) & 0xFFU;
    const std::uint64_t fraction = bits & (hiddenBit - 1);
    const std::uint64_t significand = exponent == 0 ? fraction : fraction | hiddenBit;
    const std::uint64_t product = significand * Power(5, decimals);
    const int shift = static_cast<int>(std::max(exponent, 1U)) -
                      static_cast<int>(exponentOfWholeNumbers) + decimals;
    if (shift >= 0) {
        return product << shift;
    }
    // The product is below 2^52: what a shift by 63 leaves nothing of, no wider one does either.
    const int right = std::min(-shift, 63);
    const std::uint64_t toEven = (product >> right) & 1U;
    return (product + (std::uint64_t{1} << (right - 1)) - 1 + toEven) >> right;
}

}  // namespace

template <int decimals>
char* WriteFixedDecimal(float value, char* out) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    if (((bits >> fractionBits) & 0xFFU) >= exponentOfWholeNumbers) {
        return fmt::format_to(out, "{:.{}f}", static_cast<double>(value), decimals);
    }
    constexpr std::uint64_t one = Power(10, decimals);
    const std::uint64_t scaled = Scaled<decimals>(bits);
    *out = '-';
    out = WriteWholeNumber(scaled / one, out + (bits >> 31U));
    *out = '.';
    return WriteDigits<decimals>(scaled % one, out + 1);
}

template char* WriteFixedDecimal<10>(float value, char* out);
template char* WriteFixedDecimal<12>(float value, char* out);

}  // namespace zelmo
