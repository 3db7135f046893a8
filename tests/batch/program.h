#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace zelmo {

/// How a program is started. Everything else is the test's own.
struct Launch {
    std::filesystem::path workingFolder = ".";
    std::vector<std::pair<std::string, std::string>> environment{};  ///< on top of the test's own
    /// Where its output goes; empty: to where the test can read it.
    std::filesystem::path standardOutput{};
    std::filesystem::path standardError{};
};

/// How it ended. A death by a signal gives a status of 128 or more.
struct Ended {
    int status = -1;
    std::string output;  ///< with LF line ends on every platform
    std::string errors;
};

/// Runs a program with these arguments (UTF-8) to its end.
Ended RunToEnd(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const Launch& launch = {});

/// Starts a program with its output in two files, and waits for its exit status.
int StartAndWait(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const Launch& launch);

}  // namespace zelmo
