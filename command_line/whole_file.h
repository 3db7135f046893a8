#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/file.h"

// Files that stand under their names only when they are complete.

namespace zelmo {

/// A new file under a name that nobody else uses; deleted at the end unless it was given another.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& folder);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool Made() const { return made_; }
    /// Why it could not be made.
    std::string WhyNotMade() const;
    std::FILE* Stream() { return file_.get(); }
    /// False, with the reason in errno, if something did not reach the disk.
    bool Close() { return CloseWritten(std::move(file_)); }
    /// Ends the file's time as a temporary one. Never replaces a file: fails with file_exists.
    std::error_code MoveToNew(const std::filesystem::path& target);
    /// The same in place of an older file.
    std::error_code MoveTo(const std::filesystem::path& target);

private:
    std::filesystem::path path_;
    FilePointer file_;
    bool made_ = false;
    int error_ = 0;
};

/// Why a file with this name could not be written, a line that names it; empty if it could.
std::string WhyNotWritable(const std::filesystem::path& path);

/// Writes a file in place of an older one, which stays as it is until the new one is complete.
/// `write` returns the reason if it cannot go on. Returns a line that names the file and the reason
/// if it was not written, else an empty text.
std::string WriteWholeFile(const std::filesystem::path& path,
                           const std::function<std::string(std::FILE*)>& write);

/// The same for a file that is not there yet: never replaces one.
std::string WriteNewFile(const std::filesystem::path& path,
                         const std::function<std::string(std::FILE*)>& write);

/// WriteWholeFile with this content.
std::string WriteWholeFile(const std::filesystem::path& path, std::string_view content);

}  // namespace zelmo
