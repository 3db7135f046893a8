#include "command_line/standard_streams.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace zelmo {

namespace {

/// The text with every run of control characters, line ends among them, as one blank.
std::string OnOneLine(std::string_view text) {
    std::string line;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        const bool control = byte < 0x20 || byte == 0x7F;
        if (!control) {
            line.push_back(character);
        } else if (!line.empty() && line.back() != ' ') {
            line.push_back(' ');
        }
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

}  // namespace

bool WriteToOutput(std::string_view text, std::string& failure) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
        std::fflush(stdout) == 0) {
        return true;
    }
    failure = "standard output cannot be written: " +
              (errno != 0 ? std::generic_category().message(errno) : std::string("it is closed"));
    return false;
}

void WriteToError(std::string_view line) {
    const std::string written = OnOneLine(line) + '\n';
    std::fwrite(written.data(), 1, written.size(), stderr);
    std::fflush(stderr);
}

void WriteErrorLine(std::string_view program, std::string_view message) {
    WriteToError(fmt::format("{}: {}", program, message));
}

}  // namespace zelmo
