#include "gds/layout_bytes.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "gds/gzip_bytes.h"

namespace zelmo {

LayoutBytes::LayoutBytes(const std::filesystem::path& path, std::uint64_t unpackedLimit)
    : file_(OpenFile(path, "rb")) {
    if (!file_) {
        return;
    }
    headEnd_ = std::fread(head_.data(), 1, head_.size(), file_.get());
    if (headEnd_ == head_.size() && head_ == gzipMark) {
        unpacker_ = std::make_unique<GzipBytes>(std::move(file_), unpackedLimit);
    }
}

LayoutBytes::~LayoutBytes() = default;

std::size_t LayoutBytes::Read(std::uint8_t* bytes, std::size_t count) {
    const std::size_t read = ReadNext(bytes, count);
    count_ += read;
    return read;
}

std::size_t LayoutBytes::ReadNext(std::uint8_t* bytes, std::size_t count) {
    if (unpacker_) {
        return unpacker_->Read(bytes, count);
    }
    if (!file_) {
        return 0;
    }
    const std::size_t fromHead = std::min(count, headEnd_ - headBegin_);
    std::copy_n(head_.data() + headBegin_, fromHead, bytes);
    headBegin_ += fromHead;
    return fromHead + std::fread(bytes + fromHead, 1, count - fromHead, file_.get());
}

void LayoutBytes::PassRest() {
    if (unpacker_) {
        std::vector<std::uint8_t> passed(std::size_t{1} << 16);
        while (unpacker_->Read(passed.data(), passed.size()) == passed.size()) {
        }
    }
}

bool LayoutBytes::Failed() const {
    return unpacker_ ? unpacker_->Unreadable() || unpacker_->Fault()
                     : !file_ || std::ferror(file_.get()) != 0;
}

std::optional<UnpackingError> LayoutBytes::WhyNotUnpacked() const {
    if (!unpacker_ || !unpacker_->Fault()) {
        return std::nullopt;
    }
    return UnpackingError{*unpacker_->Fault(), unpacker_->FaultOffset()};
}

}  // namespace zelmo
