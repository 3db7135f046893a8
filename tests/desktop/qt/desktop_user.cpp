#include "tests/desktop/qt/desktop_user.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMenuBar>
#include <QPixmap>
#include <QScreen>
#include <QStatusBar>
#include <QWindow>
#include <QtTest/QTest>
#include <algorithm>
#include <stdexcept>
#include <vector>

#include "examples/gds_writer.h"
#include "tests/desktop/qt/answer.h"

namespace zelmo {

const char* const smallProcess =
    "settings -version 4 -N 200 -angle 40 -legend\n"
    "location -x 0 -y 0 -dx 8 -dy 8\n"
    "gds -cell TOP\n"
    "deposition -name Oxide -type oxide -thickness 300 -sc 1.0 -color 120 180 230 100\n"
    "deposition -name Metal -type metal -thickness 400 -sc 1.0 -color 200 200 90 100\n"
    "photo -name Lines -mask_id 1 -type 1 -res 0.2 -thickness 900 -taper 85\n"
    "etch -name Lines -targets metal -depth 500 -iso 0.0\n";

DesktopUser::DesktopUser() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 1000, 1000, 3000, 7000);
    writer.Rectangle(1, 5000, 2000, 7000, 6000);
    writer.EndCell();
    writer.EndLibrary();
    layout_ = folder_.Path() / "layout.gds";
    writer.Save(layout_);
    process_ = folder_.Write("process.txt", smallProcess);
    if (!window_.Prepare()) {
        throw std::runtime_error("the program does not start");
    }
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
}

QAction* DesktopUser::Entry(const QString& text) {
    for (QAction* action : window_.menuBar()->actions()) {
        if (action->text() == text) {
            return action;
        }
    }
    throw std::runtime_error("no menu entry " + text.toStdString());
}

std::string DesktopUser::MenuStates() {
    std::string states;
    for (const QAction* action : window_.menuBar()->actions()) {
        states += action->isEnabled() ? action->text().remove('&').at(0).toLatin1() : '-';
    }
    return states;
}

void DesktopUser::Click(const QString& text) {
    QMenuBar* bar = window_.menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(Entry(text)).center());
}

void DesktopUser::PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window_.windowHandle(), key, modifiers);
}

void DesktopUser::ClickCloseButton() {
    window_.windowHandle()->close();
}

void DesktopUser::LoadLayout() {
    LoadLayout(layout_);
}

void DesktopUser::LoadLayout(const std::filesystem::path& path) {
    const DialogAnswer answer([&](QDialog& dialog) { ChooseFile(dialog, ToQString(path)); });
    Click("&Load GDSII");
    EXPECT_TRUE(answer.Given());
}

void DesktopUser::StartRun() {
    StartRun(process_);
}

void DesktopUser::StartRun(const std::filesystem::path& process) {
    const DialogAnswer answer([&](QDialog& dialog) { ChooseFile(dialog, ToQString(process)); });
    Click("&Run Process");
    EXPECT_TRUE(answer.Given());
}

void DesktopUser::StartRunAndHold(int step) {
    window_.HoldStep(step);
    StartRun();
    WaitUntil([this] { return window_.Held(); });
}

void DesktopUser::WaitForRunEnd() {
    WaitUntil([this] { return Entry("&Load GDSII")->isEnabled(); });
}

void DesktopUser::Run() {
    StartRun();
    WaitForRunEnd();
}

std::filesystem::path DesktopUser::SaveImages() {
    Click("&Save images");
    std::vector<std::filesystem::path> folders;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
        if (entry.is_directory() && entry.path().filename().string().starts_with("process ")) {
            folders.push_back(entry.path());
        }
    }
    if (folders.empty()) {
        throw std::runtime_error("no folder of pictures");
    }
    return *std::max_element(folders.begin(), folders.end());
}

QWidget& DesktopUser::Picture() {
    return *window_.findChild<QWidget*>("picture");
}

QPlainTextEdit& DesktopUser::Console() {
    return *window_.findChild<QPlainTextEdit*>("console");
}

QStringList DesktopUser::ConsoleLines() {
    return Console().toPlainText().split('\n');
}

QStringList DesktopUser::StatusTexts() {
    auto labels = window_.statusBar()->findChildren<QLabel*>();
    std::sort(labels.begin(), labels.end(),
              [](const QLabel* a, const QLabel* b) { return a->x() < b->x(); });
    QStringList texts;
    for (const QLabel* label : labels) {
        texts << label->text();
    }
    return texts;
}

QImage DesktopUser::Shown() {
    return Picture().grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QImage DesktopUser::OnScreen() {
    const QPoint corner = Picture().mapToGlobal(QPoint(0, 0));
    const QSize size = Picture().size();
    const QPixmap grabbed =
        window_.screen()->grabWindow(0, corner.x(), corner.y(), size.width(), size.height());
    return grabbed.toImage().convertToFormat(QImage::Format_RGB32);
}

void WaitUntil(const std::function<bool()>& done) {
    EXPECT_TRUE(QTest::qWaitFor(done, 60000)) << "waited for a minute";
}

QString ToQString(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

}  // namespace zelmo
