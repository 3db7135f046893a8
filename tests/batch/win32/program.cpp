#include "tests/batch/program.h"

#include <windows.h>

#include <stdexcept>

#include "base/text.h"

namespace zelmo {

namespace {

/// Closes a handle at the end.
class OwnedHandle {
public:
    explicit OwnedHandle(HANDLE handle) : handle_(handle) {}
    ~OwnedHandle() { CloseHandle(handle_); }
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    HANDLE Get() const { return handle_; }

private:
    HANDLE handle_;
};

HANDLE OpenForChild(const std::filesystem::path& file) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       &inherited, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// An argument as the start of a program splits it again: quotes and the backslashes before them
/// are escaped.
std::wstring Quote(const std::wstring& argument) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"') {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    return quoted.append(backslashes, L'\\') + L"\"";
}

std::wstring MakeCommandLine(const std::filesystem::path& program,
                             const std::vector<std::string>& arguments) {
    std::wstring line = Quote(program.native());
    for (const std::string& argument : arguments) {
        line += L" " + Quote(WideFromUtf8(argument));
    }
    return line;
}

}  // namespace

int StartAndWait(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const Launch& launch) {
    for (const auto& [name, value] : launch.environment) {
        SetEnvironmentVariableW(WideFromUtf8(name).c_str(), WideFromUtf8(value).c_str());
    }
    const OwnedHandle output(OpenForChild(launch.standardOutput));
    const OwnedHandle errors(OpenForChild(launch.standardError));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.Get();
    startup.hStdError = errors.Get();
    PROCESS_INFORMATION process{};
    const std::filesystem::path file = std::filesystem::absolute(program);
    std::wstring line = MakeCommandLine(file, arguments);
    const BOOL started = CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                                        nullptr, launch.workingFolder.c_str(), &startup, &process);
    for (const auto& [name, value] : launch.environment) {
        SetEnvironmentVariableW(WideFromUtf8(name).c_str(), nullptr);
    }
    if (started == 0) {
        throw std::runtime_error("the program cannot be started");
    }
    const OwnedHandle thread(process.hThread);
    const OwnedHandle child(process.hProcess);
    WaitForSingleObject(child.Get(), INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(child.Get(), &status);
    return static_cast<int>(status);
}

}  // namespace zelmo
