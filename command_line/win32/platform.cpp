#include "command_line/platform.h"

#include <windows.h>

#include <shellapi.h>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "base/text.h"

namespace zelmo {

std::vector<std::string> ProgramArguments(int, char**) {
    int count = 0;
    wchar_t** const texts = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; texts != nullptr && i < count; ++i) {
        arguments.push_back(Utf8FromWide(texts[i]));
    }
    LocalFree(texts);
    return arguments;
}

void PrepareStandardStreams() {
    // The console is the user's, and its code page outlives the program.
    static const UINT codePageBefore = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    std::atexit([] { SetConsoleOutputCP(codePageBefore); });
}

int TerminalColumns() {
    CONSOLE_SCREEN_BUFFER_INFO console{};
    const HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
    return GetConsoleScreenBufferInfo(handle, &console) != 0
               ? console.srWindow.Right - console.srWindow.Left + 1
               : 0;
}

bool CanNameFile(std::wstring_view name) {
    for (const wchar_t character : name) {
        if (character < L' ' ||
            std::wstring_view(L"<>:\"/\\|?*").find(character) != std::wstring_view::npos) {
            return false;
        }
    }
    return true;
}

FilePointer CreateNewFile(const std::filesystem::path& path) {
    const int descriptor =
        _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
    return FilePointer(descriptor < 0 ? nullptr : _fdopen(descriptor, "wb"));
}

std::error_code RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
    // Refuses to replace a file, unlike the standard library's rename.
    if (_wrename(from.c_str(), to.c_str()) == 0) {
        return {};
    }
    // EACCES is what an existing target gives here, too.
    std::error_code error;
    if (std::filesystem::exists(to, error)) {
        return std::make_error_code(std::errc::file_exists);
    }
    return {errno, std::generic_category()};
}

}  // namespace zelmo
