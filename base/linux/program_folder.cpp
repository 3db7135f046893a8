#include <system_error>

#include "base/data_files.h"

namespace zelmo {

std::filesystem::path ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

}  // namespace zelmo
