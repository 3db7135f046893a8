#include "base/file.h"

#include <string>

namespace zelmo {

FilePointer OpenFile(const std::filesystem::path& path, const char* mode) {
    const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
    return FilePointer(_wfopen(path.c_str(), wideMode.c_str()));
}

}  // namespace zelmo
