#include "batch/files/picture_folder.h"

#include <fmt/format.h>

#include <cstdio>
#include <functional>
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

/// Where a file of the folder lies, as users read it.
std::wstring PathInFolder(const PictureFolder& folder, std::wstring_view name) {
    return PathText(folder.path / "") + std::wstring(name);
}

std::string NotSaved(const PictureFolder& folder, std::wstring_view name,
                     const std::string& reason) {
    return fmt::format("Error while saving image {} to output folder \"{}\": {}",
                       Utf8FromWide(PathInFolder(folder, name)), TextOf(folder.path), reason);
}

/// Saves a file that `write` fills and closes; it returns the reason if it cannot.
std::string Save(const PictureFolder& folder, std::wstring_view name,
                 const std::function<std::string(TemporaryFile&)>& write) {
    TemporaryFile file(folder.path);
    if (!file.Made()) {
        return NotSaved(folder, name, file.WhyNotMade());
    }
    if (const std::string reason = write(file); !reason.empty()) {
        return NotSaved(folder, name, reason);
    }
    const fs::path path = PathFromText(PathInFolder(folder, name));
    const std::error_code error = folder.overwrite ? file.MoveTo(path) : file.MoveToNew(path);
    return error ? NotSaved(folder, name, error.message()) : std::string();
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
        if (!folder.overwrite && CanNameFile(name) &&
            fs::exists(folder.path / PathFromText(name), ignored)) {
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
    if (image.width < 1 || image.height < 1) {
        return NotSaved(folder, name, "the picture is empty");
    }
    if (!CanNameFile(name)) {
        return NotSaved(folder, name, "its name has a character that no file name can hold");
    }
    return Save(folder, name,
                [&](TemporaryFile& file) { return WriteImage(image, folder.format, file); });
}

std::string SaveInFolder(const PictureFolder& folder, std::wstring_view name,
                         std::string_view content) {
    return Save(folder, name, [&](TemporaryFile& file) {
        const bool written =
            std::fwrite(content.data(), 1, content.size(), file.Stream()) == content.size();
        return written && file.Close() ? std::string() : SystemReason();
    });
}

}  // namespace zelmo
