#include "gds/stream_records.h"

#include <algorithm>
#include <cmath>

namespace zelmo {

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 17;

}  // namespace

// The bytes of the mantissa, added up from the first to the last, are exact but for the last sum,
// which rounds to nearest as the conversion of the whole number does.
double GdsReal8ToDouble(const std::uint8_t* bytes) {
    std::uint64_t digits = 0;
    for (int i = 1; i < 8; ++i) {
        digits = digits << 8 | bytes[i];
    }
    constexpr int sign = 128;
    constexpr int excess = 64;
    constexpr int bitsOfDigit = 4;
    constexpr int bitsOfMantissa = 56;
    const auto mantissa = static_cast<double>(digits);
    const bool negative = bytes[0] >= sign;
    const int exponent = bytes[0] % sign - excess;
    const double value = std::ldexp(mantissa, bitsOfDigit * exponent - bitsOfMantissa);
    return negative ? -value : value;
}

std::uint16_t StreamRecord::U16At(std::size_t offset) const {
    return offset + 2 <= data.size() ? StreamU16(data.data() + offset)
           : offset < data.size()    ? static_cast<std::uint16_t>(data[offset] << 8)
                                     : std::uint16_t{0};
}

std::uint32_t StreamRecord::U32At(std::size_t offset) const {
    return static_cast<std::uint32_t>(U16At(offset)) << 16 | U16At(offset + 2);
}

double StreamRecord::RealAt(std::size_t offset) const {
    std::uint8_t bytes[8] = {};
    const auto rest = data.subspan(std::min(offset, data.size()));
    std::copy_n(rest.begin(), std::min(rest.size(), sizeof bytes), bytes);
    return GdsReal8ToDouble(bytes);
}

std::string_view StreamRecord::Text() const {
    return {reinterpret_cast<const char*>(data.data()), data.size()};
}

StreamRecords::StreamRecords(LayoutBytes& bytes)
    : file_(bytes), buffer_(blockSize + longestRecord) {}

bool StreamRecords::Fill(std::size_t needed) {
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    end_ -= begin_;
    bufferOffset_ += begin_;
    begin_ = 0;
    end_ += file_.Read(buffer_.data() + end_, blockSize);
    if (end_ >= needed) {
        return true;
    }
    std::fill(buffer_.begin() + static_cast<std::ptrdiff_t>(end_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(needed), std::uint8_t{0});
    return !file_.Failed();
}

}  // namespace zelmo
