#include "desktop/main_window.h"

#include <string>
#include <utility>

#include "base/log_console.h"
#include "process_file/color_table.h"

namespace zelmo {

MainWindow::MainWindow(Platform& platform) : platform_(platform) {}

MainWindow::~MainWindow() = default;

bool MainWindow::LoadColors(const std::filesystem::path& path) {
    return LoadColorTable(colors_, path);
}

void MainWindow::FinishCreation(std::unique_ptr<PictureMaker> pictureMaker) {
    pictureMaker_ = std::move(pictureMaker);
    UpdateMenus();
    platform_.Console()->Write(std::wstring(
        L"Select menu \"Load GDS\" to load a GDSII database and then menu \"Run Process\" to "
        L"select and run a process file"));
}

void MainWindow::HandleClose() {
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

void MainWindow::HandleLeftKey() {
    pictures_.GoLeft();
    ShowCurrentPicture();
}

void MainWindow::HandleRightKey() {
    pictures_.GoRight();
    ShowCurrentPicture();
}

void MainWindow::ShowCurrentPicture() {
    platform_.SetCaption(pictures_.Current().name);
    platform_.RepaintWindow();
}

}  // namespace zelmo
