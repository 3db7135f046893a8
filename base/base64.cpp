#include "base/base64.h"

namespace zelmo {

namespace {

constexpr const char* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Appends the four digits of three bytes.
void AppendGroup(std::span<const std::uint8_t, 3> bytes, std::string& text) {
    const std::uint32_t bits = static_cast<std::uint32_t>(bytes[0]) << 16 |
                               static_cast<std::uint32_t>(bytes[1]) << 8 | bytes[2];
    for (int shift = 18; shift >= 0; shift -= 6) {
        text.push_back(digits[(bits >> shift) & 0x3F]);
    }
}

}  // namespace

void Base64Encoder::Add(std::span<const std::uint8_t> bytes, std::string& text) {
    text.reserve(text.size() + (bytes.size() + restSize_) / 3 * 4);
    for (const std::uint8_t byte : bytes) {
        rest_.at(restSize_++) = byte;
        if (restSize_ == rest_.size()) {
            AppendGroup(rest_, text);
            restSize_ = 0;
        }
    }
}

void Base64Encoder::End(std::string& text) {
    if (restSize_ > 0) {
        const std::size_t missing = rest_.size() - restSize_;
        for (std::size_t i = restSize_; i < rest_.size(); ++i) {
            rest_.at(i) = 0;
        }
        AppendGroup(rest_, text);
        text.replace(text.size() - missing, missing, missing, '=');
    }
    restSize_ = 0;
}

std::string Base64(std::span<const std::uint8_t> bytes) {
    Base64Encoder encoder;
    std::string text;
    encoder.Add(bytes, text);
    encoder.End(text);
    return text;
}

}  // namespace zelmo
