#pragma once

#include <string>

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

/// How a part of a run came out. Where it failed and the run cannot go on, `message` is one line
/// that names the file and the reason, in UTF-8.
struct Outcome {
    ExitStatus status = ExitStatus::Success;
    std::string message;

    bool Failed() const { return status != ExitStatus::Success; }
};

}  // namespace zelmo
