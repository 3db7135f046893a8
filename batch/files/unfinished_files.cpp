#include "batch/files/unfinished_files.h"

#include <fmt/format.h>

#include <utility>

namespace zelmo {

UnfinishedFiles::Writing::Writing(UnfinishedFiles& files) : files_(files) {
    const std::lock_guard lock(files_.mutex_);
    ++files_.count_;
}

UnfinishedFiles::Writing::~Writing() {
    {
        const std::lock_guard lock(files_.mutex_);
        --files_.count_;
    }
    files_.finished_.notify_all();
}

void UnfinishedFiles::AddPicture(std::string name) {
    const std::lock_guard lock(mutex_);
    ++pictures_;
    lastPicture_ = std::move(name);
}

std::string UnfinishedFiles::WholePictures() const {
    return pictures_ == 1
               ? fmt::format("1 picture is whole, {}", lastPicture_)
               : fmt::format("{} pictures are whole, the last is {}", pictures_, lastPicture_);
}

std::unique_lock<std::mutex> UnfinishedFiles::WaitForNone() {
    std::unique_lock lock(mutex_);
    finished_.wait(lock, [this] { return count_ == 0; });
    return lock;
}

}  // namespace zelmo
