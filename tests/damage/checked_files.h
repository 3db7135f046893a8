#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace zelmo {

/// How the check of a layout and a process file ended, and what it took.
struct CheckOutcome {
    int status = -1;
    std::string errors;         ///< what came to standard error
    double seconds = 0.0;       ///< of the processor
    std::size_t peakBytes = 0;  ///< the most memory that was held at a time
};

/// `zelmo-batch --quiet --check` with these files, within this program. The assets lie in the
/// current directory.
CheckOutcome CheckFiles(const std::filesystem::path& layout, const std::filesystem::path& process);

}  // namespace zelmo
