#include "tests/batch/batch_fixture.h"

// Not for builds with sanitizers, which need more room than this leaves them.

namespace zelmo {
namespace {

class MemoryTest : public BatchTest {};

TEST_F(MemoryTest, MemoryThatRunsOutIsALineAndNoCrash) {
    folder_.Write("flow.txt",
                  "settings -version 4 -N 2000\nlocation -x 0 -y 0 -dx 10 -dy 10\ngds -cell TOP\n");
    // The cover map and the neighbour table alone take more than 200 MB.
    const Ended ended =
        RunToEnd("/bin/sh",
                 {"-c", "ulimit -v 60000; exec \"$1\" --no-pictures square.gds flow.txt", "sh",
                  BatchProgram().string()},
                 {.workingFolder = folder_.Path()});
    ExpectRefusal(ended, 3, {"flow.txt", "not enough memory"});
}

}  // namespace
}  // namespace zelmo
