#include "process_file/decimal.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cstdint>
#include <limits>
#include <locale>
#include <random>
#include <string>

#include "plain_decimal.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

/// The bits of the number that the text begins with; all ones, which no number gives, for none.
std::uint32_t Bits(std::string_view text) {
    const std::optional<float> value = ParseDecimal(text);
    return value ? std::bit_cast<std::uint32_t>(*value) : 0xFFFFFFFFu;
}

std::uint32_t Bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

TEST(DecimalTest, EveryFormOfANumberIsRead) {
    EXPECT_EQ(Bits("12"), Bits(12.0f));
    EXPECT_EQ(Bits("12."), Bits(12.0f));
    EXPECT_EQ(Bits(".5"), Bits(0.5f));
    EXPECT_EQ(Bits("12.5"), Bits(12.5f));
    EXPECT_EQ(Bits("+12.5"), Bits(12.5f));
    EXPECT_EQ(Bits("-12.5"), Bits(-12.5f));
    EXPECT_EQ(Bits("-.5"), Bits(-0.5f));
    EXPECT_EQ(Bits("+5."), Bits(5.0f));
    EXPECT_EQ(Bits("1e3"), Bits(1000.0f));
    EXPECT_EQ(Bits("1E+3"), Bits(1000.0f));
    EXPECT_EQ(Bits("12.5e-1"), Bits(1.25f));
    EXPECT_EQ(Bits("5.e1"), Bits(50.0f));
    EXPECT_EQ(Bits(".5e1"), Bits(5.0f));
    EXPECT_EQ(Bits("0001"), Bits(1.0f));
    EXPECT_EQ(Bits("0"), Bits(0.0f));
    EXPECT_EQ(Bits("-0"), Bits(-0.0f));
    EXPECT_EQ(Bits("-.0e5"), Bits(-0.0f));
}

TEST(DecimalTest, TextBehindTheNumberIsIgnored) {
    EXPECT_EQ(Bits("12abc"), Bits(12.0f));
    EXPECT_EQ(Bits("1.5.5"), Bits(1.5f));
    EXPECT_EQ(Bits("1,5"), Bits(1.0f));
    EXPECT_EQ(Bits("1-2"), Bits(1.0f));
    EXPECT_EQ(Bits("7 8"), Bits(7.0f));
}

TEST(DecimalTest, AnExponentWithoutDigitsIsIgnored) {
    EXPECT_EQ(Bits("1e"), Bits(1.0f));
    EXPECT_EQ(Bits("1e+"), Bits(1.0f));
    EXPECT_EQ(Bits("1E-"), Bits(1.0f));
    EXPECT_EQ(Bits("1e-x"), Bits(1.0f));
    EXPECT_EQ(Bits("1e 5"), Bits(1.0f));
    EXPECT_EQ(Bits("1e+-5"), Bits(1.0f));
    EXPECT_EQ(Bits("2.5e.5"), Bits(2.5f));
}

TEST(DecimalTest, HexadecimalReadsAsItsZero) {
    EXPECT_EQ(Bits("0x10"), Bits(0.0f));
    EXPECT_EQ(Bits("-0X1p3"), Bits(-0.0f));
}

TEST(DecimalTest, WordsAreNoNumbers) {
    for (const char* const text :
         {"",  "abc", "inf", "INF", "infinity", "-inf", "+Infinity", "nan", "NaN", "-nan(1)", ".",
          "-", "+",   "-.",  "+-5", "--5",      "-+5",  "e5",        ".e5", "- 5", "\xff"}) {
        EXPECT_EQ(ParseDecimal(text), std::nullopt) << text;
    }
}

TEST(DecimalTest, TooLargeNumbersAreInfinite) {
    EXPECT_EQ(Bits("1e39"), Bits(infinity));
    EXPECT_EQ(Bits("-1e39"), Bits(-infinity));
    EXPECT_EQ(Bits("3.5e38"), Bits(infinity));
    EXPECT_EQ(Bits("1e99999999999999999999"), Bits(infinity));
    EXPECT_EQ(Bits("0.000001e99999999999999999999"), Bits(infinity));
    EXPECT_EQ(Bits(std::string(400, '9')), Bits(infinity));
    EXPECT_EQ(Bits("0." + std::string(500, '0') + "1e540"), Bits(infinity));
    EXPECT_EQ(Bits("340282356779733661637539395458142568448"), Bits(infinity));
    EXPECT_EQ(Bits("340282356779733661637539395458142568447"),
              Bits(std::numeric_limits<float>::max()));
}

TEST(DecimalTest, TooSmallNumbersAreZero) {
    EXPECT_EQ(Bits("1e-50"), Bits(0.0f));
    EXPECT_EQ(Bits("-1e-50"), Bits(-0.0f));
    EXPECT_EQ(Bits("7e-46"), Bits(0.0f));
    EXPECT_EQ(Bits("1e-99999999999999999999"), Bits(0.0f));
    EXPECT_EQ(Bits("123456e-99999999999999999999"), Bits(0.0f));
    EXPECT_EQ(Bits("0." + std::string(400, '0') + "1"), Bits(0.0f));
    EXPECT_EQ(Bits("1" + std::string(500, '0') + "e-560"), Bits(0.0f));
}

TEST(DecimalTest, AZeroStaysZeroWhateverItsExponent) {
    EXPECT_EQ(Bits("0e99999999999"), Bits(0.0f));
    EXPECT_EQ(Bits("-0.000e99999999999"), Bits(-0.0f));
    EXPECT_EQ(Bits("0e-99999999999"), Bits(0.0f));
}

TEST(DecimalTest, TheSmallestNumbersAreRoundedCorrectly) {
    EXPECT_EQ(Bits("7.1e-46"), 1u);
    EXPECT_EQ(Bits("1e-45"), 1u);
    EXPECT_EQ(Bits("1.1754942e-38"), 0x007FFFFFu);
    EXPECT_EQ(Bits("1.17549435e-38"), 0x00800000u);
    // half of the smallest number, exactly: the tie goes to the even 0
    EXPECT_EQ(Bits("7.00649232162408535461864791644958065640130970938257885878534141944895541342930"
                   "300743319094181060791015625e-46"),
              0u);
    EXPECT_EQ(Bits("7.00649232162408535461864791644958065640130970938257885878534141944895541342930"
                   "3007433190941810607910156250000000000000000000000000001e-46"),
              1u);
}

TEST(DecimalTest, NumbersAreRoundedOnce) {
    // Just above the middle between 1 and the next float, by less than double precision shows.
    EXPECT_EQ(Bits("1.000000059604644775390625"), 0x3F800000u);
    EXPECT_EQ(Bits("1.00000005960464477539062500000001"), 0x3F800001u);
    EXPECT_EQ(Bits("16777217"), Bits(16777216.0f));
    EXPECT_EQ(Bits("16777217.00000000000000000001"), Bits(16777218.0f));
}

std::string RandomDigits(std::mt19937& random, std::size_t count) {
    std::string digits(count, '0');
    for (char& digit : digits) {
        digit = static_cast<char>('0' + random() % 10);
    }
    return digits;
}

TEST(DecimalTest, RandomNumbersHaveTheBitsOfExactArithmetic) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 300; ++round) {
        const std::string whole = RandomDigits(random, random() % 12);
        const std::string fraction = RandomDigits(random, 1 + random() % 25);
        const auto exponent = static_cast<std::int32_t>(random() % 100) - 56;
        const std::string text = whole + "." + fraction + "e" + std::to_string(exponent);
        const float expected =
            PlainDecimal(whole + fraction, exponent - static_cast<std::int32_t>(fraction.size()));
        EXPECT_EQ(Bits(text), Bits(expected)) << text;
        EXPECT_EQ(Bits("-" + text), Bits(-expected)) << text;
    }
}

/// A locale whose decimal point is a comma.
class CommaPoint : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
};

TEST(DecimalTest, TheLocaleMakesNoDifference) {
    const std::string savedNumeric = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* const name : {"de_DE.UTF-8", "de_DE", "German", "de-DE"}) {
        if (std::setlocale(LC_NUMERIC, name) != nullptr) {
            break;
        }
    }
    const std::locale saved =
        std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    const std::uint32_t point = Bits("1.5");
    const std::uint32_t comma = Bits("1,5");
    std::locale::global(saved);
    std::setlocale(LC_NUMERIC, savedNumeric.c_str());
    EXPECT_EQ(point, Bits(1.5f));
    EXPECT_EQ(comma, Bits(1.0f));
}

}  // namespace
}  // namespace zelmo
