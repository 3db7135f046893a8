#include "examples/gds_writer.h"
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

TEST_F(MemoryTest, TheLimitOfPolygonsIsMetWithinTwoGigabytes) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("SQUARE");
    writer.Rectangle(1, 0, 0, 100, 100);
    writer.EndCell();
    writer.BeginCell("TOP");
    writer.Array("SQUARE", 4000, 4000, {0, 0}, {8000, 0}, {0, 8000});
    writer.EndCell();
    writer.EndLibrary();
    WriteLayout(writer.Bytes());
    const Ended ended =
        RunToEnd("/bin/sh",
                 {"-c", "ulimit -v 2000000; exec \"$1\" --check square.gds flow.txt", "sh",
                  BatchProgram().string()},
                 {.workingFolder = folder_.Path()});
    ExpectRefusal(ended, 3, {"flow.txt", "ERROR: Reached the maximum number of polygons"});
}

}  // namespace
}  // namespace zelmo
