#include "batch/listeners/overviews.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "batch/options.h"
#include "command_line/reasons.h"
#include "pictures/contact_sheet.h"
#include "pictures/picture_files.h"
#include "pictures/smaller_image.h"
#include "pictures/webp_film.h"

namespace zelmo {

namespace {

constexpr std::int32_t widestOnSheet = 480;
constexpr std::int32_t highestOnSheet = 4800;  // of a stack like a tower
constexpr std::int32_t captionHeight = 30;

struct Size {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// Of the widest and of the highest picture.
Size LargestOf(std::span<const KeptPicture> pictures) {
    Size size;
    for (const KeptPicture& picture : pictures) {
        size = {std::max(size.width, picture.width), std::max(size.height, picture.height)};
    }
    return size;
}

/// How wide a picture stands on a sheet.
std::int32_t SheetPictureWidth(const StepImage& image) {
    const std::int64_t width = std::int64_t{highestOnSheet} * image.width / image.height;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(width, 1, widestOnSheet));
}

/// "008 oxide deposition", by the bytes of the process file.
std::string CaptionOf(const StepImage& image) {
    std::string text;
    for (const wchar_t character : image.name) {
        text.push_back(static_cast<char>(static_cast<unsigned>(character) & 0xFFU));
    }
    return text;
}

std::string WriteSheet(std::span<const KeptPicture> pictures, std::optional<std::int32_t> columns,
                       std::FILE* file) {
    const Size size = LargestOf(pictures);
    const StepImage sheet =
        ContactSheet(pictures.size(), size.width, size.height,
                     columns.value_or(SheetColumns(pictures.size(), size.width, size.height)),
                     [&](std::size_t i) { return pictures[i].Image(); });
    std::string reason;
    WritePng(sheet, file, reason);
    return reason;
}

std::string WriteFilm(std::span<const KeptPicture> pictures, const FilmTiming& timing,
                      std::FILE* file) {
    const Size size = LargestOf(pictures);
    const std::vector<std::uint8_t> bytes = WebpFilm(
        size.width, size.height, pictures.size(),
        [&](std::size_t i) { return pictures[i].Image(); }, timing);
    if (bytes.empty()) {
        return fmt::format("a film holds pictures of up to {0} by {0} pixels, one at least",
                           widestFilm);
    }
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() ? "" : SystemReason();
}

}  // namespace

Overview MakeSheet(const BatchOptions& options, CaptionArtist artist) {
    const auto prepare = [artist = std::move(artist)](const StepImage& image) {
        const StepImage picture = SmallerImage(image, SheetPictureWidth(image));
        return StackImages(picture, artist(CaptionOf(image), picture.width, captionHeight));
    };
    const auto write = [columns = options.overview.sheetColumns](
                           std::span<const KeptPicture> pictures, std::FILE* file) {
        return WriteSheet(pictures, columns, file);
    };
    return {"sheet", options.overview.sheet.value(), prepare, write};
}

Overview MakeFilm(const BatchOptions& options) {
    const auto write = [timing = options.overview.timing](std::span<const KeptPicture> pictures,
                                                          std::FILE* file) {
        return WriteFilm(pictures, timing, file);
    };
    return {"film", options.overview.film.value(), [](const StepImage& image) { return image; },
            write};
}

}  // namespace zelmo
