#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDir>
#include <QProcess>
#include <QScreen>
#include <QtTest/QTest>
#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

#include "base/version.h"
#include "tests/desktop/qt/answer.h"
#include "tests/desktop/qt/desktop_user.h"

namespace zelmo {

namespace {

std::map<std::string, std::string> Files(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        files[entry.path().filename().string()] =
            std::string(std::istreambuf_iterator<char>(file), {});
    }
    return files;
}

TEST(QtCommands, FileDialogsAskForExistingFilesOfTheirKind) {
    DesktopUser user;
    const DialogAnswer first([&](QDialog& dialog) {
        const QFileDialog& question = AsFileDialog(dialog);
        EXPECT_EQ(question.windowTitle(), "Open GDS file");
        EXPECT_EQ(question.nameFilters(), QStringList("GDS Files (*.gds)"));
        EXPECT_EQ(question.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(question.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(question.directory().absolutePath(), QDir::currentPath());
        EXPECT_EQ(user.MenuStates(), "----A");
        ChooseFile(dialog,
                   ToQString(user.Folder().Path() / "layout"));  // takes the default extension
    });
    user.Click("&Load GDSII");
    EXPECT_TRUE(first.Given());
    EXPECT_EQ(user.StatusTexts().at(1), ToQString(user.Layout()));
    const DialogAnswer second([&](QDialog& dialog) {
        const QFileDialog& question = AsFileDialog(dialog);
        EXPECT_EQ(question.windowTitle(), "Open process file");
        EXPECT_EQ(question.nameFilters(), QStringList("Text Files (*.txt)"));
        EXPECT_EQ(question.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(question.directory().absolutePath(), ToQString(user.Folder().Path()));
        EXPECT_EQ(user.MenuStates(), "----A");
        ClickButton(dialog, "Cancel");
    });
    user.Click("&Run Process");
    EXPECT_TRUE(second.Given());
    EXPECT_EQ(user.ConsoleLines(),
              QStringList({"--- Handling \"Run\" command ---", "Process file selection failed"}));
    EXPECT_EQ(user.MenuStates(), "-R-LA");
}

TEST(QtCommands, FileWithoutExtensionIsTakenAsItIsTyped) {
    DesktopUser user;
    const std::filesystem::path plain = user.Folder().Path() / "plain";
    std::filesystem::copy_file(user.Layout(), plain);
    user.LoadLayout(plain);
    EXPECT_EQ(user.StatusTexts().at(1), ToQString(plain));
    EXPECT_EQ(user.MenuStates(), "-R-LA");
    // Where both exist, the one that was typed; where only the other does, that one.
    std::filesystem::copy_file(user.Process(), user.Folder().Path() / "flow.txt");
    user.Folder().Write("process", "settings -version 3\nnonsense\n");
    user.StartRun(user.Folder().Path() / "process");
    EXPECT_TRUE(user.ConsoleLines().join('\n').contains("Error"));
    user.StartRun(user.Folder().Path() / "flow");
    user.WaitForRunEnd();
    EXPECT_EQ(user.StatusTexts().at(3), ToQString(user.Folder().Path() / "flow.txt"));
}

TEST(QtCommands, FileDialogFitsOnTheScreen) {
    DesktopUser user;
    const DialogAnswer answer([&](QDialog& dialog) {
        QTest::qWait(100);
        const QRect screen = dialog.screen()->geometry();
        EXPECT_TRUE(screen.contains(dialog.frameGeometry()))
            << dialog.frameGeometry().width() << " by " << dialog.frameGeometry().height() << " on "
            << screen.width() << " by " << screen.height();
        for (const char* text : {"Open", "Cancel"}) {
            const auto buttons = dialog.findChildren<QAbstractButton*>();
            const auto button = std::find_if(buttons.begin(), buttons.end(), [&](auto* candidate) {
                return candidate->text().remove('&') == text;
            });
            ASSERT_NE(button, buttons.end()) << text;
            const QPoint corner = (*button)->mapToGlobal((*button)->rect().bottomRight());
            EXPECT_TRUE(screen.contains(corner)) << text;
        }
        ClickButton(dialog, "Cancel");
    });
    user.Click("&Load GDSII");
    EXPECT_TRUE(answer.Given());
}

TEST(QtCommands, CancelledLayoutDialogChangesNothing) {
    DesktopUser user;
    const DialogAnswer answer([](QDialog& dialog) { ClickButton(dialog, "Cancel"); });
    user.Click("&Load GDSII");
    EXPECT_TRUE(answer.Given());
    EXPECT_EQ(user.ConsoleLines(),
              QStringList({"--- Handling \"Load GDS\" command ---", "GDS file selection failed"}));
    EXPECT_EQ(user.StatusTexts().at(1), "Not loaded");
    EXPECT_EQ(user.MenuStates(), "---LA");
}

TEST(QtCommands, FileThatDoesNotExistIsNotTaken) {
    DesktopUser user;
    const DialogAnswer answer([&](QDialog& dialog) {
        ChooseFile(dialog, "/no such file.gds");
        EXPECT_TRUE(dialog.isVisible());
        ClickButton(dialog, "Cancel");
    });
    user.Click("&Load GDSII");
    EXPECT_TRUE(answer.Given());
    EXPECT_EQ(user.ConsoleLines().constLast(), "GDS file selection failed");
}

TEST(QtCommands, LayoutWithErrorsLeavesTheOneBeforeIt) {
    DesktopUser user;
    user.LoadLayout();
    EXPECT_EQ(user.MenuStates(), "-R-LA");
    user.LoadLayout(user.Folder().Write("bad.gds", std::string("\0\2\0\2", 4)));
    EXPECT_TRUE(
        user.ConsoleLines().constLast().startsWith("Loading GDS database failed with error "))
        << user.ConsoleLines().constLast().toStdString();
    EXPECT_EQ(user.StatusTexts().at(1), ToQString(user.Layout()));
    EXPECT_EQ(user.MenuStates(), "-R-LA");
}

TEST(QtCommands, AboutShowsVersionsInPlainText) {
    DesktopUser user;
    const DialogAnswer answer([](QDialog& dialog) {
        const QMessageBox& box = AsMessageBox(dialog);
        EXPECT_EQ(box.windowTitle(), QString("Zelmo ") + programVersion);
        EXPECT_EQ(box.text(),
                  "Zelmo: software to render semicon process cross sections \n\n"
                  "Made by the Zelmo developers\n\nFor process file version 4");
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        ClickButton(dialog, "OK");
    });
    user.Click("&About");
    EXPECT_TRUE(answer.Given());
    EXPECT_EQ(user.ConsoleLines().size(), 1);
}

TEST(QtCommands, SavedPicturesAreThoseOfTheBatchProgram) {
    DesktopUser user;
    user.LoadLayout();
    user.Run();
    EXPECT_EQ(user.MenuStates(), "SR-LA");
    const auto saved = Files(user.SaveImages());
    EXPECT_EQ(user.ConsoleLines().constLast(), "Saving images completed");
    EXPECT_EQ(user.MenuStates(), "SR-LA");

    const auto output = user.Folder().Path() / "batch";
    QProcess batch;
    batch.start("./zelmo-batch", {"--format", "bmp", "--output", ToQString(output),
                                  ToQString(user.Layout()), ToQString(user.Process())});
    ASSERT_TRUE(batch.waitForFinished(120000)) << batch.errorString().toStdString();
    ASSERT_EQ(batch.exitCode(), 0) << batch.readAllStandardError().toStdString();
    const auto expected = Files(output);
    ASSERT_EQ(saved.size(), 5u);
    ASSERT_EQ(expected.size(), saved.size());
    for (const auto& [name, bytes] : expected) {
        ASSERT_EQ(saved.count(name), 1u) << name;
        EXPECT_TRUE(saved.at(name) == bytes) << name;
    }
}

TEST(QtCommands, SecondSaveWithinASecondIsRefusedInABox) {
    DesktopUser user;
    user.LoadLayout();
    user.StartRun(user.Folder().Write("one.txt",
                                      "settings -version 4 -N 200 -angle 40\n"
                                      "location -x 0 -y 0 -dx 8 -dy 8\ngds -cell TOP\n"));
    user.WaitForRunEnd();
    int refusals = 0;
    QString text;
    // Two saves may fall into two seconds; then the next two are tried.
    for (int attempt = 0; attempt < 20 && refusals == 0; ++attempt) {
        user.Click("&Save images");
        ASSERT_EQ(user.ConsoleLines().constLast().toStdString(), "Saving images completed");
        const DialogAnswer answer([&](QDialog& dialog) {
            ++refusals;
            text = AsMessageBox(dialog).text();
            ClickButton(dialog, "OK");
        });
        user.Click("&Save images");
        QTest::qWait(1000);
    }
    ASSERT_EQ(refusals, 1);
    EXPECT_TRUE(text.startsWith("Images not saved. Failed to create output folder \"" +
                                ToQString(user.Folder().Path() / "one") + " 20"))
        << text.toStdString();
    EXPECT_EQ(user.MenuStates(), "SR-LA");
}

TEST(QtCommands, FolderThatCannotBeMadeIsToldInABox) {
    DesktopUser user;
    user.LoadLayout();
    const auto folder = user.Folder().Path() / "work <b>";
    std::filesystem::create_directory(folder);
    std::filesystem::copy_file(user.Process(), folder / "flow.txt");
    user.StartRun(folder / "flow.txt");
    user.WaitForRunEnd();
    std::filesystem::remove_all(folder);
    const DialogAnswer answer([&](QDialog& dialog) {
        const QMessageBox& box = AsMessageBox(dialog);
        EXPECT_EQ(box.windowTitle(), "Zelmo");
        EXPECT_TRUE(box.text().startsWith("Images not saved. Failed to create output folder \"" +
                                          ToQString(folder / "flow") + " 20"));
        EXPECT_TRUE(box.text().endsWith("\"."));
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(user.MenuStates(), "----A");
        ClickButton(dialog, "OK");
    });
    user.Click("&Save images");
    EXPECT_TRUE(answer.Given());
    EXPECT_EQ(user.MenuStates(), "SR-LA");
}

}  // namespace

}  // namespace zelmo
