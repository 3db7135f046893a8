#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "base/file.h"
#include "pictures/picture_files.h"

namespace zelmo {

namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::size_t infoHeaderSize = 40;
constexpr std::size_t headerSize = fileHeaderSize + infoHeaderSize;

using BitmapHeader = std::array<std::uint8_t, headerSize>;

void StoreU16(BitmapHeader& header, std::size_t offset, std::uint32_t value) {
    header[offset] = static_cast<std::uint8_t>(value & 0xFFu);
    header[offset + 1] = static_cast<std::uint8_t>((value >> 8) & 0xFFu);
}

void StoreU32(BitmapHeader& header, std::size_t offset, std::uint32_t value) {
    StoreU16(header, offset, value & 0xFFFFu);
    StoreU16(header, offset + 2, value >> 16);
}

/// Both headers; what is not set here is zero in the format.
BitmapHeader MakeBitmapHeader(std::int32_t width, std::int32_t height) {
    const auto columns = static_cast<std::uint32_t>(width);
    const auto rows = static_cast<std::uint32_t>(height);
    BitmapHeader header{};
    header[0] = 'B';
    header[1] = 'M';
    StoreU32(header, 2, columns * rows * 4u + 54u);  // the size of the file
    StoreU32(header, 10, headerSize);                // where the pixels begin
    StoreU32(header, 14, infoHeaderSize);
    StoreU32(header, 18, columns);
    StoreU32(header, 22, rows);  // positive: the bottom row comes first
    StoreU16(header, 26, 1);     // planes
    StoreU16(header, 28, 32);    // bits per pixel
    return header;
}

bool IsEmpty(const StepImage& image) {
    return image.width < 1 || image.height < 1;
}

/// Writes the bytes of the file. False if a write failed.
bool WriteBytes(const StepImage& image, std::FILE* file) {
    const BitmapHeader header = MakeBitmapHeader(image.width, image.height);
    bool written = std::fwrite(header.data(), fileHeaderSize, 1, file) == 1;
    written &= std::fwrite(header.data() + fileHeaderSize, infoHeaderSize, 1, file) == 1;
    const auto width = static_cast<std::size_t>(image.width);
    for (std::size_t row = 0; row < static_cast<std::size_t>(image.height); ++row) {
        const std::uint8_t* pixels = image.pixels.data() + row * width * bytesPerPixel;
        written &= std::fwrite(pixels, bytesPerPixel, width, file) == width;
    }
    return written;
}

}  // namespace

bool WriteBitmap(const StepImage& image, std::FILE* file, std::string& reason) {
    if (IsEmpty(image)) {
        reason = "the picture is empty";
        return false;
    }
    errno = 0;
    const bool written = WriteBytes(image, file);
    if (!written) {
        reason = std::generic_category().message(errno);
    }
    return written;
}

bool WriteBitmap(const StepImage& image, const std::filesystem::path& path) {
    if (IsEmpty(image)) {
        return false;
    }
    const FilePointer file = OpenFile(path, "wb");
    if (!file) {
        return false;
    }
    WriteBytes(image, file.get());
    return true;
}

}  // namespace zelmo
