#include <fmt/format.h>
#include <fmt/xchar.h>

#include <exception>
#include <string>
#include <system_error>

#include "base/debug_trace.h"
#include "base/log_console.h"
#include "base/text.h"
#include "base/version.h"
#include "desktop/main_window_logic.h"
#include "pictures/picture_files.h"
#include "pictures/picture_names.h"
#include "process_run/execute_run.h"
#include "process_run/load_layout.h"
#include "process_run/prepare_run.h"

namespace zelmo {

namespace {

constexpr const char* programName = "Zelmo";
constexpr int processFileVersion = 4;

/// Files and folders take the separator of their platform.
std::filesystem::path InFolder(const std::filesystem::path& folder, const std::wstring& name) {
    std::filesystem::path path = folder;
    path += std::filesystem::path::preferred_separator;
    path += PathFromText(name);
    return path;
}

}  // namespace

void MainWindowLogic::UpdateMenus() {
    platform_.EnableMenuEntry(MenuEntry::SaveImages, !pictures_.images.empty() && !running_);
    platform_.EnableMenuEntry(MenuEntry::RunProcess, gds_ != nullptr && !running_);
    platform_.EnableMenuEntry(MenuEntry::Stop, running_ && !stopRequested_);
    platform_.EnableMenuEntry(MenuEntry::LoadGds, !running_);
    platform_.EnableMenuEntry(MenuEntry::About, true);
    platform_.RedrawMenu();
}

void MainWindowLogic::DisableMenus() {
    for (const MenuEntry entry :
         {MenuEntry::SaveImages, MenuEntry::RunProcess, MenuEntry::Stop, MenuEntry::LoadGds}) {
        platform_.EnableMenuEntry(entry, false);
    }
    platform_.EnableMenuEntry(MenuEntry::About, true);
    platform_.RedrawMenu();
}

bool MainWindowLogic::PrepareModel(const std::filesystem::path& path) {
    try {
        PreparedRun run = PrepareRun(path, *gds_, colors_, platform_.Console());
        if (run.model == nullptr) {
            return false;
        }
        model_.swap(run.model);
        return true;
    } catch (const std::exception&) {
        return false;  // exhausted memory: the model before stays
    }
}

void MainWindowLogic::HandleRun() {
    DebugTrace("Handling run");
    DisableMenus();
    platform_.ClearConsole();
    LogConsole* console = platform_.Console();
    console->Write(std::wstring(L"--- Handling \"Run\" command ---"));
    stopRequested_ = false;
    const auto path =
        platform_.AskForFile({L"Open process file", L"Text Files (*.txt)", L"*.txt", L"txt"});
    if (!path) {
        console->Write(std::wstring(L"Process file selection failed"));
        UpdateMenus();
        return;
    }
    if (!PrepareModel(*path)) {
        UpdateMenus();
        return;
    }
    processFileName_ = *path;
    platform_.SetStatusText(StatusField::ProcessFile, PathText(*path));
    pictures_.images = {};
    ReportRunStart(console);
    running_ = true;
    UpdateMenus();
    RunNext(true);
}

void MainWindowLogic::HandleStop() {
    LogConsole* console = platform_.Console();
    console->Write(std::wstring());
    console->Write(
        std::wstring(L"Handling \"Stop\" request: wait for current process step to complete"));
    stopRequested_ = true;
    UpdateMenus();
}

void MainWindowLogic::HandleSaveImages() {
    DisableMenus();
    platform_.ClearConsole();
    LogConsole* console = platform_.Console();
    console->Write(std::wstring(L"--- Handling \"Save images\" command ---"));
    const std::filesystem::path folder = MakeOutputFolderName(processFileName_);
    const std::wstring folderText = PathText(folder);
    std::error_code error;
    if (!std::filesystem::create_directory(folder, error)) {
        platform_.ShowMessage(
            fmt::format(L"Images not saved. Failed to create output folder \"{}\".", folderText),
            L"Zelmo");
        UpdateMenus();
        return;
    }
    console->Write(fmt::format(L"Saving images to folder \"{}\". Please wait ...", folderText));
    bool failed = false;
    std::size_t ordinal = 0;
    for (const StepImage& image : pictures_.images) {
        const auto file = InFolder(folder, SavedImageName(++ordinal, image.name, L"bmp"));
        if (!WriteBitmap(image, file)) {
            console->Write(fmt::format(L"Error while saving image {} to output folder \"{}\"",
                                       PathText(file), folderText));
            failed = true;
        }
    }
    console->Write(
        std::wstring(failed ? L"Errors occurred saving images" : L"Saving images completed"));
    UpdateMenus();
}

void MainWindowLogic::HandleLoadGds() {
    platform_.ClearConsole();
    LogConsole* console = platform_.Console();
    console->Write(std::wstring(L"--- Handling \"Load GDS\" command ---"));
    DisableMenus();
    const auto path =
        platform_.AskForFile({L"Open GDS file", L"GDS Files (*.gds)", L"*.gds", L"gds"});
    if (!path) {
        console->Write(std::wstring(L"GDS file selection failed"));
        UpdateMenus();
        return;
    }
    LayoutLoad load = LoadLayout(*path, console);
    if (load.error) {
        UpdateMenus();
        return;
    }
    gds_ = std::move(load.database);
    gdsFileName_ = *path;
    platform_.SetStatusText(StatusField::GdsFile, PathText(*path));
    UpdateMenus();
}

void MainWindowLogic::HandleAbout() {
    const std::string caption = fmt::format("{} {}", programName, programVersion);
    const std::string text =
        std::string("Zelmo: software to render semicon process cross sections \n\n") +
        "Made by the Zelmo developers" +
        fmt::format("\n\nFor process file version {}", processFileVersion);
    platform_.ShowMessage(WidenBytes(text), WidenBytes(caption));
}

}  // namespace zelmo
