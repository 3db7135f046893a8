#include "desktop/main_window_logic.h"

#include <string>
#include <utility>

#include "base/log_console.h"
#include "process_file/color_table.h"

namespace zelmo {

namespace {

constexpr wchar_t firstLine[] =
    L"Select menu \"Load GDS\" to load a GDSII database and then menu \"Run Process\" to "
    L"select and run a process file";

}  // namespace

MainWindowLogic::MainWindowLogic(Platform& platform) : platform_(platform) {}

MainWindowLogic::~MainWindowLogic() = default;

bool MainWindowLogic::LoadColors(const std::filesystem::path& path) {
    return LoadColorTable(colors_, path);
}

void MainWindowLogic::FinishCreation(std::unique_ptr<PictureMaker> pictureMaker) {
    pictureMaker_ = std::move(pictureMaker);
    UpdateMenus();
    platform_.Console()->Write(std::wstring(firstLine));
}

void MainWindowLogic::HandleClose() {
    stopRequested_ = true;
    if (!running_) {
        platform_.Quit();
        return;
    }
    platform_.Console()->Write(std::wstring());
    platform_.Console()->Write(
        std::wstring(L"Closing application: wait for current process thread to complete"));
    closeRequested_ = true;
}

void MainWindowLogic::HandleLeftKey() {
    pictures_.GoLeft();
    ShowCurrentPicture();
}

void MainWindowLogic::HandleRightKey() {
    pictures_.GoRight();
    ShowCurrentPicture();
}

void MainWindowLogic::ShowCurrentPicture() {
    platform_.SetCaption(pictures_.Current().name);
    platform_.RepaintWindow();
}

}  // namespace zelmo
