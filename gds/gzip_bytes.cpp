#include "gds/gzip_bytes.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

namespace zelmo {

GzipBytes::GzipBytes(FilePointer file, std::uint64_t limit)
    : file_(std::move(file)), stream_(new z_stream()), limit_(limit) {
    constexpr int gzipWithLargestWindow = 16 + MAX_WBITS;
    if (inflateInit2(stream_.get(), gzipWithLargestWindow) != Z_OK) {
        throw std::bad_alloc();
    }
    std::copy(gzipMark.begin(), gzipMark.end(), input_.begin());
    stream_->next_in = input_.data();
    stream_->avail_in = static_cast<uInt>(gzipMark.size());
    fileOffset_ = gzipMark.size();
}

std::size_t GzipBytes::Read(std::uint8_t* bytes, std::size_t count) {
    std::size_t read = 0;
    while (read < count && !IsAtEnd()) {
        const bool hasInput = HasInput();
        if (betweenMembers_ && hasInput) {
            BeginNextMember();
            continue;
        }
        // Without input, something may be left that there was no room for.
        const std::size_t written = betweenMembers_ ? 0 : Inflate(bytes + read, count - read);
        read += written;
        if (!hasInput && written == 0 && !fault_) {
            EndInput();
        }
    }
    return read;
}

bool GzipBytes::HasInput() {
    if (stream_->avail_in == 0) {
        const std::size_t read = std::fread(input_.data(), 1, input_.size(), file_.get());
        stream_->next_in = input_.data();
        stream_->avail_in = static_cast<uInt>(read);
        fileOffset_ += read;
    }
    return stream_->avail_in != 0;
}

/// Tells why there is no more.
void GzipBytes::EndInput() {
    if (std::ferror(file_.get()) != 0) {
        unreadable_ = true;
    } else if (betweenMembers_) {
        ended_ = true;
    } else {
        Fail(GzipFault::EndsEarly);
    }
}

/// Passes zeros up to the next member.
void GzipBytes::BeginNextMember() {
    const std::span input(stream_->next_in, stream_->avail_in);
    const auto next =
        std::find_if(input.begin(), input.end(), [](Bytef byte) { return byte != 0; });
    const auto zeros = next - input.begin();
    stream_->next_in += zeros;
    stream_->avail_in -= static_cast<uInt>(zeros);
    if (stream_->avail_in == 0) {
        return;
    }
    if (*next != gzipMark[0]) {
        Fail(GzipFault::StrayBytes);
        return;
    }
    inflateReset(stream_.get());
    betweenMembers_ = false;
}

/// Unpacks of the input at hand what there is room for. One byte beyond the limit is let through,
/// to tell a file that reaches it from one that goes on.
std::size_t GzipBytes::Inflate(std::uint8_t* bytes, std::size_t count) {
    const std::uint64_t room = std::min<std::uint64_t>(count, limit_ - unpacked_ + 1);
    const auto most =
        static_cast<uInt>(std::min<std::uint64_t>(room, std::numeric_limits<uInt>::max()));
    stream_->next_out = bytes;
    stream_->avail_out = most;
    TakeResult(inflate(stream_.get(), Z_NO_FLUSH));
    const std::size_t written = most - stream_->avail_out;
    LookForMark({bytes, written});
    unpacked_ += written;
    if (unpacked_ > limit_) {
        Fail(GzipFault::TooLarge);
    }
    return written;
}

void GzipBytes::TakeResult(int result) {
    if (result == Z_STREAM_END) {
        betweenMembers_ = true;
    } else if (result == Z_MEM_ERROR) {
        throw std::bad_alloc();
    } else if (result != Z_OK && result != Z_BUF_ERROR) {  // the latter asks for more input
        const std::string_view reason = stream_->msg != nullptr ? stream_->msg : "";
        const bool atTheEnd =
            reason == "incorrect data check" || reason == "incorrect length check";
        Fail(atTheEnd ? GzipFault::WrongCheckSum : GzipFault::Damaged);
    }
}

/// A mark at the beginning of what comes out would pass for the records of a strange library.
void GzipBytes::LookForMark(std::span<const std::uint8_t> unpacked) {
    for (std::size_t i = 0; i < unpacked.size() && unpacked_ + i < gzipMark.size(); ++i) {
        markMatches_ += unpacked[i] == gzipMark.at(unpacked_ + i) ? 1 : 0;
    }
    if (markMatches_ == gzipMark.size()) {
        Fail(GzipFault::PackedTwice);
    }
}

/// A file in a file is no fault of a byte in particular, and comes before all others: it does not
/// matter how much is unpacked at a time.
void GzipBytes::Fail(GzipFault fault) {
    if (!fault_ || fault == GzipFault::PackedTwice) {
        fault_ = fault;
        faultOffset_ = fault == GzipFault::PackedTwice ? 0 : fileOffset_ - stream_->avail_in;
    }
}

}  // namespace zelmo
