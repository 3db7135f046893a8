#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelmo {

/// How the program ends. Scripts rely on these numbers.
enum class ExitStatus {
    Success = 0,
    Usage = 1,    ///< the command line is wrong
    Layout = 2,   ///< the layout did not load
    Process = 3,  ///< the process file was refused, or the run could not be prepared
    Picture = 4,  ///< a picture could not be made or written
    Other = 5,
};

/// What is to be mended in a file, in UTF-8.
struct FileFault {
    std::string file;       ///< as the user named it
    std::int32_t line = 0;  ///< counted from 1; 0: the file as a whole
    std::string text;
};

/// How a part of a run came out. Where it failed and the run cannot go on, `message` is one line
/// that names the file and the reason, in UTF-8.
struct Outcome {
    ExitStatus status = ExitStatus::Success;
    std::string message;
    std::vector<FileFault> faults{};  ///< the same by itself and in full, where files are to blame

    bool Failed() const { return status != ExitStatus::Success; }
};

}  // namespace zelmo
