#include "base/base64.h"

#include <gtest/gtest.h>

#include <string_view>

namespace zelmo {
namespace {

std::span<const std::uint8_t> BytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

// The vectors that were published with the encoding.
TEST(Base64, PublishedVectors) {
    const std::pair<std::string_view, std::string_view> vectors[] = {{"", ""},
                                                                     {"f", "Zg=="},
                                                                     {"fo", "Zm8="},
                                                                     {"foo", "Zm9v"},
                                                                     {"foob", "Zm9vYg=="},
                                                                     {"fooba", "Zm9vYmE="},
                                                                     {"foobar", "Zm9vYmFy"}};
    for (const auto& [text, encoded] : vectors) {
        EXPECT_EQ(Base64(BytesOf(text)), encoded);
    }
    EXPECT_EQ(Base64(BytesOf("\xFB\xFF\xBF")), "+/+/");
}

TEST(Base64, PiecesOfAnySizeGiveTheSame) {
    const std::string_view text = "heights of a surface";
    for (std::size_t size = 1; size <= text.size(); ++size) {
        Base64Encoder encoder;
        std::string encoded;
        for (std::size_t at = 0; at < text.size(); at += size) {
            encoder.Add(BytesOf(text.substr(at, size)), encoded);
        }
        encoder.End(encoded);
        EXPECT_EQ(encoded, Base64(BytesOf(text))) << size;
    }
}

}  // namespace
}  // namespace zelmo
