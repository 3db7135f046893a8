#include "render/number_format.h"

#include <gtest/gtest.h>

#include <limits>

namespace zelmo {
namespace {

TEST(FormatThousands, ZeroIsOneDigit) {
    EXPECT_EQ(FormatThousands(0), "0");
}

TEST(FormatThousands, ThreeDigitsHaveNoComma) {
    EXPECT_EQ(FormatThousands(7), "7");
    EXPECT_EQ(FormatThousands(999), "999");
    EXPECT_EQ(FormatThousands(-999), "-999");
}

TEST(FormatThousands, AThousandHasOneComma) {
    EXPECT_EQ(FormatThousands(1000), "1,000");
    EXPECT_EQ(FormatThousands(-1000), "-1,000");
    EXPECT_EQ(FormatThousands(2500), "2,500");
}

TEST(FormatThousands, GroupsInsideKeepTheirZeros) {
    EXPECT_EQ(FormatThousands(1002003), "1,002,003");
    EXPECT_EQ(FormatThousands(-10000000), "-10,000,000");
    EXPECT_EQ(FormatThousands(999999), "999,999");
}

TEST(FormatThousands, TheEndsOfTheRangeKeepAllTheirDigits) {
    EXPECT_EQ(FormatThousands(std::numeric_limits<std::int64_t>::max()),
              "9,223,372,036,854,775,807");
    EXPECT_EQ(FormatThousands(std::numeric_limits<std::int64_t>::min()),
              "-9,223,372,036,854,775,808");
}

}  // namespace
}  // namespace zelmo
