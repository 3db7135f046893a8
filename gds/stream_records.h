#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "gds/layout_bytes.h"

namespace zelmo {

/// Numbers of a stream file, which stand there most significant byte first.
inline std::uint16_t StreamU16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}
inline std::int32_t StreamI32(const std::uint8_t* bytes) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(bytes[0]) << 24 |
                                     static_cast<std::uint32_t>(bytes[1]) << 16 |
                                     static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3]);
}

/// The value of an eight-byte GDSII real (excess-64, base 16).
double GdsReal8ToDouble(const std::uint8_t* bytes);

/// A record begins with its length, these bytes counted in, and its code.
constexpr std::size_t recordHeadSize = 4;
constexpr std::size_t longestRecord = 65535;

/// One record of a stream file. Its numbers stand most significant byte first; what lies behind
/// the end of the data reads as zero.
struct StreamRecord {
    std::uint16_t code = 0;              ///< record type in the high byte, data type in the low one
    std::span<const std::uint8_t> data;  ///< valid until the next record is read

    std::uint16_t U16At(std::size_t offset) const;
    std::uint32_t U32At(std::size_t offset) const;
    double RealAt(std::size_t offset) const;
    std::string_view Text() const;
};

/// The record that stands at `bytes`, all of it.
inline StreamRecord RecordAt(const std::uint8_t* bytes) {
    return {StreamU16(bytes + 2), {bytes + recordHeadSize, StreamU16(bytes) - recordHeadSize}};
}

/// What became of the attempt to read a record.
enum class RecordStatus { Read, EndOfFile, BadLength, Unreadable };

/// Walks over the records of a file. Records are handed out as they lie in a buffer, which holds
/// one piece of the file after the other and is small enough for the processor's own memory.
class StreamRecords {
public:
    /// A file that cannot be opened shows as an unreadable first record. The bytes live longer.
    explicit StreamRecords(LayoutBytes& bytes);

    /// Reads the next record. Fewer than four bytes are the end of the file; a record whose data
    /// the file cuts short is filled up with zeros. Of a record of bad length it gives the code.
    RecordStatus Next(StreamRecord& record) {
        if (!Holds(recordHeadSize)) {
            return RecordStatus::Unreadable;
        }
        if (end_ - begin_ < recordHeadSize) {
            return RecordStatus::EndOfFile;
        }
        const std::size_t length = StreamU16(buffer_.data() + begin_);
        if (length < recordHeadSize) {
            record = {StreamU16(buffer_.data() + begin_ + 2), {}};
            return RecordStatus::BadLength;
        }
        if (!Holds(length)) {
            return RecordStatus::Unreadable;
        }
        record = RecordAt(buffer_.data() + begin_);
        begin_ = std::min(begin_ + length, end_);
        return RecordStatus::Read;
    }

    /// Where in the file, unpacked, the record that was read last begins.
    std::uint64_t OffsetOf(const StreamRecord& record) const {
        return OffsetOf(record.data.data() - recordHeadSize);
    }
    /// Where in the file, unpacked, the records end that were read.
    std::uint64_t Offset() const { return OffsetOf(buffer_.data() + begin_); }

private:
    std::uint64_t OffsetOf(const std::uint8_t* byte) const {
        return bufferOffset_ + static_cast<std::uint64_t>(byte - buffer_.data());
    }

    /// Makes `needed` bytes stand at `begin_`, zeros where the file has ended. False if the file
    /// cannot be read.
    bool Holds(std::size_t needed) { return end_ - begin_ >= needed || Fill(needed); }
    bool Fill(std::size_t needed);

    LayoutBytes& file_;
    std::vector<std::uint8_t> buffer_;
    std::uint64_t bufferOffset_ = 0;  ///< of its first byte in the file
    std::size_t begin_ = 0;           ///< first byte not yet handed out
    std::size_t end_ = 0;             ///< end of the bytes read
};

}  // namespace zelmo
