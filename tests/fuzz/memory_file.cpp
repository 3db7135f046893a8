#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "tests/fuzz/target.h"

namespace zelmo {

MemoryFile::MemoryFile(std::string_view bytes) : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
    Require(descriptor_ >= 0, "files can be made in memory");
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
        Require(written > 0, "a file in memory takes its bytes");
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

MemoryFile::~MemoryFile() {
    close(descriptor_);
}

std::filesystem::path MemoryFile::Path() const {
    return "/proc/self/fd/" + std::to_string(descriptor_);
}

}  // namespace zelmo
