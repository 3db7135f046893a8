#include "examples/gds_writer.h"
#include "tests/batch/batch_fixture.h"
#include "tests/support/gzip_writer.h"

namespace zelmo {
namespace {

class RefusalsTest : public BatchTest {
protected:
    /// Runs without pictures, so that only the two files matter.
    Ended RunFiles() const { return Run({"--no-pictures", "square.gds", "flow.txt"}); }
};

TEST_F(RefusalsTest, WrongUsageIsOneLineThatLeadsToTheHelp) {
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"square.gds"},
        {"square.gds", "flow.txt", "third"},
        {"--format", "jpeg", "square.gds", "flow.txt"},
        {"--format", "square.gds", "flow.txt"},
        {"--unknown", "square.gds", "flow.txt"},
        {"square.gds", "flow.txt", "-o"},
        {"square.gds", "flow.txt", "-o", ""},
        {"square.gds", "flow.txt", "-o", "a", "-o", "b"},
        {"square.gds", "flow.txt", "--assets", ""},
        {"--check=maybe", "square.gds", "flow.txt"},
    };
    for (const auto& arguments : wrong) {
        const Ended ended = Run(arguments);
        ExpectRefusal(ended, 1, {"--help"});
        EXPECT_EQ(ended.output, "");
    }
    EXPECT_EQ(FilesIn(".").size(), 2u);
}

TEST_F(RefusalsTest, AMissingLayout) {
    const Ended ended = Run({"--no-pictures", "absent.gds", "flow.txt"});
    ExpectRefusal(ended, 2, {"absent.gds", "there is no such file", "2"});
    EXPECT_EQ(ended.output,
              "--- Handling \"Load GDS\" command ---\n"
              "Loading GDS database absent.gds and calculating cell sizes\n"
              "Loading GDS database failed with error 2\n");
}

TEST_F(RefusalsTest, AFolderInPlaceOfTheLayout) {
    std::filesystem::create_directory(InFolder("folder.gds"));
    ExpectRefusal(Run({"--no-pictures", "folder.gds", "flow.txt"}), 2,
                  {"folder.gds", "it is a folder"});
}

TEST_F(RefusalsTest, ATextInPlaceOfTheLayout) {
    folder_.Write("square.gds", std::string("\0\2\0\2 no layout", 14));
    const Ended ended = RunFiles();
    ExpectRefusal(ended, 2, {"square.gds", "shorter than its own header", "5"});
    EXPECT_TRUE(ended.output.ends_with("Loading GDS database failed with error 5\n"));
}

TEST_F(RefusalsTest, ADamagedCompressedLayoutIsToldWithTheByteAndAWayOut) {
    const std::vector<std::uint8_t> whole = Gzipped(SquareLayout());
    std::vector<std::uint8_t> damaged = whole;
    damaged.back() ^= 1;
    WriteLayout(damaged);
    const Ended ended = RunFiles();
    ExpectRefusal(ended, 2, {});
    EXPECT_EQ(ended.errors,
              "zelmo-batch: the layout square.gds did not load: the gzip-compressed file does not "
              "match its check sum at byte " +
                  std::to_string(whole.size()) +
                  " (error 2): fetch it once more from where it came from\n");
    EXPECT_TRUE(ended.output.ends_with("Loading GDS database failed with error 2\n"));
}

TEST_F(RefusalsTest, ACompressedLayoutCutAnywhereIsToldAsSuch) {
    const std::vector<std::uint8_t> whole = Gzipped(SquareLayout());
    for (std::size_t length = 3; length < whole.size(); length += 7) {
        WriteLayout({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        ExpectRefusal(RunFiles(), 2,
                      {"square.gds", "ends too early at byte " + std::to_string(length) + " "});
    }
}

TEST_F(RefusalsTest, WhatElseCanBeWrongWithACompressedLayout) {
    std::vector<std::uint8_t> bytes = Gzipped(SquareLayout());
    WriteLayout(Gzipped(bytes));
    ExpectRefusal(RunFiles(), 2, {"square.gds", "holds another", "unpack it once"});
    bytes.push_back('x');
    WriteLayout(bytes);
    ExpectRefusal(RunFiles(), 2, {"goes on with something else at byte", "unpack it"});
    bytes[3] = 0xFF;
    WriteLayout(bytes);
    ExpectRefusal(RunFiles(), 2, {"is damaged at byte 4 ", "fetch it once more"});
}

TEST_F(RefusalsTest, ACellThatRefersToItself) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Reference("SUB", {0, 0});
    writer.EndCell();
    writer.BeginCell("SUB");
    writer.Reference("TOP", {0, 0});
    writer.EndCell();
    writer.EndLibrary();
    WriteLayout(writer.Bytes());
    const Ended ended = RunFiles();
    ExpectRefusal(ended, 2, {"square.gds", "a cell refers to itself", "30"});
    EXPECT_TRUE(ended.output.ends_with("Loading GDS database failed with error 30\n"));
}

TEST_F(RefusalsTest, APathWithoutPoints) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.RecordU16(0x0900, {});
    writer.RecordU16(0x0D02, {1});
    writer.RecordU16(0x1100, {});
    writer.EndCell();
    writer.EndLibrary();
    WriteLayout(writer.Bytes());
    ExpectRefusal(RunFiles(), 2, {"square.gds", "invalid vector subscript"});
}

TEST_F(RefusalsTest, ALayoutCutAnywhereEndsWithOneLineOrRuns) {
    const std::vector<std::uint8_t> whole = SquareLayout();
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        WriteLayout({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        const Ended ended = Run({"--check", "square.gds", "flow.txt"});
        if (ended.status != 0) {
            // With the cell lost, it is the process file that cannot be run.
            EXPECT_TRUE(ended.status == 2 || ended.status == 3) << length;
            ExpectRefusal(ended, ended.status, {ended.status == 2 ? "square.gds" : "flow.txt"});
        }
    }
}

TEST_F(RefusalsTest, AMissingProcessFile) {
    const Ended ended = Run({"--no-pictures", "square.gds", "absent.txt"});
    ExpectRefusal(ended, 3, {"absent.txt", "there is no such file"});
    EXPECT_TRUE(ended.output.ends_with(
        "Failed to open process file: absent.txt\n"
        "Opening process file absent.txt failed with error(s) given above\n"))
        << ended.output;
}

TEST_F(RefusalsTest, AFaultyProcessFileNamesItsFirstErrorAndCountsTheOthers) {
    WriteProcess("nonsense\netch -name E\n");
    const Ended ended = RunFiles();
    ExpectRefusal(ended, 3, {"flow.txt", "Error in line 4: Unknown command", "more"});
    EXPECT_NE(ended.output.find("\nError in line 4: Unknown command\n"), std::string::npos);
    EXPECT_TRUE(
        ended.output.ends_with("Opening process file flow.txt failed with error(s) given above\n"));
    EXPECT_EQ(ended.output.find("Grid size"), std::string::npos);
    EXPECT_EQ(ended.output.find("EXECUTING"), std::string::npos);
}

TEST_F(RefusalsTest, TheReasonIsToldWithoutStandardOutputToo) {
    WriteProcess("nonsense\n");
    const Ended ended = Run({"--quiet", "--no-pictures", "square.gds", "flow.txt"});
    ExpectRefusal(ended, 3, {"flow.txt", "Error in line 4: Unknown command"});
    EXPECT_EQ(ended.output, "");
}

TEST_F(RefusalsTest, ACellThatTheLayoutDoesNotHave) {
    folder_.Write(
        "flow.txt",
        "settings -version 4 -N 200\nlocation -x 0 -y 0 -dx 10 -dy 10\ngds -cell OTHER\n");
    const Ended ended = RunFiles();
    ExpectRefusal(ended, 3, {"flow.txt", "Cell name OTHER was not found in the GDS database"});
    EXPECT_TRUE(
        ended.output.ends_with("ERROR: Cell name OTHER was not found in the GDS database\n"));
}

TEST_F(RefusalsTest, AGridThatCannotBeMade) {
    folder_.Write("flow.txt",
                  "settings -version 4 -N 200\nlocation -x 0 -y 0 -dx 1e-44 -dy 1e-44\n"
                  "gds -cell TOP\n");
    ExpectRefusal(RunFiles(), 3, {"flow.txt", "ERROR"});
}

TEST_F(RefusalsTest, MissingColorsEndTheProgramBeforeAnythingElse) {
    std::filesystem::create_directory(InFolder("assets"));
    const Ended ended = Run({"--check", "--assets", "assets", "square.gds", "flow.txt"});
    ExpectRefusal(
        ended, 5,
        {"Could not load color file or color file contains errors", "assets", "colors.txt"});
    EXPECT_EQ(ended.output, "");
}

TEST_F(RefusalsTest, FaultyColorsToo) {
    std::filesystem::create_directory(InFolder("assets"));
    folder_.Write("assets/colors.txt", "red X 255 , 0, 0\n");
    ExpectRefusal(Run({"--check", "--assets", "assets", "square.gds", "flow.txt"}), 5,
                  {"colors.txt"});
}

TEST_F(RefusalsTest, MissingShadersEndTheProgramBeforeTheFirstStep) {
    std::filesystem::create_directory(InFolder("assets"));
    folder_.Write("assets/colors.txt", "beige X 245, 245, 220\n");
    const Ended ended = Run({"--assets", "assets", "square.gds", "flow.txt", "-o", "out"});
    ExpectRefusal(ended, 4, {"surface.shader", "Failed to open shader file"});
    EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
}

TEST_F(RefusalsTest, AShaderThatDoesNotCompile) {
    std::filesystem::create_directory(InFolder("assets"));
    folder_.Write("assets/colors.txt", "beige X 245, 245, 220\n");
    folder_.Write("assets/surface.shader", "#shader vertex\nnonsense\n#shader fragment\nmore\n");
    ExpectRefusal(Run({"--assets", "assets", "square.gds", "flow.txt", "-o", "out"}), 4,
                  {"surface.shader", "Failed to compile vertex shader with error"});
}

TEST_F(RefusalsTest, NoShadersAreNeededWithoutPictures) {
    std::filesystem::create_directory(InFolder("assets"));
    folder_.Write("assets/colors.txt", "beige X 245, 245, 220\n");
    EXPECT_EQ(Run({"--no-pictures", "--assets", "assets", "square.gds", "flow.txt"}).status, 0);
    EXPECT_EQ(Run({"--check", "--assets", "assets", "square.gds", "flow.txt"}).status, 0);
}

TEST_F(RefusalsTest, AnExistingPictureIsKeptAndNothingIsRun) {
    std::filesystem::create_directory(InFolder("out"));
    folder_.Write("out/002 002 Oxide deposition.png", "mine");
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"});
    ExpectRefusal(ended, 4, {"002 002 Oxide deposition.png", "exists already"});
    EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
    EXPECT_EQ(FilesIn("out").size(), 1u);
    EXPECT_EQ(FileText("out/002 002 Oxide deposition.png"), "mine");
}

TEST_F(RefusalsTest, PicturesOfTheOtherFormatDoNotCollide) {
    EXPECT_EQ(Run({"square.gds", "flow.txt", "-o", "out"}).status, 0);
    EXPECT_EQ(Run({"--format", "bmp", "square.gds", "flow.txt", "-o", "out"}).status, 0);
    EXPECT_EQ(FilesIn("out").size(), 4u);
}

TEST_F(RefusalsTest, AFileInPlaceOfTheOutputFolder) {
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "square.gds"});
    ExpectRefusal(ended, 4, {"square.gds"});
    EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
    ExpectRefusal(Run({"square.gds", "flow.txt", "-o", "square.gds/below"}), 4, {"square.gds"});
}

TEST_F(RefusalsTest, APictureWhoseNameNoFileCanBearIsReportedAndTheOthersAreSaved) {
    WriteProcess(
        "deposition -name a/b -type oxide -thickness 500 -color 200 100 50 100\n"
        "deposition -name c -type oxide -thickness 500 -color 20 100 50 100\n");
    // Where such a folder exists, the name must not lead into it.
    std::filesystem::create_directories(InFolder("out/002 002 a"));
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"});
    ExpectRefusal(
        ended, 4,
        {"Error while saving image", "002 002 a/b deposition.png", "to output folder \"out\""});
    EXPECT_EQ(FilesIn("out"), (std::vector<std::string>{"001 001 Substrate.png", "002 002 a",
                                                        "003 003 c deposition.png"}));
    EXPECT_EQ(FilesIn("out/002 002 a").size(), 0u);
    EXPECT_NE(ended.output.find("All process steps completed"), std::string::npos);
}

TEST_F(RefusalsTest, APictureWhoseNameIsTooLongIsReportedToo) {
    WriteProcess("deposition -name " + std::string(400, 'x') +
                 " -type oxide -thickness 500 -color 200 100 50 100\n");
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out"});
    ExpectRefusal(ended, 4, {"Error while saving image", "xxxx deposition.png"});
    EXPECT_EQ(FilesIn("out"), (std::vector<std::string>{"001 001 Substrate.png"}));
}

/// The same with a line for each error, as compilers write them.
class GccDiagnosticsTest : public BatchTest {
protected:
    Ended RunWith(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--no-pictures", "--diagnostics", "gcc"});
        return Run(arguments);
    }
    Ended RunFiles() const { return RunWith({"square.gds", "flow.txt"}); }
};

TEST_F(GccDiagnosticsTest, AreAllErrorsOfAProcessFileAndItsNotes) {
    WriteProcess(
        "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
        "depositoin -name B\n"
        "etch -name E -targets oxid -depth 100 -iso 0\n");
    const Ended ended = RunFiles();
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.errors,
              "flow.txt:5: error: Unknown command\n"
              "flow.txt:6: error: Target etch type oxid is undefined\n"
              "flow.txt:5: note: there is no command \"depositoin\": is \"deposition\" meant? "
              "[misspelt]\n"
              "flow.txt:6: note: no earlier line defines the type \"oxid\": is \"oxide\" meant? "
              "[misspelt]\n");
    // Standard output has the same lines in both styles, times apart.
    EXPECT_EQ(MaskTimes(ended.output),
              MaskTimes(Run({"--no-pictures", "square.gds", "flow.txt"}).output));
}

TEST_F(GccDiagnosticsTest, OfARunThatEndsWellAreNotesOnly) {
    WriteProcess("photo -name P -mask_id 9 -type 1 -res 0.2 -thickness 800\n");
    const Ended ended = RunFiles();
    EXPECT_EQ(ended.status, 0);
    EXPECT_TRUE(ended.errors.starts_with("flow.txt:4: note: mask 9 has no polygons in the window"))
        << ended.errors;
    EXPECT_NE(ended.errors.find(" [mask-empty]\nflow.txt:4: note: "), std::string::npos);
    const Ended strict = RunWith({"--strict", "--allow", "mask-empty", "square.gds", "flow.txt"});
    EXPECT_EQ(strict.status, 3);
    EXPECT_NE(strict.errors.find("zelmo-batch: error: --strict: there is 1 note;"),
              std::string::npos)
        << strict.errors;
}

TEST_F(GccDiagnosticsTest, NameTheFileAloneWhereNoLineIsKnown) {
    EXPECT_EQ(RunWith({"square.gds", "absent.txt"}).errors,
              "absent.txt: error: there is no such file\n");
    EXPECT_EQ(RunWith({"absent.gds", "flow.txt"}).errors,
              "absent.gds: error: there is no such file (error 2)\n");
    EXPECT_EQ(RunWith({"square.gds", "flow.txt", "--cell", "NONE"}).errors.substr(0, 17),
              "flow.txt: error: ");
}

TEST_F(GccDiagnosticsTest, NameTheProgramWhereNoFileIsToBlame) {
    EXPECT_EQ(RunWith({"square.gds", "flow.txt", "--steps", "99"}).errors.substr(0, 29),
              "zelmo-batch: error: --steps: ");
}

TEST_F(GccDiagnosticsTest, ArePlainUnlessTheyAreAskedFor) {
    WriteProcess("nonsense\n");
    const Ended plain = Run({"--no-pictures", "square.gds", "flow.txt"});
    const Ended named = Run({"--no-pictures", "--diagnostics", "plain", "square.gds", "flow.txt"});
    EXPECT_TRUE(
        plain.errors.starts_with("zelmo-batch: the process file flow.txt cannot be run: "
                                 "Error in line 4: Unknown command\n"))
        << plain.errors;
    EXPECT_EQ(named.errors, plain.errors);
    ExpectRefusal(Run({"--diagnostics", "json", "square.gds", "flow.txt"}), 1,
                  {"--diagnostics", "\"json\"", "gcc", "plain", "--help"});
}

}  // namespace
}  // namespace zelmo
