#include "tests/desktop/win32/window_fixture.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>

#include "base/text.h"
#include "examples/gds_writer.h"

namespace zelmo {

namespace fs = std::filesystem;

namespace {

/// Under Wine every window that closes waits two seconds for a window manager's word, unless it is
/// told to do without one.
void DoWithoutWindowManager() {
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    if (GetProcAddress(system, "wine_get_version") == nullptr) {
        return;
    }
    const std::wstring key = std::wstring(L"Software\\Wine\\AppDefaults\\") +
                             fs::path(ZELMO_DESKTOP_FILE).wstring() + L"\\X11 Driver";
    RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"Managed", REG_SZ, L"N", 2 * sizeof(wchar_t));
}

}  // namespace

WindowTest::WindowTest() {
    DoWithoutWindowManager();
    for (const char* name :
         {ZELMO_DESKTOP_FILE, "colors.txt", "surface.shader", "point.shader", "zelmo.ico"}) {
        fs::copy_file(fs::current_path() / name, File(name));
    }
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 3000, 3000, 7000, 7000);
    writer.EndCell();
    writer.EndLibrary();
    writer.Save(Layout());
    WriteProcess("flow.txt",
                 "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
                 "deposition -name Nitride -type nitride -thickness 300 -color 50 100 200 100\n");
}

void WindowTest::Start() {
    program_ = std::make_unique<DesktopProgram>(folder_.Path());
    program_->WaitForWindow();
}

void WindowTest::StartWithLayout() {
    Start();
    program_->Load(Layout());
}

void WindowTest::WriteProcess(const std::string& name, const std::string& steps) const {
    folder_.Write(name,
                  "settings -version 4 -N 200 -angle 30\n"
                  "location -x 0 -y 0 -dx 10 -dy 10\n"
                  "gds -cell TOP\n" +
                      steps);
}

std::vector<std::uint8_t> WindowTest::Bytes(const fs::path& file) const {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<fs::path> WindowTest::FoldersBeside(const std::string& start) const {
    std::vector<fs::path> folders;
    for (const auto& entry : fs::directory_iterator(folder_.Path())) {
        if (entry.is_directory() && entry.path().filename().string().starts_with(start)) {
            folders.push_back(entry.path());
        }
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}

std::vector<std::wstring> MaskTimes(std::vector<std::wstring> lines) {
    static const std::wregex seconds(L"[0-9]+\\.[0-9]{3} (s|sec)$");
    for (std::wstring& line : lines) {
        line = std::regex_replace(line, seconds, L"# $1");
    }
    return lines;
}

std::vector<std::wstring> RunBatch(const fs::path& folder, const std::wstring& arguments) {
    const fs::path outputFile = folder / "batch output.txt";
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const HANDLE output = CreateFileW(outputFile.c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                      &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    const fs::path program = fs::current_path() / ZELMO_BATCH_FILE;
    std::wstring line = L"\"" + program.native() + L"\" " + arguments;
    const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                                        nullptr, folder.c_str(), &startup, &process);
    CloseHandle(output);
    if (!started) {
        throw std::runtime_error("zelmo-batch.exe cannot be started");
    }
    WaitFor("zelmo-batch.exe",
            [&] { return WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0; });
    DWORD code = 1;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    if (code != 0) {
        throw std::runtime_error("zelmo-batch.exe ends with " + std::to_string(code));
    }
    std::vector<std::wstring> lines;
    std::ifstream stream(outputFile);
    for (std::string text; std::getline(stream, text);) {
        lines.push_back(WideFromUtf8(text.substr(0, text.find('\r'))));
    }
    return lines;
}

}  // namespace zelmo
