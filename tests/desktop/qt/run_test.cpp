#include <gtest/gtest.h>

#include <QApplication>
#include <QRegularExpression>
#include <QTimer>
#include <QWindow>
#include <QtTest/QTest>
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/desktop/qt/answer.h"
#include "tests/desktop/qt/desktop_user.h"
#include "tests/desktop/qt/x_server.h"

namespace zelmo {

namespace {

QString StopLine() {
    return "Handling \"Stop\" request: wait for current process step to complete";
}

QString CloseLine() {
    return "Closing application: wait for current process thread to complete";
}

/// The number at the start of the window's caption, which is that of the last picture.
int LastPicture(DesktopUser& user) {
    return user.Window().windowTitle().left(3).toInt();
}

TEST(QtRun, RunsToItsEndAndBrowsesRoundInBothDirections) {
    DesktopUser user;
    user.LoadLayout();
    user.StartRun();
    // The first step is under way: its end has to pass through this thread.
    EXPECT_EQ(user.MenuStates(), "--S-A");
    EXPECT_EQ(user.StatusTexts().at(3), ToQString(user.Process()));
    QStringList captions;
    QObject::connect(&user.Window(), &QWidget::windowTitleChanged,
                     [&](const QString& caption) { captions << caption; });
    user.WaitForRunEnd();
    EXPECT_EQ(user.MenuStates(), "SR-LA");
    ASSERT_EQ(captions.size(), 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(captions[i].startsWith(QString("%1 ").arg(i + 1, 3, 10, QChar('0'))))
            << captions[i].toStdString();
    }
    const QStringList lines = user.ConsoleLines();
    EXPECT_EQ(lines.count("EXECUTING PROCESS STEPS"), 1);
    EXPECT_EQ(lines.filter(QRegularExpression("^Completed in \\d+\\.\\d{3} s$")).size(), 5);
    EXPECT_EQ(lines.filter(QRegularExpression("^All process steps completed in \\d+\\.\\d{3} sec$"))
                  .size(),
              1);
    EXPECT_EQ(lines.constLast(), "Use left and right arrows to browse through the process steps");

    const QStringList pictures = captions;
    captions.clear();
    user.PressKey(Qt::Key_Right);
    EXPECT_EQ(user.Window().windowTitle(), pictures[0]);
    user.PressKey(Qt::Key_Left);
    EXPECT_EQ(user.Window().windowTitle(), pictures[4]);
    user.PressKey(Qt::Key_Left);
    EXPECT_EQ(user.Window().windowTitle(), pictures[3]);
    QTest::mouseClick(user.Console().viewport(), Qt::LeftButton);
    user.PressKey(Qt::Key_Right);
    EXPECT_EQ(user.Window().windowTitle(), pictures[4]);
    user.PressKey(Qt::Key_Escape);
    user.PressKey(Qt::Key_Up);
    user.PressKey(Qt::Key_Space);
    EXPECT_EQ(user.Window().windowTitle(), pictures[4]);
}

TEST(QtRun, ArrowKeysBrowseWithShiftOrCtrlButNotWithAlt) {
    DesktopUser user;
    user.LoadLayout();
    user.Run();
    EXPECT_EQ(LastPicture(user), 5);
    user.PressKey(Qt::Key_Left, Qt::AltModifier);
    user.PressKey(Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
    user.PressKey(Qt::Key_Left, Qt::AltModifier | Qt::KeypadModifier);
    EXPECT_EQ(LastPicture(user), 5);
    user.PressKey(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(LastPicture(user), 5);
    user.PressKey(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(LastPicture(user), 4);
    user.PressKey(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(LastPicture(user), 3);
    user.PressKey(Qt::Key_Right, Qt::KeypadModifier);
    EXPECT_EQ(LastPicture(user), 4);
}

TEST(QtRun, CaptionKeepsTheToolkitsMarksInAStepsName) {
    DesktopUser user;
    user.LoadLayout();
    user.StartRun(user.Folder().Write(
        "marks.txt",
        "settings -version 4 -N 200 -angle 40\nlocation -x 0 -y 0 -dx 8 -dy 8\ngds -cell TOP\n"
        "deposition -name a[*]b[*][*]c -type oxide -thickness 300 -color 120 180 230 100\n"));
    user.WaitForRunEnd();
    const QString caption = "002 a[*]b[*][*]c deposition";
    EXPECT_EQ(user.Window().windowHandle()->title(), caption);
    user.PressKey(Qt::Key_Left);
    EXPECT_EQ(user.Window().windowHandle()->title(), "001 Substrate");
    user.PressKey(Qt::Key_Left);
    EXPECT_EQ(user.Window().windowHandle()->title(), caption);
    if (OnXServer()) {
        EXPECT_EQ(CaptionOnXServer(*user.Window().windowHandle()), caption);
    }
}

TEST(QtRun, LetterThatSaveAndStopShareChoosesTheEnabledOneAtTheFirstPress) {
    DesktopUser user;
    user.LoadLayout();
    for (const bool together : {true, false}) {  // Alt with the letter, or the letter after Alt
        const auto press = [&] {
            if (together) {
                user.PressKey(Qt::Key_S, Qt::AltModifier);
            } else {
                user.PressKey(Qt::Key_Alt);
                user.PressKey(Qt::Key_S);
            }
        };
        user.StartRunAndHold(2);
        ASSERT_EQ(user.MenuStates(), "--S-A");
        press();
        EXPECT_EQ(user.MenuStates(), "----A");
        EXPECT_EQ(user.ConsoleLines().count(StopLine()), 1);
        press();  // both are disabled now
        user.PressKey(Qt::Key_Escape);
        EXPECT_EQ(user.ConsoleLines().count(StopLine()), 1);
        user.Window().Release();
        user.WaitForRunEnd();
        for (int time = 0; time < 2; ++time) {
            QTest::qSleep(1100);  // a folder of its own for each
            user.Window().ClearConsole();
            press();
            EXPECT_EQ(user.ConsoleLines().constLast(), "Saving images completed");
        }
        const int before = LastPicture(user);
        user.PressKey(Qt::Key_Left);  // the window has the keyboard back
        EXPECT_EQ(LastPicture(user), before - 1);
    }
}

TEST(QtRun, StopInTheFirstStepKeepsItsPicture) {
    DesktopUser user;
    user.LoadLayout();
    user.StartRun();
    user.Click("&Stop");
    EXPECT_EQ(user.MenuStates(), "----A");
    EXPECT_EQ(user.ConsoleLines().constLast(), StopLine());
    user.WaitForRunEnd();
    EXPECT_EQ(LastPicture(user), 1);
    EXPECT_EQ(user.MenuStates(), "SR-LA");
    EXPECT_EQ(user.ConsoleLines().constLast(),
              "Use left and right arrows to browse through the process steps");
    user.PressKey(Qt::Key_Right);
    EXPECT_EQ(LastPicture(user), 1);
}

TEST(QtRun, StopInTheThirdStepKeepsThreePictures) {
    DesktopUser user;
    user.LoadLayout();
    // The third step begins with the second picture; the stop is the next event.
    QObject::connect(
        &user.Window(), &QWidget::windowTitleChanged, &user.Window(),
        [&](const QString& caption) {
            if (caption.startsWith("002")) {
                user.Click("&Stop");
            }
        },
        Qt::QueuedConnection);
    user.Run();
    EXPECT_EQ(LastPicture(user), 3);
    EXPECT_EQ(user.MenuStates(), "SR-LA");
    user.PressKey(Qt::Key_Right);
    EXPECT_EQ(LastPicture(user), 1);
}

TEST(QtRun, SecondRunGoesOnWithTheNumbersAndDropsTheOldPictures) {
    DesktopUser user;
    user.LoadLayout();
    user.Run();
    EXPECT_EQ(LastPicture(user), 5);
    user.StartRun();
    EXPECT_EQ(user.MenuStates(), "--S-A");
    user.WaitForRunEnd();
    EXPECT_EQ(LastPicture(user), 10);
    user.PressKey(Qt::Key_Right);
    EXPECT_EQ(LastPicture(user), 6);
    user.PressKey(Qt::Key_Left);
    EXPECT_EQ(LastPicture(user), 10);
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(user.SaveImages())) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    ASSERT_EQ(names.size(), 5u);
    EXPECT_TRUE(names.front().starts_with("001 006 ")) << names.front();
    EXPECT_TRUE(names.back().starts_with("005 010 ")) << names.back();
}

TEST(QtRun, ProcessFileWithErrorsLeavesTheRunBeforeIt) {
    DesktopUser user;
    user.LoadLayout();
    user.Run();
    user.StartRun(user.Folder().Write("bad.txt", "settings -version 3\nnonsense\n"));
    EXPECT_EQ(user.MenuStates(), "SR-LA");
    EXPECT_EQ(user.StatusTexts().at(3), ToQString(user.Process()));
    EXPECT_TRUE(user.ConsoleLines().join('\n').contains("Error"));
    user.PressKey(Qt::Key_Right);
    EXPECT_EQ(LastPicture(user), 1);
    EXPECT_NE(ToQString(user.SaveImages()).indexOf("/process 20"), -1);
}

TEST(QtRun, AboutBoxDoesNotHoldUpARun) {
    DesktopUser user;
    user.LoadLayout();
    user.StartRun();
    const DialogAnswer answer([&](QDialog& dialog) {
        user.WaitForRunEnd();
        EXPECT_TRUE(dialog.isVisible());
        ClickButton(dialog, "OK");
    });
    user.Click("&About");
    EXPECT_TRUE(answer.Given());
    EXPECT_EQ(LastPicture(user), 5);
}

/// Works the window in the program's event loop and returns what the loop ends with.
int InEventLoop(const std::function<void()>& actions) {
    QTimer::singleShot(0, actions);
    QTimer failSafe;
    QObject::connect(&failSafe, &QTimer::timeout, [] { QApplication::exit(9); });
    failSafe.start(60000);
    return QApplication::exec();
}

TEST(QtRun, CloseDuringAStepWaitsForItsEnd) {
    DesktopUser user;
    user.LoadLayout();
    bool stood = false;
    const int result = InEventLoop([&] {
        user.StartRun();
        user.ClickCloseButton();
        stood = user.Window().isVisible();
        EXPECT_EQ(user.MenuStates(), "--S-A");
        EXPECT_EQ(user.ConsoleLines().constLast(), CloseLine());
        user.ClickCloseButton();
    });
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(stood);
    EXPECT_EQ(LastPicture(user), 1);
    EXPECT_EQ(user.ConsoleLines().count(CloseLine()), 2);
    EXPECT_EQ(user.ConsoleLines().constLast(),
              "Use left and right arrows to browse through the process steps");
}

TEST(QtRun, StopAndThenCloseInTheSameStepWritesBoth) {
    DesktopUser user;
    user.LoadLayout();
    const int result = InEventLoop([&] {
        user.StartRun();
        user.Click("&Stop");
        user.ClickCloseButton();
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(user.ConsoleLines().count(StopLine()), 1);
    EXPECT_EQ(user.ConsoleLines().count(CloseLine()), 1);
    EXPECT_EQ(LastPicture(user), 1);
}

TEST(QtRun, EndOfARunThatWasToCloseEndsTheProgramBehindAnOpenBox) {
    DesktopUser user;
    user.LoadLayout();
    const int result = InEventLoop([&] {
        user.StartRun();
        user.ClickCloseButton();
        user.Click("&About");
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(LastPicture(user), 1);
}

TEST(QtRun, ArrowKeyBeforeTheFirstPictureOfARunEndsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            DesktopUser user;
            user.LoadLayout();
            user.StartRun();
            user.PressKey(Qt::Key_Left);
        },
        "out_of_range(.|\n)*invalid vector subscript");
}

}  // namespace

}  // namespace zelmo
