#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "shell/file.h"

namespace zelmo {

/// One record of a stream file. Its numbers stand most significant byte first; what lies behind
/// the end of the data reads as zero.
struct StreamRecord {
    std::uint16_t code = 0;              ///< record type in the high byte, data type in the low one
    std::span<const std::uint8_t> data;  ///< valid until the next record is read

    std::uint16_t U16At(std::size_t offset) const;
    std::uint32_t U32At(std::size_t offset) const;
    std::int32_t I32At(std::size_t offset) const;
    double RealAt(std::size_t offset) const;
    std::string Text() const;
};

/// What became of the attempt to read a record.
enum class RecordStatus { Read, EndOfFile, BadLength, Unreadable };

/// Walks over the records of a file. Records are handed out as they lie in a large buffer.
class StreamRecords {
public:
    /// A file that cannot be opened shows as an unreadable first record.
    explicit StreamRecords(const std::filesystem::path& path);

    /// Reads the next record. Fewer than four bytes are the end of the file; a record whose data
    /// the file cuts short is filled up with zeros.
    RecordStatus Next(StreamRecord& record);

private:
    bool Fill(std::size_t needed);

    FilePointer file_;
    std::vector<std::uint8_t> buffer_;
    std::size_t begin_ = 0;  ///< first byte not yet handed out
    std::size_t end_ = 0;    ///< end of the bytes read
};

}  // namespace zelmo
