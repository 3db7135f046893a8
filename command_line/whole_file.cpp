#include "command_line/whole_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <random>

#include "command_line/platform.h"
#include "command_line/reasons.h"

namespace zelmo {

namespace fs = std::filesystem;

TemporaryFile::TemporaryFile(const fs::path& folder) {
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

TemporaryFile::~TemporaryFile() {
    file_.reset();
    std::error_code ignored;
    if (made_) {
        fs::remove(path_, ignored);
    }
}

std::string TemporaryFile::WhyNotMade() const {
    return std::generic_category().message(error_);
}

std::error_code TemporaryFile::MoveToNew(const fs::path& target) {
    const std::error_code error = RenameToNew(path_, target);
    made_ = made_ && error;
    return error;
}

std::error_code TemporaryFile::MoveTo(const fs::path& target) {
    std::error_code error;
    fs::rename(path_, target, error);
    made_ = made_ && error;
    return error;
}

namespace {

std::string NotWritten(const fs::path& path, const std::string& reason) {
    return fmt::format("the file {} could not be written: {}", TextOf(path), reason);
}

/// Writes a file under another name and then moves it to its own with `move`.
std::string WriteAndMove(const fs::path& path, const std::function<std::string(std::FILE*)>& write,
                         std::error_code (TemporaryFile::*move)(const fs::path&)) {
    const auto failed = [&](const std::string& reason) { return NotWritten(path, reason); };
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        return failed("it is a folder");
    }
    TemporaryFile file(path.parent_path());
    if (!file.Made()) {
        return failed(file.WhyNotMade());
    }
    if (const std::string reason = write(file.Stream()); !reason.empty()) {
        return failed(reason);
    }
    if (!file.Close()) {
        return failed(SystemReason());
    }
    const std::error_code error = (file.*move)(path);
    return error ? failed(error.message()) : std::string();
}

}  // namespace

std::string WhyNotWritable(const fs::path& path) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        return NotWritten(path, "it is a folder");
    }
    const TemporaryFile probe(path.parent_path());
    return probe.Made() ? std::string() : NotWritten(path, probe.WhyNotMade());
}

std::string WriteWholeFile(const fs::path& path,
                           const std::function<std::string(std::FILE*)>& write) {
    return WriteAndMove(path, write, &TemporaryFile::MoveTo);
}

std::string WriteNewFile(const fs::path& path,
                         const std::function<std::string(std::FILE*)>& write) {
    return WriteAndMove(path, write, &TemporaryFile::MoveToNew);
}

std::string WriteWholeFile(const fs::path& path, std::string_view content) {
    return WriteWholeFile(path, [&](std::FILE* file) {
        const bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size();
        return written ? std::string() : SystemReason();
    });
}

}  // namespace zelmo
