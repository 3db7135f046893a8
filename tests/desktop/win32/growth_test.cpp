#include <windows.h>

#include <psapi.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/desktop/win32/window_fixture.h"

namespace zelmo {

namespace {

/// How often: `times`, multiplied by the number in ZELMO_LONG_SESSION where that is set.
int Times(int times) {
    const char* factor = std::getenv("ZELMO_LONG_SESSION");
    return factor != nullptr ? times * std::atoi(factor) : times;
}

std::size_t MemoryInUse(HANDLE process) {
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(process, &counters, sizeof counters);
    return counters.WorkingSetSize;
}

void Print(const char* what, const ProbeObjects& before, const ProbeObjects& after) {
    std::printf("%s: GDI %u -> %u, USER %u -> %u, kernel %u -> %u, GL %u -> %u\n", what, before.gdi,
                after.gdi, before.user, after.user, before.kernel, after.kernel, before.gl,
                after.gl);
}

}  // namespace

using WindowGrowthTest = WindowTest;

TEST_F(WindowGrowthTest, RepaintsLeaveNothingBehind) {
    const int repaints = Times(500);
    StartWithLayout();
    Program().RunToEnd(Process());
    Program().Ask(ProbeRequest::Repaint, LPARAM{20});
    const ProbeObjects before = Program().Objects();
    const std::size_t memory = MemoryInUse(Program().Process());
    Program().Ask(ProbeRequest::Repaint, static_cast<LPARAM>(repaints));
    const ProbeObjects after = Program().Objects();
    Print("repaints", before, after);
    const auto allowed = static_cast<std::uint32_t>(repaints / 4);
    EXPECT_LT(after.gdi, before.gdi + allowed);
    EXPECT_LT(after.user, before.user + allowed);
    EXPECT_LT(after.kernel, before.kernel + allowed);
    EXPECT_EQ(after.gl, before.gl);
    const std::size_t memoryAfter = MemoryInUse(Program().Process());
    std::printf("memory %zu -> %zu\n", memory, memoryAfter);
    // A scaled picture has more than a megabyte.
    EXPECT_LT(memoryAfter, memory + 50000000);
}

TEST_F(WindowGrowthTest, RunsLeaveNothingBehind) {
    const int runs = Times(10);
    StartWithLayout();
    for (int i = 0; i < 3; ++i) {
        Program().RunToEnd(Process());
    }
    // The system's file dialog may keep something each time: first the dialog without the run.
    const ProbeObjects atStart = Program().Objects();
    for (int i = 0; i < runs; ++i) {
        Program().Command(runCommand);
        Program().ChooseFile(Program().WaitForDialog(L"Open process file"), Layout());
        Program().WaitForMenu("SR.LA");
    }
    const ProbeObjects before = Program().Objects();
    const std::size_t memory = MemoryInUse(Program().Process());
    for (int i = 0; i < runs; ++i) {
        Program().RunToEnd(Process());
    }
    const ProbeObjects after = Program().Objects();
    Print("dialogs", atStart, before);
    Print("runs", before, after);
    const auto expectNoMore = [&](std::uint32_t ProbeObjects::*kind) {
        const std::int64_t byDialogs = std::int64_t{before.*kind} - atStart.*kind;
        const std::int64_t byRuns = std::int64_t{after.*kind} - before.*kind;
        // One more for each step of each run would be 3 * runs.
        EXPECT_LE(byRuns, byDialogs + runs + 15);
    };
    expectNoMore(&ProbeObjects::gdi);
    expectNoMore(&ProbeObjects::user);
    expectNoMore(&ProbeObjects::kernel);
    EXPECT_EQ(after.gl, before.gl);
    // The pictures of a run have 25 MB.
    const std::size_t memoryAfter = MemoryInUse(Program().Process());
    std::printf("memory %zu -> %zu\n", memory, memoryAfter);
    EXPECT_LT(memoryAfter, memory + 100000000);
}

}  // namespace zelmo
