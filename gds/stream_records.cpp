#include "gds/stream_records.h"

#include <algorithm>

#include "gds/gds_reader.h"

namespace zelmo {

namespace {

constexpr std::size_t headerSize = 4;
constexpr std::size_t longestRecord = 65535;
constexpr std::size_t blockSize = std::size_t{1} << 17;

std::uint16_t ToU16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

}  // namespace

std::uint16_t StreamRecord::U16At(std::size_t offset) const {
    return offset + 2 <= data.size() ? ToU16(data.data() + offset)
           : offset < data.size()    ? static_cast<std::uint16_t>(data[offset] << 8)
                                     : std::uint16_t{0};
}

std::uint32_t StreamRecord::U32At(std::size_t offset) const {
    return static_cast<std::uint32_t>(U16At(offset)) << 16 | U16At(offset + 2);
}

std::int32_t StreamRecord::I32At(std::size_t offset) const {
    return static_cast<std::int32_t>(U32At(offset));
}

double StreamRecord::RealAt(std::size_t offset) const {
    std::uint8_t bytes[8] = {};
    for (std::size_t i = 0; i < sizeof bytes && offset + i < data.size(); ++i) {
        bytes[i] = data[offset + i];
    }
    return GdsReal8ToDouble(bytes);
}

std::string StreamRecord::Text() const {
    return std::string(data.begin(), data.end());
}

StreamRecords::StreamRecords(const std::filesystem::path& path)
    : file_(OpenFile(path, "rb")), buffer_(blockSize + longestRecord) {}

RecordStatus StreamRecords::Next(StreamRecord& record) {
    if (!Fill(headerSize)) {
        return RecordStatus::Unreadable;
    }
    if (end_ - begin_ < headerSize) {
        return RecordStatus::EndOfFile;
    }
    const std::size_t length = ToU16(buffer_.data() + begin_);
    if (length < headerSize) {
        return RecordStatus::BadLength;
    }
    if (!Fill(length)) {
        return RecordStatus::Unreadable;
    }
    const std::uint8_t* bytes = buffer_.data() + begin_;
    record.code = ToU16(bytes + 2);
    record.data = {bytes + headerSize, length - headerSize};
    begin_ = std::min(begin_ + length, end_);
    return RecordStatus::Read;
}

/// Makes `needed` bytes stand at `begin_`, zeros where the file has ended. False if the file cannot
/// be read.
bool StreamRecords::Fill(std::size_t needed) {
    if (end_ - begin_ >= needed) {
        return true;
    }
    if (!file_) {
        return false;
    }
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    end_ -= begin_;
    begin_ = 0;
    end_ += std::fread(buffer_.data() + end_, 1, blockSize, file_.get());
    if (end_ < needed) {
        std::fill(buffer_.begin() + static_cast<std::ptrdiff_t>(end_),
                  buffer_.begin() + static_cast<std::ptrdiff_t>(needed), std::uint8_t{0});
    }
    return std::ferror(file_.get()) == 0;
}

}  // namespace zelmo
