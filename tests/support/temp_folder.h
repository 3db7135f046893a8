#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zelmo {

/// A fresh folder for one test, deleted with everything in it at the end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    /// Writes a file of these bytes and returns its path.
    std::filesystem::path Write(std::string_view name, std::string_view bytes) const;
    std::filesystem::path Write(std::string_view name,
                                const std::vector<std::uint8_t>& bytes) const;

private:
    std::filesystem::path path_;
};

/// What is in a file; nothing if it cannot be opened.
std::string FileBytes(const std::filesystem::path& path);

}  // namespace zelmo
