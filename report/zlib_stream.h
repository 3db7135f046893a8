#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zelmo {

/// A zlib stream (RFC 1950) of these bytes. Throws std::bad_alloc.
std::vector<std::uint8_t> Deflate(std::span<const std::uint8_t> bytes);

/// The `size` bytes of which a stream of Deflate was made. Throws std::bad_alloc, and
/// std::runtime_error for bytes that are no such stream.
std::vector<std::uint8_t> Inflate(std::span<const std::uint8_t> packed, std::size_t size);

}  // namespace zelmo
