#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <filesystem>

#include "desktop/qt/desktop.h"
#include "tests/desktop/qt/answer.h"
#include "tests/desktop/qt/desktop_user.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

namespace {

/// Works in another current directory for as long as it lives.
class InFolder {
public:
    explicit InFolder(const std::filesystem::path& folder)
        : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~InFolder() { std::filesystem::current_path(before_); }
    InFolder(const InFolder&) = delete;
    InFolder& operator=(const InFolder&) = delete;

private:
    std::filesystem::path before_;
};

constexpr const char* colorMessage =
    "Could not load color file or color file contains errors. Redo installation.";

/// Starts the program in the current directory, where its start fails.
void ExpectColorMessage() {
    QString text;
    QString caption;
    bool windowShown = true;
    const DialogAnswer answer([&](QDialog& dialog) {
        const QMessageBox& box = AsMessageBox(dialog);
        text = box.text();
        caption = box.windowTitle();
        windowShown = box.parentWidget()->isVisible();
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        ClickButton(dialog, "OK");
    });
    EXPECT_EQ(RunDesktop(), 0);
    EXPECT_TRUE(answer.Given());
    EXPECT_EQ(text.toStdString(), colorMessage);
    EXPECT_EQ(caption.toStdString(), "Zelmo");
    EXPECT_FALSE(windowShown);
}

TEST(QtStart, FaultyColorFileShowsMessageAndEndsWithExitCode0) {
    const TempFolder folder;
    folder.Write("colors.txt", "red 300 one\n");
    const InFolder here(folder.Path());
    ExpectColorMessage();
}

TEST(QtStart, ColorFileThatCannotBeReadShowsTheSameMessage) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.Path() / "colors.txt");
    const InFolder here(folder.Path());
    ExpectColorMessage();
}

TEST(QtStart, ShaderThatCannotBeReadIsLoggedAndTheProgramStarts) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.Path() / "surface.shader");
    const InFolder here(folder.Path());
    DesktopUser user;
    EXPECT_TRUE(user.Window().isVisible());
    const QStringList lines = user.ConsoleLines();
    ASSERT_GE(lines.size(), 2);
    EXPECT_TRUE(lines.join('\n').contains("surface.shader")) << lines.join('\n').toStdString();
    EXPECT_TRUE(lines.constLast().startsWith("Select menu"));
}

TEST(QtStart, CloseButtonEndsTheProgramWithExitCode0) {
    QTimer::singleShot(0, [] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->inherits("QMainWindow")) {
                widget->windowHandle()->close();
            }
        }
    });
    QTimer failSafe;
    QObject::connect(&failSafe, &QTimer::timeout, [] {
        ADD_FAILURE() << "the program did not end";
        QApplication::exit(9);
    });
    failSafe.start(20000);
    EXPECT_EQ(RunDesktop(), 0);
}

TEST(QtStart, ArrowKeyWithoutPictureEndsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right}) {
        EXPECT_DEATH(
            {
                DesktopUser user;
                user.PressKey(key);
            },
            "out_of_range(.|\n)*invalid vector subscript");
    }
}

}  // namespace

}  // namespace zelmo
