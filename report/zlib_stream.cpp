#include "report/zlib_stream.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>

namespace zelmo {

namespace {

/// The library counts the bytes of a call in an unsigned int.
constexpr std::size_t mostOfACall = std::numeric_limits<uInt>::max() / 2;

/// Calls `work` with as much input and room as it takes until it ends or fails. `output` has a
/// known size at most.
template <typename Work>
int RunToEnd(z_stream& stream, std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
             const Work& work) {
    std::size_t taken = 0;
    std::size_t given = 0;
    int result = Z_OK;
    while (result == Z_OK) {
        const std::size_t in = std::min(input.size() - taken, mostOfACall);
        const std::size_t out = std::min(output.size() - given, mostOfACall);
        stream.next_in = const_cast<Bytef*>(input.data() + taken);  // NOLINT: read by zlib
        stream.avail_in = static_cast<uInt>(in);
        stream.next_out = output.data() + given;
        stream.avail_out = static_cast<uInt>(out);
        result = work(&stream, taken + in == input.size() ? Z_FINISH : Z_NO_FLUSH);
        taken += in - stream.avail_in;
        given += out - stream.avail_out;
    }
    return result;
}

}  // namespace

std::vector<std::uint8_t> Deflate(std::span<const std::uint8_t> bytes) {
    z_stream stream{};
    if (deflateInit(&stream, Z_BEST_COMPRESSION) != Z_OK) {
        throw std::bad_alloc();
    }
    std::vector<std::uint8_t> packed;
    try {
        packed.resize(deflateBound(&stream, static_cast<uLong>(bytes.size())));
    } catch (...) {
        deflateEnd(&stream);
        throw;
    }
    const int result = RunToEnd(stream, bytes, packed, deflate);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) {
        throw std::runtime_error("bytes could not be compressed");
    }
    return packed;
}

std::vector<std::uint8_t> Inflate(std::span<const std::uint8_t> packed, std::size_t size) {
    std::vector<std::uint8_t> bytes(size + 1);  // one that more than `size` would take
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) {
        throw std::bad_alloc();
    }
    const int result = RunToEnd(stream, packed, bytes, inflate);
    const bool isWhole = result == Z_STREAM_END && stream.total_out == size;
    inflateEnd(&stream);
    if (!isWhole) {
        throw std::runtime_error("bytes are no compressed ones");
    }
    bytes.pop_back();
    return bytes;
}

}  // namespace zelmo
