#include "base/file_digest.h"

#include <cstdint>
#include <cstdio>
#include <span>
#include <vector>

#include "base/file.h"
#include "base/sha256.h"

namespace zelmo {

std::optional<std::string> FileDigest(const std::filesystem::path& path) {
    const FilePointer file = OpenFile(path, "rb");
    if (file == nullptr) {
        return std::nullopt;
    }
    Sha256 hash;
    std::vector<std::uint8_t> bytes(std::size_t{1} << 16);
    while (const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), file.get())) {
        hash.Add(std::span(bytes).first(count));
    }
    return std::ferror(file.get()) == 0 ? std::optional(hash.Digest()) : std::nullopt;
}

}  // namespace zelmo
