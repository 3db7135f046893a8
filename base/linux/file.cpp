#include "base/file.h"

#include <sys/stat.h>

#include <cerrno>

namespace zelmo {

FilePointer OpenFile(const std::filesystem::path& path, const char* mode) {
    FilePointer file(std::fopen(path.c_str(), mode));
    struct stat status {};
    if (file && fstat(fileno(file.get()), &status) == 0 && S_ISDIR(status.st_mode)) {
        file.reset();
        errno = EISDIR;
    }
    return file;
}

}  // namespace zelmo
