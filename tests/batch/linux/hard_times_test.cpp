#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <thread>

#include "tests/batch/batch_fixture.h"
#include "tests/support/linux/no_fonts.h"

// A system that gives the program less than it asks for.

namespace zelmo {
namespace {

class HardTimesTest : public BatchTest {
protected:
    /// Runs the program from a shell that `prepares` something first.
    Ended RunAfter(const std::string& prepares, const std::vector<std::string>& arguments,
                   const Launch& launch = {}) const {
        std::vector<std::string> all{"-c", prepares + "; exec \"$@\"", "sh",
                                     BatchProgram().string()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        Launch here = launch;
        here.workingFolder = folder_.Path();
        return RunToEnd("/bin/sh", all, here);
    }
};

TEST_F(HardTimesTest, WithoutAGlDriverNoStepIsRun) {
    // Neither a vendor's library nor a driver for it is where these point to.
    const std::string nowhere = InFolder("nowhere").string();
    const Launch launch{.environment = {{"__EGL_VENDOR_LIBRARY_DIRS", nowhere},
                                        {"__EGL_VENDOR_LIBRARY_FILENAMES", nowhere},
                                        {"LIBGL_DRIVERS_PATH", nowhere}}};
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"}, launch);
    ExpectRefusal(ended, 4, {"no OpenGL"});
    EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
    EXPECT_EQ(Run({"--no-pictures", "square.gds", "flow.txt"}, launch).status, 0);
    EXPECT_EQ(Run({"--check", "square.gds", "flow.txt"}, launch).status, 0);
}

TEST_F(HardTimesTest, WithoutAFontTheRunEndsAtItsFirstPicture) {
    const Launch launch{.environment = {{"FONTCONFIG_FILE", ConfigurationWithoutFonts(folder_)}}};
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"}, launch);
    EXPECT_EQ(ended.status, 4);
    EXPECT_EQ(ended.errors,
              "zelmo-batch: the picture \"001 Substrate\" could not be made: There is no font for "
              "the labels of the pictures\n");
    EXPECT_EQ(ended.output.find("Oxide"), std::string::npos) << "no second step";
    EXPECT_TRUE(FilesIn("out").empty());
}

TEST_F(HardTimesTest, TheProgramStartsWithoutAnyGlLibrary) {
    // What is loaded before main() would keep the program from saying why there are no pictures.
    const Launch launch{.environment = {{"LD_TRACE_LOADED_OBJECTS", "1"}}};
    const Ended ended = Run({}, launch);
    EXPECT_NE(ended.output.find("libc.so"), std::string::npos);
    for (const char* library : {"libEGL", "libGL.", "libOpenGL", "libGLX"}) {
        EXPECT_EQ(ended.output.find(library), std::string::npos) << library;
    }
}

TEST_F(HardTimesTest, ADiskThatTakesNoModelIsToldAndKeepsNone) {
    for (const char* file : {"s.glb", "s.stl"}) {
        // The model of a step needs more than 1 KiB.
        const Ended ended = RunAfter("ulimit -f 2", {"--no-pictures", "--no-notes", "square.gds",
                                                     "flow.txt", "--export", file});
        ExpectRefusal(ended, 5, {file, "could not be written", "File too large"});
        EXPECT_FALSE(std::filesystem::exists(InFolder(file)));
        EXPECT_NE(ended.output.find("All process steps completed"), std::string::npos);
    }
}

TEST_F(HardTimesTest, ADiskThatTakesNoPictureIsToldForEachAndKeepsNone) {
    for (const char* format : {"bmp", "png"}) {
        // Files of at most 2 KiB: no picture fits.
        const Ended ended = RunAfter("ulimit -f 4", {"--format", format, "square.gds", "flow.txt",
                                                     "-o", std::string("out-") + format});
        EXPECT_EQ(ended.status, 4);
        EXPECT_EQ(std::count(ended.errors.begin(), ended.errors.end(), '\n'), 2) << ended.errors;
        for (const char* picture : {"001 001 Substrate.", "002 002 Oxide deposition."}) {
            const std::size_t at = ended.errors.find(std::string(picture) + format);
            ASSERT_NE(at, std::string::npos) << ended.errors;
            EXPECT_NE(ended.errors.find("File too large", at), std::string::npos) << ended.errors;
        }
        EXPECT_EQ(FilesIn(std::string("out-") + format).size(), 0u);
        EXPECT_NE(ended.output.find("All process steps completed"), std::string::npos);
    }
}

TEST_F(HardTimesTest, PicturesThatFitAreWrittenBesideOneThatDoesNot) {
    // The picture of the thick film is the tallest.
    WriteProcess(
        "deposition -name Oxide -type oxide -thickness 9000 -color 200 100 50 100\n"
        "etch -name All -targets oxide -depth 99000 -iso 0\n");
    ASSERT_EQ(Run({"--format", "bmp", "square.gds", "flow.txt", "-o", "all"}).status, 0);
    const auto size = [&](const char* name) {
        return std::filesystem::file_size(InFolder(std::string("all/") + name));
    };
    const auto room = size("001 001 Substrate.bmp") / 512 + 1;
    ASSERT_GT(size("002 002 Oxide deposition.bmp"), room * 512);
    ASSERT_LE(size("003 003 All etching.bmp"), room * 512);
    const Ended ended = RunAfter("ulimit -f " + std::to_string(room),
                                 {"--format", "bmp", "square.gds", "flow.txt", "-o", "out"});
    ExpectRefusal(ended, 4, {"002 002 Oxide deposition.bmp", "File too large"});
    EXPECT_EQ(FilesIn("out"),
              (std::vector<std::string>{"001 001 Substrate.bmp", "003 003 All etching.bmp"}));
}

TEST_F(HardTimesTest, AFullStandardOutputIsToldAtTheEndOfTheRun) {
    const Launch launch{.standardOutput = "/dev/full"};
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"}, launch);
    ExpectRefusal(ended, 5, {"standard output", "No space left on device"});
    EXPECT_EQ(FilesIn("out").size(), 2u);
    ExpectRefusal(Run({"--help"}, launch), 5, {"standard output"});
    EXPECT_EQ(Run({"--quiet", "square.gds", "flow.txt", "-o", "quiet"}, launch).status, 0);
}

TEST_F(HardTimesTest, AClosedStandardOutputMixesNothingUp) {
    const Ended ended = RunAfter("exec >&-", {"square.gds", "flow.txt", "-o", "out"});
    ExpectRefusal(ended, 5, {"standard output"});
    EXPECT_EQ(FilesIn("out").size(), 2u);
    EXPECT_EQ(FileText("out/001 001 Substrate.png").substr(1, 3), "PNG");
    EXPECT_EQ(RunAfter("exec >&- 2>&-", {"square.gds", "flow.txt", "-o", "none"}).status, 5);
    EXPECT_EQ(RunAfter("exec <&- 2>&-", {"square.gds", "flow.txt", "-o", "some"}).status, 0);
}

TEST_F(HardTimesTest, AReaderThatGoesAwayDoesNotKillTheRun) {
    const Ended ended =
        RunToEnd("/bin/sh",
                 {"-c", "(\"$1\" square.gds flow.txt -o out; echo \"status $?\" >&2) | true", "sh",
                  BatchProgram().string()},
                 {.workingFolder = folder_.Path()});
    // The few lines may also have been written before the reader went.
    EXPECT_TRUE(ended.errors.ends_with("status 5\n") || ended.errors.ends_with("status 0\n"))
        << ended.errors;
    EXPECT_EQ(FilesIn("out").size(), 2u);
}

TEST_F(HardTimesTest, AFolderWithoutPermission) {
    if (geteuid() == 0) {
        // Permissions hold nobody back here; the kernel's own file systems do.
        ExpectRefusal(Run({"square.gds", "flow.txt", "-o", "/proc/zelmo"}), 4, {"/proc/zelmo"});
        ExpectRefusal(Run({"square.gds", "flow.txt", "-o", "/proc"}), 4, {"/proc"});
        return;
    }
    std::filesystem::create_directory(InFolder("out"));
    std::filesystem::permissions(InFolder("out"), std::filesystem::perms::owner_read);
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"});
    ExpectRefusal(ended, 4, {"out", "Permission denied"});
    EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
}

/// What a terminal at standard error sees of a run that ends well.
class TerminalTest : public BatchTest {
protected:
    std::string Seen(std::vector<std::string> options) {
        options.insert(options.end(), {"--no-pictures", "square.gds", "flow.txt"});
        const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
        EXPECT_GE(terminal, 0);
        EXPECT_EQ(grantpt(terminal), 0);
        EXPECT_EQ(unlockpt(terminal), 0);
        const std::string name = ptsname(terminal);
        const int kept = open(name.c_str(), O_RDWR | O_NOCTTY);  // until all was read
        std::string seen;
        std::thread reader([&] {
            char bytes[4096];
            for (ssize_t count; (count = read(terminal, bytes, sizeof bytes)) > 0;) {
                seen.append(bytes, static_cast<std::size_t>(count));
            }
        });
        const Ended ended = Run(options, {.standardError = name});
        close(kept);
        reader.join();
        close(terminal);
        EXPECT_EQ(ended.status, 0);
        EXPECT_EQ(ended.output.find("step 1 of 2"), std::string::npos);
        EXPECT_EQ(ended.output.find("step, s"), std::string::npos);
        return seen;
    }
};

TEST_F(TerminalTest, SeesTheProgressOfTheRunAndThenWhatTookTheTime) {
    WriteProcess("deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n");
    const std::string seen = Seen({});
    EXPECT_NE(seen.find("step 1 of 2: Substrate, 0 s"), std::string::npos) << seen;
    EXPECT_NE(seen.find("step 2 of 2: Oxide deposition, "), std::string::npos) << seen;
    const std::size_t table = seen.find(" \r  step, s   picture\r\n");
    ASSERT_NE(table, std::string::npos) << seen;
    EXPECT_NE(seen.find("  1: Substrate\r\n", table), std::string::npos) << seen;
    EXPECT_NE(seen.find("  2: Oxide deposition\r\n", table), std::string::npos) << seen;
    EXPECT_TRUE(seen.ends_with("  all\r\n")) << seen;
}

TEST_F(TerminalTest, SeesNothingOfAQuietRun) {
    WriteProcess("deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n");
    EXPECT_EQ(Seen({"--quiet"}), "");
}

}  // namespace
}  // namespace zelmo
