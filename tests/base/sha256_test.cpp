#include "base/sha256.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace zelmo {
namespace {

std::string DigestOf(std::string_view text) {
    Sha256 hash;
    hash.Add({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    return hash.Digest();
}

// The vectors that were published with the algorithm.
TEST(Sha256, PublishedVectors) {
    EXPECT_EQ(DigestOf(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(DigestOf("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(DigestOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(DigestOf("abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmn"
                       "hijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopqrstu"),
              "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1");
    EXPECT_EQ(DigestOf(std::string(1000000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, PiecesOfAnySizeGiveTheSame) {
    const std::string text(300, 'x');
    const std::string whole = DigestOf(text);
    for (std::size_t size = 1; size < 140; ++size) {
        Sha256 hash;
        for (std::size_t at = 0; at < text.size(); at += size) {
            const std::string piece = text.substr(at, size);
            hash.Add({reinterpret_cast<const std::uint8_t*>(piece.data()), piece.size()});
        }
        EXPECT_EQ(hash.Digest(), whole) << size;
    }
}

TEST(Sha256, LengthsAroundABlockDiffer) {
    std::vector<std::string> digests;
    for (std::size_t length = 50; length < 70; ++length) {
        for (const std::string& other : digests) {
            EXPECT_NE(DigestOf(std::string(length, 'b')), other) << length;
        }
        digests.push_back(DigestOf(std::string(length, 'b')));
    }
}

}  // namespace
}  // namespace zelmo
