#include <GL/glew.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <QAction>
#include <QTest>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <random>

#include "tests/qt/desktop_user.h"

namespace zelmo {

namespace {

/// What a session may not use more and more of.
struct Holdings {
    std::size_t bytes = 0;
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

/// OpenGL on the processor keeps the memory of the frames that it had under way at once, which are
/// more or fewer by chance. A picture that stayed behind in every round would be more.
constexpr std::size_t keptByOpenGl = std::size_t{32} << 20;

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
    for (int run = 0; run < Times(5, 100); ++run) {
        user.Run();
    }
    for (int repaint = 0; repaint < Times(200, 10000); ++repaint) {
        user.PressKey(repaint % 2 == 0 ? Qt::Key_Left : Qt::Key_Right);
        user.Picture().repaint();
    }
    const Holdings after = Count();
    EXPECT_EQ(after.glObjects, before.glObjects);
    EXPECT_EQ(after.openFiles, before.openFiles);
    EXPECT_LT(after.bytes, before.bytes + keptByOpenGl);
}

TEST(QtLongSession, StopsAtAnyMomentLeaveNoRunHangingAndNothingBehind) {
    std::mt19937 random(99);
    DesktopUser user;
    user.LoadLayout();
    user.Run();
    user.Run();
    const Holdings before = Count();
    for (int round = 0; round < Times(6, 300); ++round) {
        user.StartRun();
        QTest::qWait(static_cast<int>(random() % 250));
        if (user.Entry("&Stop")->isEnabled()) {
            user.Click("&Stop");
        }
        user.WaitForRunEnd();
    }
    user.Run();
    const Holdings after = Count();
    EXPECT_EQ(after.glObjects, before.glObjects);
    EXPECT_EQ(after.openFiles, before.openFiles);
    EXPECT_LT(after.bytes, before.bytes + keptByOpenGl);
}

}  // namespace

}  // namespace zelmo
