#include "batch/files/output_folder.h"

#include <system_error>

#include "batch/options.h"
#include "pictures/picture_names.h"

namespace zelmo {

namespace fs = std::filesystem;

fs::path OutputFolder(const BatchOptions& options) {
    if (options.output) {
        return *options.output;
    }
    // The name is cut at the last dot of the whole path: dots that only lead the way to the file
    // would mislead it.
    std::error_code error;
    const fs::path process = fs::absolute(options.process, error).lexically_normal();
    return MakeOutputFolderName(error ? options.process : process);
}

}  // namespace zelmo
