#include <gtest/gtest.h>

#include <QtTest/qtestspontaneevent.h>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QStatusBar>
#include <QTextCursor>
#include <QWheelEvent>
#include <QWindow>
#include <QtTest/QTest>
#include <algorithm>

#include "base/log_console.h"
#include "tests/desktop/qt/answer.h"
#include "tests/desktop/qt/desktop_user.h"
#include "tests/desktop/qt/x_server.h"

namespace zelmo {

namespace {

/// The picture takes 60 % of what the menu leaves, the console the rest above the status bar.
void ExpectLayout(DesktopUser& user) {
    QtMainWindow& window = user.Window();
    const int clientHeight = window.height() - window.menuBar()->height();
    const int pictureHeight = static_cast<int>(static_cast<float>(clientHeight) * 0.6f);
    const int consoleHeight = clientHeight - window.statusBar()->height() - pictureHeight;
    EXPECT_EQ(user.Picture().size(), QSize(window.width(), pictureHeight));
    EXPECT_EQ(user.Console().size(), QSize(window.width(), consoleHeight));
    EXPECT_EQ(user.Picture().mapTo(&window, QPoint(0, 0)), QPoint(0, window.menuBar()->height()));
    EXPECT_EQ(user.Console().mapTo(&window, QPoint(0, 0)),
              QPoint(0, window.menuBar()->height() + pictureHeight));
}

/// Turns the wheel above a widget by so many notches, upwards.
void TurnWheel(QWidget& widget, int notches) {
    const QPointF position = widget.rect().center();
    QWheelEvent event(position, widget.mapToGlobal(position), QPoint(), QPoint(0, 120 * notches),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(&widget, &event);
}

/// The window with its frame is 1200 by 800 or as large as the screen, in the middle of it.
void ExpectPlaceOnScreen(DesktopUser& user) {
    const QRect screen = user.Window().screen()->geometry();
    const int width = std::min(1200, screen.width());
    const int height = std::min(800, screen.height());
    EXPECT_EQ(user.Window().frameGeometry(),
              QRect((screen.width() - width) / 2, (screen.height() - height) / 2, width, height));
}

TEST(QtLayout, WindowStandsInTheMiddleOfTheScreenWithItsSizeOrThatOfTheScreen) {
    DesktopUser user;
    ExpectPlaceOnScreen(user);
}

TEST(QtLayoutOnXServer, FrameOfAWindowManagerIsPartOfWhatStandsOnTheScreen) {
    ASSERT_TRUE(OnXServer());
    const FramingWindowManager manager;
    DesktopUser user;
    WaitUntil([&] {
        const QWindow* window = user.Window().windowHandle();
        return window->frameMargins() * window->devicePixelRatio() == FramingWindowManager::margins;
    });
    QTest::qWait(100);
    ExpectPlaceOnScreen(user);
    ExpectLayout(user);
    // The user's own sizes stay.
    user.Window().resize(700, 500);
    QTest::qWait(100);
    EXPECT_EQ(user.Window().size(), QSize(700, 500));
}

TEST(QtLayout, CaptionIsEmptyAtTheStart) {
    DesktopUser user;
    EXPECT_EQ(user.Window().windowHandle()->title().trimmed(), QString());
    if (OnXServer()) {
        EXPECT_EQ(CaptionOnXServer(*user.Window().windowHandle()).trimmed(), QString());
    }
}

TEST(QtLayout, StartsWithWelcomeMenuAndStatusBar) {
    DesktopUser user;
    QStringList entries;
    for (const QAction* action : user.Window().menuBar()->actions()) {
        entries << action->text();
        EXPECT_EQ(action->menu(), nullptr);
    }
    EXPECT_EQ(entries,
              QStringList({"&Save images", "&Run Process", "&Stop", "&Load GDSII", "&About"}));
    EXPECT_EQ(user.MenuStates(), "---LA");
    EXPECT_EQ(user.StatusTexts(),
              QStringList({"GDS file:", "Not loaded", "Process file:", "Not loaded"}));
    EXPECT_EQ(user.ConsoleLines(),
              QStringList({"Select menu \"Load GDS\" to load a GDSII database and then menu \"Run "
                           "Process\" to select and run a process file"}));
    EXPECT_FALSE(user.Window().windowIcon().isNull());
    EXPECT_TRUE(user.Console().isReadOnly());
}

TEST(QtLayout, PictureAreaIsWhiteBeforeTheFirstPicture) {
    DesktopUser user;
    const QImage shown = user.Shown();
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            ASSERT_EQ(shown.pixel(x, y), qRgb(255, 255, 255)) << x << " " << y;
        }
    }
}

TEST(QtLayout, FollowsTheWindowsSize) {
    DesktopUser user;
    for (const QSize size : {QSize(1200, 800), QSize(611, 487), QSize(1503, 1001)}) {
        user.Window().resize(size);
        QTest::qWait(50);
        EXPECT_EQ(user.Window().size(), size);
        ExpectLayout(user);
    }
}

TEST(QtLayout, FollowsTheStatusBarsHeight) {
    DesktopUser user;
    user.Window().resize(1200, 800);
    QTest::qWait(50);
    const int before = user.Console().height();
    user.Window().statusBar()->setMinimumHeight(80);
    QTest::qWait(50);
    EXPECT_LT(user.Console().height(), before);
    ExpectLayout(user);
}

TEST(QtLayout, StatusFieldsStandAtTheirPlaces) {
    DesktopUser user;
    user.Window().resize(1200, 800);
    QTest::qWait(50);
    auto labels = user.Window().statusBar()->findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 4);
    std::sort(labels.begin(), labels.end(),
              [](const QLabel* a, const QLabel* b) { return a->x() < b->x(); });
    const int rightEdges[] = {80, 600, 680};
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(labels[i + 1]->x(), rightEdges[i], 16) << i;
    }
    for (const int i : {0, 2}) {
        EXPECT_GE(labels[i]->width(),
                  labels[i]->fontMetrics().horizontalAdvance(labels[i]->text()));
    }
}

TEST(QtLayout, LongPathInTheStatusBarLosesItsMiddleOnScreenAlone) {
    DesktopUser user;
    user.Window().resize(900, 600);
    const std::wstring path = L"/" + std::wstring(150, L'a') + L"/" + std::wstring(150, L'b');
    user.Window().SetStatusText(StatusField::GdsFile, path);
    QTest::qWait(50);
    EXPECT_EQ(user.Window().width(), 900);
    EXPECT_EQ(user.StatusTexts().at(1), QString::fromStdWString(path));
    ExpectLayout(user);
}

TEST(QtLayout, WheelScrollsTheConsoleWhereverThePointerStands) {
    DesktopUser user;
    for (int i = 0; i < 300; ++i) {
        user.Window().Console()->Write(std::to_string(i));
    }
    QScrollBar* bar = user.Console().verticalScrollBar();
    ASSERT_EQ(bar->value(), bar->maximum());
    for (QWidget* place : {&user.Picture(), user.Console().viewport(),
                           static_cast<QWidget*>(user.Window().statusBar())}) {
        const int before = bar->value();
        TurnWheel(*place, 2);
        EXPECT_LT(bar->value(), before) << place->metaObject()->className();
    }
    for (int i = 0; i < 100; ++i) {  // also beyond the end
        TurnWheel(user.Picture(), -3);
        TurnWheel(*user.Console().viewport(), -3);
    }
    EXPECT_EQ(bar->value(), bar->maximum());
}

TEST(QtLayout, NextLineBringsTheConsoleBackToItsEnd) {
    DesktopUser user;
    for (int i = 0; i < 300; ++i) {
        user.Window().Console()->Write(std::to_string(i));
    }
    QScrollBar* bar = user.Console().verticalScrollBar();
    bar->setValue(0);
    user.Window().Console()->Write(std::string("100 % \xB5m {}"));
    EXPECT_EQ(bar->value(), bar->maximum());
    EXPECT_EQ(user.ConsoleLines().constLast(), QString("100 % \uFFB5m {}"));
    user.Window().Console()->Write(std::string());
    EXPECT_EQ(user.ConsoleLines().constLast(), QString());
}

TEST(QtLayout, ConsoleShowsACharacterForEveryByteAbove127) {
    DesktopUser user;
    user.Window().ClearConsole();
    user.Window().Console()->Write(std::string());
    const auto darkPixels = [&] {
        const QImage shown = user.Console().viewport()->grab().toImage();
        int dark = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                dark += qGray(shown.pixel(x, y)) < 200 ? 1 : 0;
            }
        }
        return dark;
    };
    ASSERT_EQ(darkPixels(), 0);
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        user.Window().ClearConsole();
        user.Window().Console()->Write(std::string(1, static_cast<char>(byte)));
        EXPECT_GT(darkPixels(), 0) << byte;
        EXPECT_EQ(user.ConsoleLines().constLast().size(), 1) << byte;
    }
}

TEST(QtLayout, KeysOfTheConsolesOwnMenuSelectAndCopyItsText) {
    DesktopUser user;
    user.Window().Console()->Write(std::string("one"));
    user.Window().Console()->Write(std::string("two"));
    QGuiApplication::clipboard()->setText("before");
    user.PressKey(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");  // nothing is selected
    user.PressKey(Qt::Key_A, Qt::ControlModifier);
    user.PressKey(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), user.Console().toPlainText());
    EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith("\none\ntwo"));
    QTextCursor cursor = user.Console().textCursor();
    cursor.movePosition(QTextCursor::End);
    cursor.movePosition(QTextCursor::StartOfLine, QTextCursor::KeepAnchor);
    user.Console().setTextCursor(cursor);
    user.PressKey(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "two");
}

TEST(QtLayout, ConsoleKeeps50000LinesAndStaysQuick) {
    DesktopUser user;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 50000; ++i) {
        user.Window().Console()->Write("Cell number " + std::to_string(i));
    }
    EXPECT_LT(timer.elapsed(), 20000);
    EXPECT_EQ(user.ConsoleLines().size(), 50001);
    EXPECT_EQ(user.ConsoleLines().constLast(), "Cell number 49999");
    const QScrollBar* bar = user.Console().verticalScrollBar();
    EXPECT_EQ(bar->value(), bar->maximum());
    RecordProperty("milliseconds", static_cast<int>(timer.elapsed()));
}

TEST(QtLayout, ConsoleNeverKeepsTheKeyboardFocus) {
    DesktopUser user;
    QTest::mouseClick(user.Console().viewport(), Qt::LeftButton);
    QTest::mouseClick(&user.Picture(), Qt::LeftButton);
    QTest::mouseDClick(user.Console().viewport(), Qt::LeftButton);
    EXPECT_FALSE(user.Console().hasFocus());
    EXPECT_NE(user.Window().focusWidget(), &user.Console());
    QTest::keyClick(user.Window().windowHandle(), Qt::Key_Tab);
    EXPECT_NE(user.Window().focusWidget(), &user.Console());
}

TEST(QtLayout, OneArrowCursorForAllOfTheWindow) {
    DesktopUser user;
    EXPECT_EQ(user.Console().viewport()->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(user.Picture().cursor().shape(), Qt::ArrowCursor);
}

}  // namespace

}  // namespace zelmo
