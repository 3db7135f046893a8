#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <new>
#include <random>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "base/debug_trace.h"
#include "tests/desktop/desktop.h"

namespace zelmo {
namespace {

const std::wstring stopLine =
    L"Handling \"Stop\" request: wait for current process step to complete";
const std::wstring closeLine = L"Closing application: wait for current process thread to complete";

/// Lines with their times replaced by #.
std::vector<std::wstring> WithoutTimes(const std::vector<std::wstring>& lines) {
    static const std::wregex time(L"[0-9]+\\.[0-9]{3} s");
    std::vector<std::wstring> masked;
    for (const std::wstring& line : lines) {
        masked.push_back(std::regex_replace(line, time, L"# s"));
    }
    return masked;
}

long Count(const std::vector<std::wstring>& lines, const std::wstring& line) {
    return std::count(lines.begin(), lines.end(), line);
}

std::vector<std::wstring> Tail(const std::vector<std::wstring>& lines, const std::wstring& from) {
    return {std::find(lines.begin(), lines.end(), from), lines.end()};
}

TEST(RunController, AProcessFileWithoutStepsStillRunsTheSubstrate) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.StartRun(desktop.ProcessFile(0));
    desktop.FinishRun();
    EXPECT_EQ(desktop.PictureNames(), (std::vector<std::wstring>{L"001 Substrate"}));
}

TEST(RunController, WritesTheLinesOfARunInTheirOrder) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.StartRun(desktop.ProcessFile(1));
    desktop.FinishRun();
    const auto lines = WithoutTimes(desktop.Lines());
    EXPECT_EQ(Tail(lines, L"EXECUTING PROCESS STEPS"),
              (std::vector<std::wstring>{
                  L"EXECUTING PROCESS STEPS", L"Executing Substrate ...", L"Completed in # s",
                  L"Executing layer1 deposition ...", L"Completed in # s",
                  L"All process steps completed in # sec", L"",
                  L"Use left and right arrows to browse through the process steps"}));
    const auto headline =
        std::find(lines.begin(), lines.end(), L"EXECUTING PROCESS STEPS") - lines.begin();
    EXPECT_EQ(lines[static_cast<std::size_t>(headline) - 1], L"");
}

TEST(RunController, HandsTheContextToTheWorkerAndKeepsItAfterTheRun) {
    Desktop desktop;
    desktop.LoadLayout();
    bool duringStep = true;
    desktop.DuringStep(L"layer1 deposition", [&] { duringStep = desktop.platform.HasContext(); });
    desktop.StartRun(desktop.ProcessFile(2));
    desktop.FinishRun();
    EXPECT_FALSE(duringStep);
    EXPECT_TRUE(desktop.platform.HasContext());
    EXPECT_EQ(desktop.platform.ContextConflicts(), 0);
}

TEST(RunController, StopLetsTheStepFinishAndKeepsItsPicture) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.DuringStep(L"layer2 deposition", [&] {
        desktop.window.HandleStop();
        EXPECT_FALSE(desktop.platform.Enabled(MenuEntry::Stop));
        EXPECT_TRUE(desktop.window.Running());
    });
    desktop.StartRun(desktop.ProcessFile(4));
    desktop.FinishRun();
    EXPECT_EQ(desktop.PictureNames(),
              (std::vector<std::wstring>{L"001 Substrate", L"002 layer1 deposition",
                                         L"003 layer2 deposition"}));
    EXPECT_FALSE(desktop.window.Running());
    const auto lines = WithoutTimes(desktop.Lines());
    EXPECT_EQ(Count(lines, L"All process steps completed in # sec"), 1);
    EXPECT_EQ(Count(lines, L"Executing layer3 deposition ..."), 0);
    desktop.window.HandleLeftKey();
    EXPECT_EQ(desktop.platform.Captions().back(), L"002 layer1 deposition");
}

TEST(RunController, CloseDuringAStepWaitsForItsPictureAndThenQuits) {
    Desktop desktop;
    desktop.LoadLayout();
    bool quitAtOnce = true;
    desktop.DuringStep(L"layer1 deposition", [&] {
        desktop.window.HandleClose();
        quitAtOnce = desktop.platform.QuitPosted();
    });
    desktop.StartRun(desktop.ProcessFile(3));
    desktop.FinishRun();
    EXPECT_FALSE(quitAtOnce);
    EXPECT_TRUE(desktop.platform.QuitPosted());
    EXPECT_EQ(desktop.window.Pictures().images.size(), 2u);
    const auto lines = WithoutTimes(desktop.Lines());
    EXPECT_EQ(Count(lines, closeLine), 1);
    EXPECT_EQ(lines.back(), L"Use left and right arrows to browse through the process steps");
}

TEST(RunController, CloseWithoutARunQuitsAtOnceWithoutAWord) {
    Desktop desktop;
    const auto before = desktop.Lines();
    desktop.window.HandleClose();
    EXPECT_TRUE(desktop.platform.QuitPosted());
    EXPECT_EQ(desktop.Lines(), before);
}

TEST(RunController, StopAndCloseInOneStepWriteTheLinesOfEachAndCloseAgainEveryTime) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.DuringStep(L"layer1 deposition", [&] {
        desktop.window.HandleStop();
        desktop.window.HandleClose();
        desktop.window.HandleClose();
    });
    desktop.StartRun(desktop.ProcessFile(3));
    desktop.FinishRun();
    const auto lines = WithoutTimes(desktop.Lines());
    EXPECT_EQ(Tail(lines, L"Executing layer1 deposition ...").front(),
              L"Executing layer1 deposition ...");
    EXPECT_EQ(Count(lines, stopLine), 1);
    EXPECT_EQ(Count(lines, closeLine), 2);
    const auto stop = std::find(lines.begin(), lines.end(), stopLine);
    ASSERT_NE(stop, lines.end());
    EXPECT_EQ(*(stop - 1), L"");
    EXPECT_EQ(*(stop + 1), L"");
    EXPECT_TRUE(desktop.platform.QuitPosted());
    EXPECT_EQ(desktop.window.Pictures().images.size(), 2u);
}

TEST(RunController, PictureNumbersGoOnInTheNextRun) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.StartRun(desktop.ProcessFile(4));
    desktop.FinishRun();
    EXPECT_EQ(desktop.PictureNames().front(), L"001 Substrate");
    desktop.StartRun(desktop.ProcessFile(4));
    desktop.FinishRun();
    const auto names = desktop.PictureNames();
    ASSERT_EQ(names.size(), 5u);
    EXPECT_EQ(names.front(), L"006 Substrate");
    EXPECT_EQ(names.back(), L"010 layer4 deposition");
}

TEST(RunController, EveryStepIsTracedWithItsThread) {
    static std::vector<std::string> traces;
    traces.clear();
    SetDebugTraceSink([](const char* text) { traces.emplace_back(text); });
    {
        Desktop desktop;
        desktop.LoadLayout();
        desktop.StartRun(desktop.ProcessFile(0));
        desktop.FinishRun();
    }
    SetDebugTraceSink(nullptr);
    std::vector<std::string> names;
    std::vector<std::string> threads;
    for (const std::string& trace : traces) {
        const auto end = trace.find(" (Thread ");
        names.push_back(trace.substr(0, end));
        threads.push_back(end == std::string::npos ? "" : trace.substr(end));
    }
    ASSERT_EQ(names, (std::vector<std::string>{"Handling run", "RunNext", "RunStepThread",
                                               "RunStepDone", "RunNext"}));
    EXPECT_NE(threads[1], threads[2]);
    EXPECT_EQ(threads[1], threads[3]);
    EXPECT_EQ(threads[1], threads[4]);
}

TEST(RunControllerDeathTest, AnExceptionInAStepEndsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            Desktop desktop;
            desktop.LoadLayout();
            desktop.platform.ObserveLines([](const std::wstring& line) {
                if (line == L"Executing layer1 deposition ...") {
                    throw std::bad_alloc();
                }
            });
            desktop.StartRun(desktop.ProcessFile(2));
            desktop.FinishRun();
        },
        "");
}

TEST(RunController, StopAndCloseAtAnyMomentEndEveryRun) {
    std::mt19937 random(20260);
    for (int round = 0; round < 60; ++round) {
        Desktop desktop;
        desktop.LoadLayout();
        const auto stopAt = static_cast<long>(random() % 14);
        const bool close = random() % 2 == 0;
        std::atomic<long> line = 0;
        desktop.platform.ObserveLines([&](const std::wstring&) {
            if (line++ == stopAt) {
                desktop.platform.Post([&] {
                    if (close) {
                        desktop.window.HandleClose();
                    } else if (desktop.platform.Enabled(MenuEntry::Stop)) {
                        desktop.window.HandleStop();
                    }
                });
            }
        });
        desktop.StartRun(desktop.ProcessFile(2));
        desktop.FinishRun();
        EXPECT_FALSE(desktop.window.Running());
        EXPECT_GE(desktop.window.Pictures().images.size(), 1u);
        EXPECT_EQ(desktop.platform.ContextConflicts(), 0);
    }
}

/// Runs a process while another thread, after some time, asks for `action` to be taken.
void RunWithInterruption(Desktop& desktop, std::chrono::microseconds after,
                         const std::function<void()>& action) {
    std::atomic<bool> taken = false;
    std::thread user([&] {
        std::this_thread::sleep_for(after);
        desktop.platform.Post([&] {
            action();
            taken = true;
        });
    });
    desktop.StartRun(desktop.ProcessFile(3));
    desktop.FinishRun();
    user.join();
    desktop.platform.RunLoopUntil([&] { return taken || desktop.platform.QuitPosted(); });
}

TEST(RunController, HundredsOfStopsOfOneSessionLeaveNoRunHanging) {
    std::mt19937 random(4711);
    Desktop desktop;
    desktop.LoadLayout();
    std::size_t cut = 0;
    for (int round = 0; round < 300; ++round) {
        RunWithInterruption(desktop, std::chrono::microseconds(random() % 12000), [&] {
            if (desktop.platform.Enabled(MenuEntry::Stop)) {
                desktop.window.HandleStop();
            }
        });
        ASSERT_FALSE(desktop.window.Running());
        const std::size_t pictures = desktop.window.Pictures().images.size();
        ASSERT_TRUE(pictures >= 1 && pictures <= 4) << pictures;
        cut += pictures < 4 ? 1 : 0;
        ASSERT_TRUE(desktop.platform.HasContext());
        ASSERT_TRUE(desktop.platform.Enabled(MenuEntry::RunProcess));
    }
    EXPECT_GT(cut, 10u);
    EXPECT_EQ(desktop.platform.ContextConflicts(), 0);
}

TEST(RunController, HundredsOfClosesEndTheProgramWithNothingUnderWay) {
    std::mt19937 random(4712);
    for (int round = 0; round < 200; ++round) {
        Desktop desktop;
        desktop.LoadLayout();
        RunWithInterruption(desktop, std::chrono::microseconds(random() % 12000),
                            [&] { desktop.window.HandleClose(); });
        ASSERT_TRUE(desktop.platform.QuitPosted());
        ASSERT_FALSE(desktop.window.Running());
        ASSERT_EQ(desktop.platform.ContextConflicts(), 0);
    }
}

}  // namespace
}  // namespace zelmo
