#include "batch/picture_folder.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdint>
#include <random>
#include <system_error>
#include <utility>

#include "base/file.h"
#include "base/text.h"
#include "batch/platform.h"
#include "pictures/picture_names.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;

std::string Text(const fs::path& path) {
    return Utf8FromWide(PathText(path));
}

std::string ErrnoText() {
    return std::generic_category().message(errno);
}

std::wstring FileName(const PictureFolder& folder, std::size_t ordinal, std::wstring_view image) {
    return SavedImageName(ordinal, image, folder.format.extension);
}

/// A new file under a name that nobody else uses; deleted at the end unless it was given another.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& folder) {
        std::random_device random;
        constexpr int attempts = 10;
        for (int attempt = 0; attempt < attempts && !file_; ++attempt) {
            path_ = folder / fmt::format(".zelmo-{:08x}.tmp", random());
            file_ = CreateNewFile(path_);
            error_ = errno;
            if (!file_ && error_ != EEXIST) {
                return;
            }
        }
        made_ = file_ != nullptr;
    }
    ~TemporaryFile() {
        file_.reset();
        std::error_code ignored;
        if (made_) {
            fs::remove(path_, ignored);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool Made() const { return made_; }
    /// Why it could not be made.
    std::string WhyNotMade() const { return std::generic_category().message(error_); }
    std::FILE* Stream() { return file_.get(); }
    /// False, with the reason in errno, if something did not reach the disk.
    bool Close() { return CloseWritten(std::move(file_)); }
    /// Ends the file's time as a temporary one.
    std::error_code MoveTo(const fs::path& target) {
        const std::error_code error = RenameToNew(path_, target);
        made_ = made_ && error;
        return error;
    }

private:
    fs::path path_;
    FilePointer file_;
    bool made_ = false;
    int error_ = 0;
};

/// Writes and closes the file; the reason if that fails.
std::string WriteImage(const StepImage& image, const PictureFormat& format, TemporaryFile& file) {
    std::string reason;
    if (!format.write(image, file.Stream(), reason)) {
        return reason;
    }
    return file.Close() ? std::string() : ErrnoText();
}

std::string UnusableFolder(const fs::path& folder, const std::string& reason) {
    return fmt::format("the output folder {} cannot be used: {}", Text(folder), reason);
}

}  // namespace

std::string PreparePictureFolder(const PictureFolder& folder,
                                 const std::vector<std::wstring>& imageNames) {
    std::error_code error;
    fs::create_directories(folder.path, error);
    std::error_code ignored;
    if (!fs::is_directory(folder.path, ignored)) {
        return UnusableFolder(folder.path, error ? error.message() : "a file has its name");
    }
    for (std::size_t i = 0; i < imageNames.size(); ++i) {
        const std::wstring name = FileName(folder, i + 1, imageNames[i]);
        if (CanNameFile(name) && fs::exists(folder.path / PathFromText(name), ignored)) {
            return fmt::format("the picture {} exists already and is kept; nothing was run",
                               Text(folder.path / PathFromText(name)));
        }
    }
    if (const TemporaryFile probe(folder.path); !probe.Made()) {
        return UnusableFolder(folder.path, probe.WhyNotMade());
    }
    return {};
}

std::string SavePicture(const PictureFolder& folder, std::size_t ordinal, const StepImage& image) {
    const std::wstring name = FileName(folder, ordinal, image.name);
    const std::wstring target = PathText(folder.path / "") + name;
    const auto failed = [&](const std::string& reason) {
        return fmt::format("Error while saving image {} to output folder \"{}\": {}",
                           Utf8FromWide(target), Text(folder.path), reason);
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
    const std::error_code error = file.MoveTo(PathFromText(target));
    return error ? failed(error.message()) : std::string();
}

}  // namespace zelmo
