#include "plain_decimal.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace zelmo {

namespace {

/// A whole number, least significant part first, without leading zeros.
using BigNumber = std::vector<std::uint32_t>;

void MultiplyAdd(BigNumber& number, std::uint32_t factor, std::uint32_t summand) {
    std::uint64_t carry = summand;
    for (std::uint32_t& part : number) {
        carry += static_cast<std::uint64_t>(part) * factor;
        part = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    if (carry != 0) {
        number.push_back(static_cast<std::uint32_t>(carry));
    }
}

void MultiplyPower(BigNumber& number, std::uint32_t base, std::int32_t exponent) {
    for (std::int32_t i = 0; i < exponent; ++i) {
        MultiplyAdd(number, base, 0);
    }
}

int Compare(const BigNumber& a, const BigNumber& b) {
    if (a.size() != b.size()) {
        return a.size() < b.size() ? -1 : 1;
    }
    for (std::size_t i = a.size(); i-- > 0;) {
        if (a[i] != b[i]) {
            return a[i] < b[i] ? -1 : 1;
        }
    }
    return 0;
}

/// Compares digits * 10^exponent with the point halfway between the float of these bits and the
/// next one.
int CompareWithMidpoint(const std::string& digits, std::int32_t exponent, std::uint32_t bits) {
    const std::uint32_t biased = bits >> 23;
    const std::uint32_t mantissa = (bits & 0x7FFFFFu) | (biased == 0 ? 0u : 0x800000u);
    const std::int32_t power = static_cast<std::int32_t>(biased == 0 ? 1 : biased) - 150;
    BigNumber number;
    for (const char digit : digits) {
        MultiplyAdd(number, 10, static_cast<std::uint32_t>(digit - '0'));
    }
    BigNumber midpoint{2 * mantissa + 1};  // in units of half a unit in the last place
    const std::int32_t halfPower = power - 1;
    MultiplyPower(number, 10, exponent);
    MultiplyPower(number, 2, -halfPower);
    MultiplyPower(midpoint, 10, -exponent);
    MultiplyPower(midpoint, 2, halfPower);
    return Compare(number, midpoint);
}

}  // namespace

float PlainDecimal(const std::string& digits, std::int32_t exponent) {
    // The bits of positive floats are in the order of their values; 0x7F800000 is infinity.
    std::uint32_t low = 0;
    std::uint32_t high = 0x7F800000u;
    while (low < high) {
        const std::uint32_t middle = low + (high - low) / 2;
        const int order = CompareWithMidpoint(digits, exponent, middle);
        const bool roundsUp = order > 0 || (order == 0 && middle % 2 == 1);
        if (roundsUp) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    float value = 0.0f;
    std::memcpy(&value, &low, sizeof value);
    return value;
}

}  // namespace zelmo
