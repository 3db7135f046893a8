#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zelmo {

/// The SHA-256 digest (FIPS 180-4) of bytes that come piece by piece.
class Sha256 {
public:
    void Add(std::span<const std::uint8_t> bytes);

    /// The digest of all that was added, as 64 lower-case hexadecimal digits or as bytes. Nothing
    /// can be added afterwards.
    std::string Digest();
    std::array<std::uint8_t, 32> DigestBytes();

private:
    static constexpr std::size_t blockSize = 64;

    void TakeBlock(const std::uint8_t* block);

    std::array<std::uint32_t, 8> state_{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                        0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<std::uint8_t, blockSize> rest_{};  ///< the first bytes of a block
    std::size_t restSize_ = 0;
    std::uint64_t byteCount_ = 0;
};

}  // namespace zelmo
