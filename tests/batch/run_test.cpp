#include "base/text.h"
#include "base/version.h"
#include "examples/gds_writer.h"
#include "tests/batch/batch_fixture.h"
#include "tests/support/gzip_writer.h"

namespace zelmo {
namespace {

constexpr const char* loadLines =
    "--- Handling \"Load GDS\" command ---\n"
    "Loading GDS database square.gds and calculating cell sizes\n"
    "\n"
    "CELLS IN DATABASE (database units):\n"
    "--> \"TOP\" with size dx = 7000 by dy = 7000\n"
    "\n"
    "GDS database finished loading in # s\n";

constexpr const char* prepareLines =
    "--- Handling \"Run\" command ---\n"
    "Successfully read process file \"flow.txt\"\n"
    "\n"
    "Extracting polygons\n"
    "Extracted 1 polygons with smallest size 4 um\n"
    "\n"
    "GDS cell TOP at (0.000 um, 0.000 um)\n"
    "Grid size: 200 x 200\n"
    "Grid spacing: 0.060 um\n"
    "GDS cell: TOP\n";

constexpr const char* endLines =
    "All process steps completed in # sec\n"
    "\n"
    "Use left and right arrows to browse through the process steps\n";

/// The lines of a run with steps of these descriptions, times masked.
std::string RunLines(const std::vector<std::string>& descriptions) {
    std::string lines = std::string(loadLines) + prepareLines + "\nEXECUTING PROCESS STEPS\n";
    for (const std::string& description : descriptions) {
        lines += "Executing " + description + " ...\nCompleted in # s\n";
    }
    return lines + endLines;
}

class RunTest : public BatchTest {};

TEST_F(RunTest, WritesTheLinesOfTheLoadAndTheRunToStandardOutput) {
    WriteProcess(
        "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
        "photo -name Hole -mask_id 1 -type 0 -res 0.2 -thickness 800\n"
        "etch -name Hole -targets oxide -depth 500 -iso 0.1\n"
        "strip -name Hole\n");
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.errors, "");
    EXPECT_EQ(MaskTimes(ended.output), RunLines({"Substrate", "Oxide deposition", "Hole photo",
                                                 "Hole etching", "Hole photoresist strip"}));
}

TEST_F(RunTest, ACompressedLayoutRunsLikeThePlainOne) {
    WriteProcess("photo -name Hole -mask_id 1 -type 0 -res 0.2 -thickness 800\nstrip -name Hole\n");
    const Ended plain = Run({"square.gds", "flow.txt", "-o", "plain"});
    WriteLayout(Gzipped(SquareLayout()));
    const Ended packed = Run({"square.gds", "flow.txt", "-o", "packed"});
    EXPECT_EQ(packed.status, 0) << packed.errors;
    EXPECT_EQ(packed.errors, "");
    EXPECT_EQ(MaskTimes(packed.output), MaskTimes(plain.output));
    ASSERT_EQ(FilesIn("packed"), FilesIn("plain"));
    for (const std::string& name : FilesIn("plain")) {
        EXPECT_EQ(FileText("packed/" + name), FileText("plain/" + name)) << name;
    }
}

TEST_F(RunTest, RepairReadsARefusedLayoutAndTellsALineForEachKind) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Path(1, {{3000, 5000}, {3000, 5000}, {7000, 5000}}, 4000);
    writer.Reference("NOWHERE", {0, 0});
    writer.EndCell();
    writer.EndLibrary();
    WriteLayout(writer.Bytes());
    WriteProcess("photo -name Hole -mask_id 1 -type 0 -res 0.2 -thickness 800\nstrip -name Hole\n");
    ExpectRefusal(Run({"square.gds", "flow.txt", "-o", "refused"}), 2, {"square.gds", "error 3"});
    const Ended repaired = Run({"--repair", "--quiet", "square.gds", "flow.txt", "-o", "repaired"});
    EXPECT_EQ(repaired.status, 0);
    EXPECT_EQ(repaired.output, "");
    EXPECT_EQ(repaired.errors,
              "zelmo-batch: warning: the layout square.gds was repaired: 1 path with repeated "
              "points, each of which counts once\n"
              "zelmo-batch: warning: the layout square.gds was repaired: 1 reference to cells that "
              "are not in the file, which are skipped (the first is \"NOWHERE\")\n");
    WriteLayout(SquareLayout());
    const Ended whole = Run({"--repair", "square.gds", "flow.txt", "-o", "whole"});
    EXPECT_EQ(whole.status, 0);
    EXPECT_EQ(whole.errors, "");
    ASSERT_EQ(FilesIn("repaired"), FilesIn("whole"));
    for (const std::string& name : FilesIn("whole")) {
        EXPECT_EQ(FileText("repaired/" + name), FileText("whole/" + name)) << name;
    }
}

TEST_F(RunTest, SavesOnePictureAStepUnderTheNamesOfSaveImages) {
    const Ended ended = Run({"square.gds", "flow.txt", "--output", "out"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(FilesIn("out"),
              (std::vector<std::string>{"001 001 Substrate.png", "002 002 Oxide deposition.png"}));
}

TEST_F(RunTest, AProcessWithoutStepsStillHasTheSubstrate) {
    WriteProcess("");
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(MaskTimes(ended.output), RunLines({"Substrate"}));
    EXPECT_EQ(FilesIn("out"), (std::vector<std::string>{"001 001 Substrate.png"}));
}

TEST_F(RunTest, LooksAtTheWindowAndTheCellOfTheCommandLine) {
    WriteProcess("photo -name Hole -mask_id 1 -type 0 -res 0.2 -thickness 800\n");
    const Ended fitted = Run({"--check", "--window", "fit:1", "square.gds", "flow.txt"});
    EXPECT_EQ(fitted.status, 0) << fitted.errors;
    EXPECT_NE(fitted.output.find("\nFitted location -x 2 -y 2 -dx 6 -dy 6\n"), std::string::npos);
    EXPECT_NE(fitted.output.find("\nGDS cell TOP at (2.000 um, 2.000 um)\n"), std::string::npos);
    const Ended given = Run({"--check", "--window", "-4,1,8,2", "square.gds", "flow.txt"});
    EXPECT_NE(given.output.find("\nGDS cell TOP at (-4.000 um, 1.000 um)\n"), std::string::npos);
    EXPECT_NE(given.output.find("\nGrid size: 200 x 51\n"), std::string::npos);
    ExpectRefusal(Run({"--check", "--cell", "OTHER", "square.gds", "flow.txt"}), 3,
                  {"flow.txt", "Cell name OTHER was not found in the GDS database"});
}

TEST_F(RunTest, CheckPreparesAndRunsNothing) {
    const Ended ended = Run({"--check", "square.gds", "flow.txt", "-o", "out"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.errors, "");
    EXPECT_EQ(MaskTimes(ended.output), std::string(loadLines) + prepareLines);
    EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
}

TEST_F(RunTest, NoPicturesRunsTheStepsAndMakesNoFolder) {
    const Ended ended = Run({"--no-pictures", "square.gds", "flow.txt"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.errors, "");
    EXPECT_EQ(MaskTimes(ended.output), RunLines({"Substrate", "Oxide deposition"}));
    EXPECT_EQ(FilesIn("."), (std::vector<std::string>{"flow.txt", "square.gds"}));
}

TEST_F(RunTest, QuietWritesNothingToStandardOutput) {
    const Ended ended = Run({"--quiet", "square.gds", "flow.txt", "-o", "out"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.errors, "");
    EXPECT_EQ(FilesIn("out").size(), 2u);
}

TEST_F(RunTest, TheDefaultFolderStandsBesideTheProcessFileWithItsNameAndTheTime) {
    std::filesystem::create_directory(InFolder("sub"));
    std::filesystem::rename(InFolder("flow.txt"), InFolder("sub/flow.v2.txt"));
    const Ended ended = Run({"square.gds", "sub/../sub/flow.v2.txt"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    const std::vector<std::string> files = FilesIn("sub");
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[1], "flow.v2.txt");
    EXPECT_EQ(files[0].size(), std::string("flow.v2 2024-03-01 14-05-09").size());
    EXPECT_TRUE(files[0].starts_with("flow.v2 20")) << files[0];
    EXPECT_EQ(FilesIn("sub/" + files[0]).size(), 2u);
}

TEST_F(RunTest, TheOutputFolderIsMadeWithItsParents) {
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "a/b/c"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(FilesIn("a/b/c").size(), 2u);
}

TEST_F(RunTest, AnExistingFolderKeepsItsOtherFiles) {
    std::filesystem::create_directory(InFolder("out"));
    folder_.Write("out/notes.txt", "kept");
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(FilesIn("out").size(), 3u);
    EXPECT_EQ(FileText("out/notes.txt"), "kept");
}

TEST_F(RunTest, TakesNamesBeyondAscii) {
    const std::string name = "\xC3\xA9\xE2\x82\xAC";  // é€
    std::filesystem::rename(InFolder("flow.txt"),
                            folder_.Path() / PathFromText(WideFromUtf8(name + ".txt")));
    const Ended ended = Run({"square.gds", name + ".txt", "-o", name});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_NE(ended.output.find("Successfully read process file \"" + name + ".txt\"\n"),
              std::string::npos)
        << ended.output;
    EXPECT_EQ(FilesIn(".").size(), 3u);
}

TEST_F(RunTest, WidensBytesOfTheProcessFileToOddCharacters) {
    WriteProcess("deposition -name \xE4 -type oxide -thickness 500 -color 200 100 50 100\n");
    const Ended ended = Run({"square.gds", "flow.txt", "--no-pictures"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_NE(ended.output.find("Executing \xEF\xBF\xA4 deposition ...\n"), std::string::npos);
}

TEST_F(RunTest, VariablesAreReplacedByTheirValuesOrDefaults) {
    WriteProcess(
        "deposition -name ${N:-Oxide} -type oxide -thickness ${T} -color 200 100 50 100\n");
    const Ended ended = Run({"square.gds", "flow.txt", "--no-pictures", "--set", "T=500"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(MaskTimes(ended.output), RunLines({"Substrate", "Oxide deposition"}));
    ExpectRefusal(Run({"square.gds", "flow.txt", "--check", "--quiet"}), 3,
                  {"flow.txt", "Error in line 4: No decimal number found reading -thickness"});
    ExpectRefusal(
        Run({"square.gds", "flow.txt", "--check", "--quiet", "--set", "T=1", "--set", "n=x"}), 3,
        {"flow.txt", "n is set, but no variable of the file: did you mean N?"});
    ExpectRefusal(Run({"square.gds", "flow.txt", "--set", "T=5 0"}), 1, {"--set", "blank"});
}

TEST_F(RunTest, ColumnsOfTheCommandLineMakeTheGrid) {
    WriteProcess("");
    const Ended ended = Run({"square.gds", "flow.txt", "--no-pictures", "--columns", "300"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_NE(ended.output.find("Grid size: 300 x 300\n"), std::string::npos) << ended.output;
}

TEST_F(RunTest, DumpWritesIntoTheCurrentDirectory) {
    WriteProcess("dump\n");
    const Ended ended = Run({"--no-pictures", "square.gds", "flow.txt"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.errors, "");
    std::string text = FileText("VertexData.txt");
    std::erase(text, '\r');
    const std::string start =
        "\nCOVER LAYER ID: 0\tHEIGHT: 0.5000000000\n"
        "M: 0\tN: 0\tL: 0\tBOT: 0.000000000000\tTOP: 0.500000000000\tTHI: 0.500000000000\n\n";
    EXPECT_EQ(text.substr(0, start.size()), start);
}

TEST_F(RunTest, DumpReplacesAnOlderFileNotWithoutAWord) {
    WriteProcess("dump\n");
    folder_.Write("VertexData.txt", "old");
    const Ended ended = Run({"--no-pictures", "square.gds", "flow.txt"});
    ExpectRefusal(ended, 0, {"warning", "VertexData.txt"});
    EXPECT_NE(FileText("VertexData.txt"), "old");
}

TEST_F(RunTest, LayersWithNothingLeftLeaveTheStackWithoutPicturesToo) {
    // The oxide is slot 1: once etched away it is gone from the dump, and the nitride is slot 2.
    WriteProcess(
        "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
        "etch -name All -targets oxide -depth 900 -iso 0\n"
        "deposition -name Nitride -type nitride -thickness 100 -color 20 100 50 100\n"
        "dump\n");
    for (const char* pictures : {"--no-pictures", "--output=out"}) {
        const Ended ended = Run({pictures, "square.gds", "flow.txt"});
        EXPECT_EQ(ended.status, 0) << ended.errors;
        const std::string text = FileText("VertexData.txt");
        EXPECT_NE(text.find("L: 0\t"), std::string::npos);
        EXPECT_EQ(text.find("L: 1\t"), std::string::npos);
        EXPECT_NE(text.find("L: 2\t"), std::string::npos);
        std::filesystem::remove(InFolder("VertexData.txt"));
    }
}

TEST_F(RunTest, HelpAndVersionGoToStandardOutput) {
    const Ended help = Run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    for (const char* option : {"LAYOUT.gds", "PROCESS.txt", "-o,--output", "--format", "--check",
                               "--no-pictures", "--assets", "--quiet", "--set NAME=VALUE",
                               "--columns N", "--angle DEG", "--help", "--version"}) {
        EXPECT_NE(help.output.find(option), std::string::npos) << option;
    }
    const Ended version = Run({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, std::string("zelmo-batch ") + programVersion + "\n");
    EXPECT_EQ(version.errors, "");
}

TEST_F(RunTest, TheAssetsMayLieInTheCurrentDirectoryOrAGivenOne) {
    // An own table with one more colour shows which one was read.
    std::filesystem::create_directory(InFolder("assets"));
    folder_.Write("assets/colors.txt", "zelmogreen X 1, 2, 3\n");
    WriteProcess("coating -name Oxide -type oxide -thickness 500 -scolor zelmogreen\n");
    EXPECT_EQ(Run({"--no-pictures", "square.gds", "flow.txt"}).status, 3);
    EXPECT_EQ(Run({"--no-pictures", "--assets", "assets", "square.gds", "flow.txt"}).status, 0);
}

}  // namespace
}  // namespace zelmo
