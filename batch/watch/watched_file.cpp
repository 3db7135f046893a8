#include "batch/watch/watched_file.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/file.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;

/// File systems note the time of a save no finer than this.
constexpr std::chrono::seconds coarsestClock(2);
/// Content of up to so many bytes may be read again and again.
constexpr std::uintmax_t smallFile = std::uintmax_t{4} << 20;

std::size_t HashOf(const fs::path& path) {
    const FilePointer file = OpenFile(path, "rb");
    std::size_t hash = 0;
    std::string block(std::size_t{1} << 20, '\0');
    while (file) {
        const std::size_t count = std::fread(block.data(), 1, block.size(), file.get());
        if (count == 0) {
            break;
        }
        hash = hash * 31 + std::hash<std::string_view>()(std::string_view(block.data(), count));
    }
    return hash;
}

}  // namespace

WatchedFile::Stamp WatchedFile::ReadStamp() const {
    std::error_code error;
    Stamp stamp;
    stamp.size = fs::file_size(path_, error);
    if (!error) {
        stamp.time = fs::last_write_time(path_, error);
    }
    stamp.exists = !error;
    return stamp.exists ? stamp : Stamp{};
}

bool WatchedFile::Look() {
    const Stamp stamp = ReadStamp();
    const bool isYoung =
        stamp.exists && fs::file_time_type::clock::now() - stamp.time < coarsestClock;
    const auto hash = isYoung || hash_ ? std::optional(HashOf(path_)) : std::nullopt;
    const bool isAnother = stamp != stamp_ || (hash_ && hash_ != hash);
    stamp_ = stamp;
    hash_ = isYoung ? hash : std::nullopt;
    return isAnother;
}

bool WatchedFile::Changed() {
    if (ReadStamp() != stamp_) {
        return true;
    }
    if (!hash_) {
        return false;
    }
    const bool isOld = fs::file_time_type::clock::now() - stamp_.time >= coarsestClock;
    if (stamp_.size > smallFile && !isOld) {
        return false;  // to be read once, when its time is over
    }
    if (*hash_ != HashOf(path_)) {
        return true;
    }
    if (isOld) {
        hash_.reset();  // a save has a later time from now on
    }
    return false;
}

}  // namespace zelmo
