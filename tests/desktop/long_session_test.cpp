#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <string>

#include "examples/gds_writer.h"
#include "tests/desktop/desktop.h"
#include "tests/support/allocated_memory.h"

// Long sessions: the program holds as much memory after as before.

namespace zelmo {
namespace {

/// What may be held longer than it seems to be needed: buffers that grew to their working size.
constexpr std::size_t slack = 65536;

TEST(LongSession, AHundredRunsLeaveTheMemoryWhereItWas) {
    Desktop desktop;
    desktop.LoadLayout();
    const auto process = desktop.ProcessFile(6);
    const auto runAndBrowse = [&] {
        desktop.StartRun(process);
        desktop.FinishRun();
        for (int key = 0; key < 20; ++key) {
            key % 3 == 0 ? desktop.window.HandleLeftKey() : desktop.window.HandleRightKey();
        }
    };
    runAndBrowse();
    runAndBrowse();
    const std::size_t before = HeldMemory();
    for (int run = 0; run < 100; ++run) {
        runAndBrowse();
    }
    // The null desktop keeps the captions, one a key and one a picture.
    EXPECT_LT(HeldMemory(), before + slack + 100 * 27 * 256);
    EXPECT_EQ(desktop.window.Pictures().images.size(), 7u);
}

TEST(LongSession, ALoadedLayoutTakesThePlaceOfTheOneBefore) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.platform.ClearConsole();
    const std::size_t before = HeldMemory();
    for (int load = 0; load < 200; ++load) {
        desktop.LoadLayout();
        desktop.platform.ClearConsole();
    }
    EXPECT_LT(HeldMemory(), before + slack + 200 * 1024);
}

TEST(LongSession, AThousandPicturesAreKeptAndGivenBackByTheNextRun) {
    Desktop desktop;
    desktop.LoadLayout();
    const auto small = desktop.ProcessFile(1, "small.txt");
    desktop.StartRun(small);
    desktop.FinishRun();
    const std::size_t before = HeldMemory();
    desktop.StartRun(desktop.ProcessFile(999, "long.txt"));
    desktop.FinishRun();
    ASSERT_EQ(desktop.window.Pictures().images.size(), 1000u);
    EXPECT_EQ(desktop.PictureNames().back(), L"1002 layer999 deposition");
    for (int key = 0; key < 1000; ++key) {
        desktop.window.HandleRightKey();
    }
    EXPECT_EQ(desktop.platform.Captions().back(), L"1002 layer999 deposition");
    EXPECT_GT(HeldMemory(), before + 10000000);
    desktop.StartRun(small);
    desktop.FinishRun();
    EXPECT_LT(HeldMemory(), before + slack + 2000 * 256);
}

TEST(LongSession, FiftyThousandCellsAreAllListedAndSoonAndGivenBack) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.platform.ClearConsole();
    const std::size_t before = HeldMemory();
    GdsWriter writer;
    writer.BeginLibrary();
    for (int cell = 0; cell < 50000; ++cell) {
        writer.BeginCell("CELL_" + std::to_string(cell));
        writer.Rectangle(1, 0, 0, 1 + cell, 1);
        writer.EndCell();
    }
    writer.EndLibrary();
    const auto many = desktop.Folder() / "many.gds";
    writer.Save(many);
    desktop.platform.AnswerNextFileQuestion(many);
    const auto start = std::chrono::steady_clock::now();
    desktop.window.HandleLoadGds();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
    EXPECT_TRUE(desktop.HasLine(L"--> \"CELL_0\" with size dx = 1 by dy = 1"));
    EXPECT_TRUE(desktop.HasLine(L"--> \"CELL_49999\" with size dx = 50000 by dy = 1"));
    EXPECT_GT(desktop.Lines().size(), 50000u);
    writer = GdsWriter();
    desktop.LoadLayout();
    desktop.platform.ClearConsole();
    // The null desktop's list of lines keeps its room.
    EXPECT_LT(HeldMemory(), before + slack + 65536 * sizeof(std::wstring));
}

}  // namespace
}  // namespace zelmo
