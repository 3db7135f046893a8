#include "batch/picture_folder.h"

#include <fmt/format.h>

#include <cstdint>
#include <system_error>
#include <utility>

#include "base/text.h"
#include "command_line/platform.h"
#include "command_line/reasons.h"
#include "command_line/whole_file.h"
#include "pictures/picture_names.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;

/// Writes and closes the file; the reason if that fails.
std::string WriteImage(const StepImage& image, const PictureFormat& format, TemporaryFile& file) {
    std::string reason;
    if (!format.write(image, file.Stream(), reason)) {
        return reason;
    }
    return file.Close() ? std::string() : SystemReason();
}

std::string UnusableFolder(const fs::path& folder, const std::string& reason) {
    return fmt::format("the output folder {} cannot be used: {}", TextOf(folder), reason);
}

}  // namespace

std::wstring PictureFileName(const PictureFolder& folder, std::size_t ordinal,
                             std::wstring_view imageName) {
    return SavedImageName(ordinal, imageName, folder.format.extension);
}

std::string PreparePictureFolder(const PictureFolder& folder,
                                 const std::vector<std::wstring>& fileNames) {
    std::error_code error;
    fs::create_directories(folder.path, error);
    std::error_code ignored;
    if (!fs::is_directory(folder.path, ignored)) {
        return UnusableFolder(folder.path, error ? error.message() : "a file has its name");
    }
    for (const std::wstring& name : fileNames) {
        if (CanNameFile(name) && fs::exists(folder.path / PathFromText(name), ignored)) {
            return fmt::format("the picture {} exists already and is kept; nothing was run",
                               TextOf(folder.path / PathFromText(name)));
        }
    }
    if (const TemporaryFile probe(folder.path); !probe.Made()) {
        return UnusableFolder(folder.path, probe.WhyNotMade());
    }
    return {};
}

std::string SavePicture(const PictureFolder& folder, std::size_t ordinal, const StepImage& image) {
    const std::wstring name = PictureFileName(folder, ordinal, image.name);
    const std::wstring target = PathText(folder.path / "") + name;
    const auto failed = [&](const std::string& reason) {
        return fmt::format("Error while saving image {} to output folder \"{}\": {}",
                           Utf8FromWide(target), TextOf(folder.path), reason);
    };
    if (image.width < 1 || image.height < 1) {
        return failed("the picture is empty");
    }
    if (!CanNameFile(name)) {
        return failed("its name has a character that no file name can hold");
    }
    TemporaryFile file(folder.path);
    if (!file.Made()) {
        return failed(file.WhyNotMade());
    }
    if (const std::string reason = WriteImage(image, folder.format, file); !reason.empty()) {
        return failed(reason);
    }
    const std::error_code error = file.MoveToNew(PathFromText(target));
    return error ? failed(error.message()) : std::string();
}

}  // namespace zelmo
