#include "pictures/picture_names.h"

#include <fmt/xchar.h>

#include "base/local_time.h"
#include "base/text.h"

namespace zelmo {

std::filesystem::path MakeOutputFolderName(const std::filesystem::path& processFileName) {
    return MakeOutputFolderName(processFileName, LocalTime());
}

std::filesystem::path MakeOutputFolderName(const std::filesystem::path& processFileName,
                                           const std::tm& time) {
    const std::wstring path = PathText(processFileName);
    return PathFromText(fmt::format(L"{} {:04d}-{:02d}-{:02d} {:02d}-{:02d}-{:02d}",
                                    path.substr(0, path.rfind(L'.')), time.tm_year + 1900,
                                    time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min,
                                    time.tm_sec));
}

std::wstring SavedImageName(std::size_t ordinal, std::wstring_view imageName,
                            std::wstring_view extension) {
    return fmt::format(L"{:03d} {}.{}", ordinal, imageName, extension);
}

}  // namespace zelmo
