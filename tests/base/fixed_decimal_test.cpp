#include "base/fixed_decimal.h"

#include <fmt/format.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace zelmo {
namespace {

template <int decimals>
std::string Text(float value) {
    std::array<char, longestFixedDecimal> text{};
    const char* const end = WriteFixedDecimal<decimals>(value, text.data());
    return {text.data(), static_cast<std::size_t>(end - text.data())};
}

/// Compares both numbers of decimals with the format library, and with printf where it is the one
/// that is meant.
testing::AssertionResult IsPrintedAlike(float value) {
    const auto wide = static_cast<double>(value);
    const std::string ten = Text<10>(value);
    const std::string twelve = Text<12>(value);
    bool same = ten == fmt::format("{:.10f}", wide) && twelve == fmt::format("{:.12f}", wide);
#ifdef __GLIBC__
    std::array<char, 64> printed{};
    std::snprintf(printed.data(), printed.size(), "%.10f", wide);
    same = same && ten == printed.data();
    std::snprintf(printed.data(), printed.size(), "%.12f", wide);
    same = same && twelve == printed.data();
#endif
    return same ? testing::AssertionSuccess()
                : testing::AssertionFailure() << std::bit_cast<std::uint32_t>(value) << " gives "
                                              << ten << " and " << twelve;
}

TEST(FixedDecimal, SpecialValues) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Text<12>(0.0f), "0.000000000000");
    EXPECT_EQ(Text<12>(-0.0f), "-0.000000000000");
    EXPECT_EQ(Text<10>(1e-45f), "0.0000000000");
    EXPECT_EQ(Text<10>(-1e-45f), "-0.0000000000");
    EXPECT_EQ(Text<10>(infinity), "inf");
    EXPECT_EQ(Text<10>(-infinity), "-inf");
    EXPECT_EQ(Text<12>(std::copysign(nan, 1.0f)), "nan");
    EXPECT_EQ(Text<12>(std::copysign(nan, -1.0f)), "-nan");
    const std::string longest = Text<12>(std::numeric_limits<float>::lowest());
    EXPECT_EQ(longest, "-340282346638528859811704183484516925440.000000000000");
    EXPECT_EQ(longest.size(), longestFixedDecimal);
}

TEST(FixedDecimal, TiesGoToTheEvenDigit) {
    EXPECT_EQ(Text<12>(1.0f / 8192.0f), "0.000122070312");  // 0.0001220703125
    EXPECT_EQ(Text<12>(3.0f / 8192.0f), "0.000366210938");  // 0.0003662109375
    EXPECT_EQ(Text<10>(1.0f / 2048.0f), "0.0004882812");    // 0.00048828125
    EXPECT_EQ(Text<10>(3.0f / 2048.0f), "0.0014648438");    // 0.00146484375
    for (std::uint32_t exponent = 0; exponent < 40; ++exponent) {
        for (std::uint32_t number = 1; number < 4000; number += 2) {
            const float value =
                static_cast<float>(number) / static_cast<float>(std::uint64_t{1} << exponent);
            ASSERT_TRUE(IsPrintedAlike(value));
        }
    }
}

TEST(FixedDecimal, EveryExponentIsPrintedAsPrintfDoes) {
    std::mt19937 random(21);
    for (std::uint32_t signAndExponent = 0; signAndExponent < 512; ++signAndExponent) {
        const std::uint32_t power = signAndExponent << 23U;
        for (const std::uint32_t significand : {0U, 1U, 2U, 0x400000U, 0x7FFFFEU, 0x7FFFFFU}) {
            ASSERT_TRUE(IsPrintedAlike(std::bit_cast<float>(power | significand)));
        }
        for (int i = 0; i < 500; ++i) {
            const auto significand = static_cast<std::uint32_t>(random()) & 0x7FFFFFU;
            ASSERT_TRUE(IsPrintedAlike(std::bit_cast<float>(power | significand)));
        }
    }
}

TEST(FixedDecimal, HeightsArePrintedAsPrintfDoes) {
    std::mt19937 random(22);
    for (const float highest : {0.001f, 1.0f, 20.0f, 2000.0f}) {
        std::uniform_real_distribution<float> heights(-highest, highest);
        for (int i = 0; i < 100000; ++i) {
            ASSERT_TRUE(IsPrintedAlike(heights(random)));
        }
    }
}

}  // namespace
}  // namespace zelmo
