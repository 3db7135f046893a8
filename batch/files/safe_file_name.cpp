#include "batch/files/safe_file_name.h"

#include <string_view>

namespace zelmo {

std::wstring SafeFileName(std::wstring name) {
    constexpr std::wstring_view refused = L"/\\:*?\"<>|";
    for (wchar_t& character : name) {
        const bool isRefused = character < 0x20 || character == 0x7F ||
                               refused.find(character) != std::wstring_view::npos;
        character = isRefused ? L'_' : character;
    }
    return name;
}

}  // namespace zelmo
