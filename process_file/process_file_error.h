#pragma once

#include <cstdint>
#include <string>

namespace zelmo {

/// What is wrong with a line of a process file, in the file's bytes.
struct ProcessFileError {
    std::int32_t line = 0;  ///< counted from 1; 0: the file as a whole
    std::string text;
};

}  // namespace zelmo
