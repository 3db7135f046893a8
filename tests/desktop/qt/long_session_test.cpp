#include <GL/glew.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <QAction>
#include <QTest>
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <limits>
#include <random>

#include "tests/desktop/qt/desktop_user.h"

namespace zelmo {

namespace {

/// What a session may not use more and more of.
struct Holdings {
    std::size_t bytes = 0;  ///< of memory
    int glObjects = 0;
    int openFiles = 0;
};

Holdings Count() {
    Holdings holdings;
    const auto memory = mallinfo2();
    holdings.bytes = memory.uordblks + memory.hblkhd;
    for (GLuint name = 1; name < 20000; ++name) {
        holdings.glObjects += glIsBuffer(name) + glIsVertexArray(name) + glIsFramebuffer(name) +
                              glIsRenderbuffer(name) + glIsTexture(name) + glIsList(name);
    }
    const std::filesystem::directory_iterator files("/proc/self/fd");
    holdings.openFiles = static_cast<int>(std::distance(begin(files), end(files)));
    return holdings;
}

/// A picture has eight times as much.
constexpr std::ptrdiff_t littleMemory = std::ptrdiff_t{1} << 20;

/// OpenGL on the processor keeps the memory of all that it ever had under way at once, which grows
/// by chance, up to about so much.
constexpr std::size_t mostKeptByOpenGl = std::size_t{160} << 20;

/// The least that memory grows by in a round. What is left behind in every round shows in all.
template <typename Round>
std::ptrdiff_t LeastGrowth(int rounds, Round&& round) {
    auto least = std::numeric_limits<std::ptrdiff_t>::max();
    auto bytes = static_cast<std::ptrdiff_t>(Count().bytes);
    for (int i = 0; i < rounds; ++i) {
        round();
        const auto now = static_cast<std::ptrdiff_t>(Count().bytes);
        least = std::min(least, now - bytes);
        bytes = now;
    }
    return least;
}

/// How often something is done: `usual`, or `often` with ZELMO_LONG in the environment.
int Times(int usual, int often) {
    return std::getenv("ZELMO_LONG") != nullptr ? often : usual;
}

TEST(QtLongSession, RunsAndRepaintsLeaveNothingBehind) {
    DesktopUser user;
    user.LoadLayout();
    user.Run();
    user.Run();
    const Holdings before = Count();
    EXPECT_GT(before.glObjects, 0);
    EXPECT_LT(LeastGrowth(Times(5, 100), [&] { user.Run(); }), littleMemory);
    const auto repaint = [&] {
        for (int i = 0; i < 20; ++i) {
            user.PressKey(i % 2 == 0 ? Qt::Key_Left : Qt::Key_Right);
            user.Picture().repaint();
        }
    };
    EXPECT_LT(LeastGrowth(Times(10, 500), repaint), littleMemory);
    const Holdings after = Count();
    EXPECT_EQ(after.glObjects, before.glObjects);
    EXPECT_EQ(after.openFiles, before.openFiles);
    EXPECT_LT(after.bytes, before.bytes + mostKeptByOpenGl);
}

TEST(QtLongSession, StopsAtAnyMomentLeaveNoRunHangingAndNothingBehind) {
    std::mt19937 random(99);
    DesktopUser user;
    user.LoadLayout();
    user.Run();
    user.Run();
    const Holdings before = Count();
    const auto stopAndRun = [&] {
        for (int round = 0; round < Times(2, 50); ++round) {
            user.StartRun();
            QTest::qWait(static_cast<int>(random() % 250));
            if (user.Entry("&Stop")->isEnabled()) {
                user.Click("&Stop");
            }
            user.WaitForRunEnd();
        }
        user.Run();
    };
    EXPECT_LT(LeastGrowth(Times(3, 6), stopAndRun), littleMemory);
    const Holdings after = Count();
    EXPECT_EQ(after.glObjects, before.glObjects);
    EXPECT_EQ(after.openFiles, before.openFiles);
    EXPECT_LT(after.bytes, before.bytes + mostKeptByOpenGl);
}

}  // namespace

}  // namespace zelmo
