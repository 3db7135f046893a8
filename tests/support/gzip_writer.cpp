#include "tests/support/gzip_writer.h"

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace zelmo {

std::vector<std::uint8_t> Gzipped(const std::vector<std::uint8_t>& bytes, const GzipForm& form) {
    z_stream stream = {};
    constexpr int gzip = 16 + MAX_WBITS;
    if (deflateInit2(&stream, form.level, Z_DEFLATED, gzip, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("nothing can be packed");
    }
    std::vector<Bytef> name(form.fileName.c_str(),
                            form.fileName.c_str() + form.fileName.size() + 1);
    std::vector<Bytef> comment(form.comment.c_str(),
                               form.comment.c_str() + form.comment.size() + 1);
    std::vector<Bytef> extra{'Z', 'E', 2, 0, 1, 2};
    gz_header head = {};
    head.os = 3;
    head.name = form.fileName.empty() ? nullptr : name.data();
    if (!form.comment.empty()) {
        head.comment = comment.data();
        head.extra = extra.data();
        head.extra_len = static_cast<uInt>(extra.size());
        head.hcrc = 1;
    }
    deflateSetHeader(&stream, &head);
    std::vector<Bytef> input(bytes.begin(), bytes.end());
    std::vector<std::uint8_t> packed(deflateBound(&stream, static_cast<uLong>(input.size())));
    stream.next_in = input.data();
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.erase(packed.end() - static_cast<std::ptrdiff_t>(stream.avail_out), packed.end());
    deflateEnd(&stream);
    if (result != Z_STREAM_END) {
        throw std::runtime_error("the bytes were not packed to their end");
    }
    return packed;
}

std::vector<std::uint8_t> GzippedInMembers(const std::vector<std::uint8_t>& bytes,
                                           std::size_t memberSize) {
    std::vector<std::uint8_t> packed;
    for (std::size_t at = 0; at < bytes.size(); at += memberSize) {
        const std::size_t end = std::min(bytes.size(), at + memberSize);
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const auto member = Gzipped({begin, bytes.begin() + static_cast<std::ptrdiff_t>(end)});
        packed.insert(packed.end(), member.begin(), member.end());
    }
    return packed;
}

}  // namespace zelmo
