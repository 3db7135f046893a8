#include <gtest/gtest.h>

#include <QApplication>
#include <QProcess>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <QtTest/QTest>
#include <filesystem>
#include <map>

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

/// The window of the program that runs, or null.
QWidget* ShownMainWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->inherits("QMainWindow")) {
            return widget;
        }
    }
    return nullptr;
}

TEST(QtStart, CloseButtonEndsTheProgramWithExitCode0) {
    QTimer::singleShot(0, [] { ShownMainWindow()->windowHandle()->close(); });
    QTimer failSafe;
    QObject::connect(&failSafe, &QTimer::timeout, [] {
        ADD_FAILURE() << "the program did not end";
        QApplication::exit(9);
    });
    failSafe.start(20000);
    EXPECT_EQ(RunDesktop(), 0);
}

// No test of its own gives the window the keyboard here: there is no window manager either.
TEST(QtStart, LettersOfTheMenuAnswerFromTheStartAndAfterADialog) {
    int boxes = 0;
    QTimer::singleShot(0, [&] {
        QWidget* window = ShownMainWindow();
        ASSERT_NE(window, nullptr);
        for (int time = 0; time < 2; ++time) {
            QTest::qWait(300);
            const DialogAnswer answer([&](QDialog& dialog) {
                ++boxes;
                ClickButton(dialog, "OK");
            });
            QTest::keyClick(window->windowHandle(), Qt::Key_A, Qt::AltModifier);
        }
        window->windowHandle()->close();
    });
    EXPECT_EQ(RunDesktop(), 0);
    EXPECT_EQ(boxes, 2);
}

/// Starts the program as a user without a display would, and expects one line and a plain end.
void ExpectEndWithOneLine(const std::map<QString, QString>& displays) {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"}) {
        environment.remove(name);
    }
    for (const auto& [name, value] : displays) {
        environment.insert(name, value);
    }
    program.setProcessEnvironment(environment);
    program.start("./zelmo", QStringList());
    ASSERT_TRUE(program.waitForFinished(60000)) << program.errorString().toStdString();
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_EQ(program.readAllStandardError(),
              "zelmo: no window can be opened (is there a display that can be reached?)\n");
    EXPECT_EQ(program.readAllStandardOutput(), "");
}

TEST(QtStart, WithoutDisplayTheProgramSaysSoInOneLine) {
    ExpectEndWithOneLine({});
    ExpectEndWithOneLine({{"DISPLAY", "nowhere.invalid:7"}});
    ExpectEndWithOneLine({{"QT_QPA_PLATFORM", "no such platform"}});
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
