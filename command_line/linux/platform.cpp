#include "command_line/platform.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

namespace zelmo {

std::vector<std::string> ProgramArguments(int argc, char** argv) {
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void PrepareStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // The next file to be opened would get the number of a closed stream, and with it what is
    // written there. Opened the wrong way round, the number is taken and its use still fails.
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            [[maybe_unused]] const int taken =
                open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
        }
    }
}

int TerminalColumns() {
    if (isatty(STDERR_FILENO) == 0) {
        return 0;
    }
    winsize size{};
    constexpr int usualColumns = 80;
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col
                                                                           : usualColumns;
}

bool CanNameFile(std::wstring_view name) {
    return name.find(L'/') == std::wstring_view::npos &&
           name.find(L'\0') == std::wstring_view::npos;
}

FilePointer CreateNewFile(const std::filesystem::path& path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return FilePointer(descriptor < 0 ? nullptr : fdopen(descriptor, "wb"));
}

std::error_code RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
    // A second name and the end of the first: unlike a plain rename this replaces nothing.
    if (link(from.c_str(), to.c_str()) == 0) {
        unlink(from.c_str());
        return {};
    }
    const std::error_code reason(errno, std::generic_category());
    const bool noSecondNames = reason == std::errc::operation_not_permitted ||
                               reason == std::errc::operation_not_supported ||
                               reason == std::errc::function_not_supported;
    std::error_code error = reason;
    if (noSecondNames && !std::filesystem::exists(to, error)) {
        std::filesystem::rename(from, to, error);
        return error;
    }
    return noSecondNames ? std::make_error_code(std::errc::file_exists) : reason;
}

}  // namespace zelmo
