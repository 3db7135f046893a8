#include <windows.h>

#include <string>

#include "base/data_files.h"

namespace zelmo {

std::filesystem::path ProgramFolder() {
    std::wstring path(32768, L'\0');
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    path.resize(length);
    return std::filesystem::path(path).parent_path();
}

}  // namespace zelmo
