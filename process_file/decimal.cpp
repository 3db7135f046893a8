#include "process_file/decimal.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <system_error>

#include "process_file/words.h"

namespace zelmo {

namespace {

/// The parts of a number as it is written.
struct DecimalText {
    std::string_view number;    ///< all of it, without its sign
    std::string_view whole;     ///< digits before the point
    std::string_view fraction;  ///< digits behind the point
    std::int64_t exponent = 0;  ///< limited to a million either way
};

std::string_view LeadingDigits(std::string_view text) {
    const auto end = std::find_if_not(text.begin(), text.end(), IsAsciiDigit);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

/// Reads "e-12" at `position` and moves behind it; without digits there is no exponent.
std::int64_t TakeExponent(std::string_view text, std::size_t& position) {
    constexpr std::int64_t limit = 1000000;
    std::size_t next = position;
    if (next >= text.size() || (text[next] != 'e' && text[next] != 'E')) {
        return 0;
    }
    ++next;
    const bool hasSign = next < text.size() && (text[next] == '+' || text[next] == '-');
    const bool isNegative = hasSign && text[next] == '-';
    next += hasSign ? 1 : 0;
    const std::string_view digits = LeadingDigits(text.substr(next));
    if (digits.empty()) {
        return 0;
    }
    position = next + digits.size();
    std::int64_t exponent = 0;
    for (const char digit : digits) {
        exponent = std::min<std::int64_t>(exponent * 10 + (digit - '0'), limit);
    }
    return isNegative ? -exponent : exponent;
}

std::optional<DecimalText> ScanUnsigned(std::string_view text) {
    DecimalText scanned;
    scanned.whole = LeadingDigits(text);
    std::size_t position = scanned.whole.size();
    if (position < text.size() && text[position] == '.') {
        scanned.fraction = LeadingDigits(text.substr(position + 1));
        position += 1 + scanned.fraction.size();
    }
    if (scanned.whole.empty() && scanned.fraction.empty()) {
        return std::nullopt;
    }
    scanned.exponent = TakeExponent(text, position);
    scanned.number = text.substr(0, position);
    return scanned;
}

/// Whether a number that single precision cannot hold is too large for it, not too small.
bool IsAboveOne(const DecimalText& scanned) {
    std::int64_t leadingPlace = 0;  // power of ten of the first digit that is not 0
    const std::size_t inWhole = scanned.whole.find_first_not_of('0');
    if (inWhole != std::string_view::npos) {
        leadingPlace = static_cast<std::int64_t>(scanned.whole.size() - inWhole) - 1;
    } else {
        const std::size_t zeros = scanned.fraction.find_first_not_of('0');
        leadingPlace = -1 - static_cast<std::int64_t>(zeros);
    }
    return leadingPlace + scanned.exponent >= 0;
}

float ToFloat(const DecimalText& scanned) {
    float value = 0.0f;
    const char* const begin = scanned.number.data();
    const auto result = std::from_chars(begin, begin + scanned.number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        return IsAboveOne(scanned) ? std::numeric_limits<float>::infinity() : 0.0f;
    }
    return value;
}

bool HasSign(std::string_view text) {
    return !text.empty() && (text[0] == '+' || text[0] == '-');
}

}  // namespace

std::optional<float> ParseDecimal(std::string_view text) {
    const bool hasSign = HasSign(text);
    const bool isNegative = hasSign && text[0] == '-';
    const std::optional<DecimalText> scanned = ScanUnsigned(text.substr(hasSign ? 1 : 0));
    if (!scanned) {
        return std::nullopt;
    }
    const float magnitude = ToFloat(*scanned);
    return isNegative ? -magnitude : magnitude;
}

std::size_t DecimalLength(std::string_view text) {
    const std::size_t sign = HasSign(text) ? 1 : 0;
    const std::optional<DecimalText> scanned = ScanUnsigned(text.substr(sign));
    return scanned ? sign + scanned->number.size() : 0;
}

}  // namespace zelmo
