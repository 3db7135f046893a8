#include <GL/glew.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <filesystem>
#include <iterator>

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

TEST(QtLongSession, RunsAndRepaintsLeaveNothingBehind) {
    DesktopUser user;
    user.LoadLayout();
    user.Run();
    user.Run();
    const Holdings before = Count();
    EXPECT_GT(before.glObjects, 0);
    for (int run = 0; run < 5; ++run) {
        user.Run();
    }
    for (int repaint = 0; repaint < 200; ++repaint) {
        user.PressKey(repaint % 2 == 0 ? Qt::Key_Left : Qt::Key_Right);
        user.Picture().repaint();
    }
    const Holdings after = Count();
    EXPECT_EQ(after.glObjects, before.glObjects);
    EXPECT_EQ(after.openFiles, before.openFiles);
    EXPECT_LT(after.bytes, before.bytes + (1u << 20));
}

}  // namespace

}  // namespace zelmo
