#include "tests/support/temp_folder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

namespace zelmo {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        path_ = fs::temp_directory_path() / ("zelmo-test-" + std::to_string(random()));
        if (fs::create_directory(path_)) {
            return;
        }
    }
    throw std::runtime_error("no temporary folder could be made");
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

fs::path TempFolder::Write(std::string_view name, std::string_view bytes) const {
    const fs::path file = path_ / fs::path(std::string(name));
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
    return file;
}

fs::path TempFolder::Write(std::string_view name, const std::vector<std::uint8_t>& bytes) const {
    return Write(name, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

std::string FileBytes(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace zelmo
