#include <array>
#include <fstream>

#include "base/text.h"
#include "process_file_fixture.h"

namespace zelmo {
namespace {

using ReaderTest = ProcessFileTest;

const std::string firstCommand =
    "First command in process file needs to be the \"settings\" command";
const std::string missingCommand = "Missing gds, location, or settings command";

TEST_F(ReaderTest, ReadsACompleteFileWithoutAMessage) {
    const Lines lines = Read(
        "# a comment\n"
        "settings -version 4 -N 600 -angle 30 -legend\n"
        "location -x 100 -y 250 -dx 40 -dy 20\n"
        "gds -cell TOP\n"
        "deposition -name Oxide1 -type oxide -thickness 500 -color 200 200 255 100\n"
        "photo -name Contact -mask_id 12 -type 0 -res 0.5 -thickness 1000\n"
        "etch -name Contact -targets oxide -depth 500 -iso 0.1\n"
        "strip -name Contact\n"
        "stop\n");
    EXPECT_EQ(lines, Lines{});
    EXPECT_TRUE(Accepted());
    EXPECT_EQ(file.settings.gridColumns, 600);
    EXPECT_EQ(file.settings.cellName, "TOP");
    ASSERT_EQ(file.steps.size(), 5u);
    EXPECT_EQ(Step(1).kind, StepKind::Deposition);
    EXPECT_EQ(Step(2).kind, StepKind::Photo);
    EXPECT_EQ(Step(3).kind, StepKind::Etch);
    EXPECT_EQ(Step(4).kind, StepKind::Strip);
}

TEST_F(ReaderTest, StepsBeginWithTheSubstrate) {
    EXPECT_EQ(ReadSteps(""), Lines{});
    ASSERT_EQ(file.steps.size(), 1u);
    const ProcessStep& substrate = file.steps[0];
    EXPECT_EQ(substrate.kind, StepKind::Substrate);
    EXPECT_EQ(substrate.description, "Substrate");
    EXPECT_EQ(substrate.alpha, 0.0f);
    EXPECT_EQ(substrate.thickness, 0.0f);
    EXPECT_EQ(substrate.material, "");
    EXPECT_EQ(substrate.label, "");
    EXPECT_TRUE(substrate.targets.empty());
}

TEST_F(ReaderTest, TheSubstrateIsBeigeWhereTheColourTableHasIt) {
    colors = {{"Beige", 1, 2, 3}, {"beige", 245, 245, 220}, {"beige", 9, 9, 9}};
    EXPECT_EQ(ReadSteps(""), Lines{});
    EXPECT_EQ(Step(0).color,
              (std::array<float, 3>{245.0f / 255.0f, 245.0f / 255.0f, 220.0f / 255.0f}));
    colors = {{"Beige", 1, 2, 3}};
    EXPECT_EQ(ReadSteps(""), Lines{});
    EXPECT_EQ(Step(0).color, (std::array<float, 3>{}));
}

TEST_F(ReaderTest, AMissingFileCannotBeOpened) {
    EXPECT_EQ(ReadPath(folder.Path() / "nowhere.txt"), Lines{});
    EXPECT_FALSE(file.opened);
    EXPECT_TRUE(file.steps.empty());
}

TEST_F(ReaderTest, AFolderInAFilesPlaceCannotBeOpened) {
    EXPECT_EQ(ReadPath(folder.Path()), Lines{});
    EXPECT_FALSE(file.opened);
    EXPECT_TRUE(file.steps.empty());
}

TEST_F(ReaderTest, AFileNameWithLettersOfAnyScriptIsOpened) {
    const std::filesystem::path path =
        folder.Path() / PathFromText(L"proze\u00df \u5de5\u827a.txt");
    std::ofstream(path, std::ios::binary) << preamble;
    EXPECT_EQ(ReadPath(path), Lines{});
    EXPECT_TRUE(Accepted());
}

TEST_F(ReaderTest, AnEmptyFileMissesItsCommandsInNoLine) {
    EXPECT_EQ(Read(""), Lines{"Error: " + missingCommand});
    EXPECT_FALSE(Accepted());
}

TEST_F(ReaderTest, CommentsCountAsLines) {
    EXPECT_EQ(Read("#1\n#2\n#3\n#4\n#5\n#6\n#7\n"), Lines{"Error in line 7: " + missingCommand});
    EXPECT_EQ(Read("#1\n#2\n#3\n#4\n#5\n#6\n#7"), Lines{"Error in line 7: " + missingCommand});
    EXPECT_FALSE(Accepted());
}

TEST_F(ReaderTest, AHashBehindABlankIsNoComment) {
    EXPECT_EQ(ReadSteps(" # text\n"), Lines{"Error in line 4: Unknown command"});
    EXPECT_EQ(Read(" # text\n" + preamble),
              (Lines{"Error in line 1: " + firstCommand, "Error in line 1: Unknown command",
                     "Error in line 2: Duplicate settings (gen) command found"}));
}

TEST_F(ReaderTest, BlankLinesAreSkippedAndCount) {
    EXPECT_EQ(ReadSteps(" \t \n\n\t\r\n  \nfoo\n"), Lines{"Error in line 8: Unknown command"});
    EXPECT_FALSE(Accepted());
}

TEST_F(ReaderTest, CommandsAreLowerCase) {
    EXPECT_EQ(Read("Settings -version 4\n"
                   "location -x 0 -y 0 -dx 10 -dy 10\n"
                   "gds -cell TOP\n"),
              (Lines{"Error in line 1: " + firstCommand, "Error in line 1: Unknown command"}));
    EXPECT_EQ(ReadSteps("Settings -version 4\n"), Lines{"Error in line 4: Unknown command"});
    EXPECT_EQ(ReadSteps("DUMP\n"), Lines{"Error in line 4: Unknown command"});
}

TEST_F(ReaderTest, WithoutSettingsOnlyTheFirstCommandMessageComes) {
    EXPECT_EQ(Read("location -x 0 -y 0 -dx 10 -dy 10\ngds -cell TOP\n"),
              Lines{"Error in line 1: " + firstCommand});
    EXPECT_FALSE(Accepted());
    EXPECT_EQ(file.settings.windowWidth, 10.0f);
    EXPECT_EQ(file.settings.cellName, "TOP");
}

TEST_F(ReaderTest, SettingsBehindAnotherCommandAreADuplicateAndAreRead) {
    EXPECT_EQ(Read("deposition -name a -type t -thickness 1 -color 1 2 3 4\n"
                   "settings -version 4 -N 300\n"
                   "location -x 0 -y 0 -dx 10 -dy 10\n"
                   "gds -cell TOP\n"),
              (Lines{"Error in line 1: " + firstCommand,
                     "Error in line 2: Duplicate settings (gen) command found"}));
    EXPECT_FALSE(Accepted());
    EXPECT_EQ(file.settings.gridColumns, 300);
    EXPECT_EQ(file.steps.size(), 2u);
}

TEST_F(ReaderTest, ARepeatedCommandIsReportedAndReplacesTheValues) {
    EXPECT_EQ(ReadSteps("settings -version 4 -N 400 -legend\n"
                        "location -x 1 -y 2 -dx 30 -dy 20\n"
                        "gds -cell OTHER\n"),
              (Lines{"Error in line 4: Duplicate settings (gen) command found",
                     "Error in line 5: Duplicate location (cut) command found",
                     "Error in line 6: Duplicate gds command found"}));
    EXPECT_FALSE(Accepted());
    EXPECT_EQ(file.settings.gridColumns, 400);
    EXPECT_TRUE(file.settings.showLegend);
    EXPECT_EQ(file.settings.windowX, 1.0f);
    EXPECT_EQ(file.settings.windowHeight, 20.0f);
    EXPECT_EQ(file.settings.cellName, "OTHER");
}

TEST_F(ReaderTest, TheDuplicateMessageComesBeforeTheMessagesOfTheLine) {
    EXPECT_EQ(
        ReadSteps("settings\nlocation\ngds\n"),
        (Lines{"Error in line 4: Duplicate settings (gen) command found",
               "Error in line 4: Command has no argument",
               "Error in line 4: No -version argument given. This version of Zelmo is only "
               "compatible with process files with version 3.",
               "Error in line 5: Duplicate location (cut) command found",
               "Error in line 5: Command has no argument", "Error in line 5: Argument -x not found",
               "Error in line 5: Argument -y not found", "Error in line 5: Argument -dx not found",
               "Error in line 5: Argument -dy not found", "Error in line 5: Invalid -dx argument",
               "Error in line 5: Invalid -dy argument",
               "Error in line 6: Duplicate gds command found",
               "Error in line 6: Argument -cell not found"}));
}

TEST_F(ReaderTest, LocationAndGdsMayStandBehindSteps) {
    EXPECT_EQ(Read("settings -version 4\n"
                   "deposition -name a -type t -thickness 1 -color 1 2 3 4\n"
                   "gds -cell TOP\n"
                   "dump\n"
                   "location -x 0 -y 0 -dx 10 -dy 10\n"),
              Lines{});
    EXPECT_TRUE(Accepted());
    EXPECT_EQ(file.steps.size(), 3u);
}

TEST_F(ReaderTest, EachMissingCommandGivesTheSameMessage) {
    EXPECT_EQ(Read("settings -version 4\ngds -cell TOP\n"),
              Lines{"Error in line 2: " + missingCommand});
    EXPECT_EQ(Read("settings -version 4\nlocation -x 0 -y 0 -dx 10 -dy 10\n"),
              Lines{"Error in line 2: " + missingCommand});
    EXPECT_FALSE(Accepted());
}

TEST_F(ReaderTest, NothingBehindStopIsRead) {
    EXPECT_EQ(ReadSteps("dump\nstop\nrubbish\nmore rubbish\n"), Lines{});
    EXPECT_TRUE(Accepted());
    EXPECT_EQ(file.steps.size(), 2u);
    EXPECT_EQ(Read("settings -version 4\n\n\n\nstop\nrubbish\nlocation\n"),
              Lines{"Error in line 5: " + missingCommand});
}

TEST_F(ReaderTest, StopAsTheOnlyCommandGivesBothMessages) {
    EXPECT_EQ(Read("#\nstop\nrubbish\n"),
              (Lines{"Error in line 2: " + firstCommand, "Error in line 2: " + missingCommand}));
    EXPECT_FALSE(Accepted());
}

TEST_F(ReaderTest, WordsBehindDumpAndStopAreNotLookedAt) {
    EXPECT_EQ(ReadSteps("dump -foo bar\n  dump\nstop -now or never\n"), Lines{});
    EXPECT_TRUE(Accepted());
    ASSERT_EQ(file.steps.size(), 3u);
    EXPECT_EQ(Step(1).kind, StepKind::Dump);
    EXPECT_EQ(Step(1).description, "dumping of stack data");
    EXPECT_EQ(Step(1).alpha, 0.0f);
    EXPECT_EQ(Step(1).label, "");
}

TEST_F(ReaderTest, ALineOf2000BytesIsReadAsTwoLines) {
    EXPECT_EQ(ReadSteps(std::string(2000, 'x') + "\ny\n"),
              (Lines{"Error in line 4: Unknown command", "Error in line 5: Unknown command",
                     "Error in line 6: Unknown command"}));
}

TEST_F(ReaderTest, ALongCommentIsACommentForItsFirstPieceOnly) {
    EXPECT_EQ(ReadSteps("#" + std::string(1022, '.') + "dump\n"), Lines{});
    EXPECT_EQ(file.steps.size(), 2u);
    EXPECT_EQ(ReadSteps("#" + std::string(1022, '.') + "x\n"),
              Lines{"Error in line 5: Unknown command"});
    EXPECT_EQ(ReadSteps("#" + std::string(1022, '.') + "#still\nx"),
              Lines{"Error in line 6: Unknown command"});
}

TEST_F(ReaderTest, TheLineEndBehind1023BytesIsALineOfItsOwn) {
    for (const std::string end : {"\n", "\r\n"}) {
        EXPECT_EQ(ReadSteps("#" + std::string(1021, '.') + end + "x" + end),
                  Lines{"Error in line 5: Unknown command"});
        EXPECT_EQ(ReadSteps("#" + std::string(1022, '.') + end + "x" + end),
                  Lines{"Error in line 6: Unknown command"});
    }
}

TEST_F(ReaderTest, CrLfAndLfReadAlike) {
    EXPECT_EQ(Read("settings -version 4\r\n"
                   "\r\n"
                   "location -x 0 -y 0 -dx 10 -dy 7\r\n"
                   "gds -cell TOP\r\n"
                   "deposition -name a -type t -thickness 1 -color 1 2 3 4\r\n"
                   "x\r\n"),
              Lines{"Error in line 6: Unknown command"});
    EXPECT_EQ(file.settings.cellName, "TOP");
    EXPECT_EQ(file.settings.windowHeight, 7.0f);
    EXPECT_EQ(Step(1).materialType, "t");
}

TEST_F(ReaderTest, ALoneCrCutsALineWithoutEndingIt) {
    EXPECT_EQ(ReadSteps("dump\rrubbish\nx\n"), Lines{"Error in line 5: Unknown command"});
    EXPECT_EQ(file.steps.size(), 2u);
    EXPECT_EQ(ReadSteps("\rdump\n"), Lines{"Error in line 4: Unknown command"});
}

TEST_F(ReaderTest, ANulByteEndsTheTextOfItsLine) {
    using namespace std::string_literals;
    EXPECT_EQ(ReadSteps("dump\0 rubbish\n\0rubbish\nx\n"s),
              Lines{"Error in line 6: Unknown command"});
    EXPECT_EQ(file.steps.size(), 2u);
}

TEST_F(ReaderTest, ByteControlZIsAnOrdinaryCharacter) {
    EXPECT_EQ(ReadSteps("\x1a\ndump\n"), Lines{"Error in line 4: Unknown command"});
    EXPECT_EQ(file.steps.size(), 2u);
    EXPECT_EQ(ReadSteps("# \x1a\ndump\n"), Lines{});
    EXPECT_EQ(file.steps.size(), 2u);
}

TEST_F(ReaderTest, ALineOfOtherWhiteSpaceHasNoCommandWord) {
    EXPECT_EQ(ReadSteps("\v\f\n"), Lines{"Error in line 4: Unknown command"});
    EXPECT_EQ(Read("\v\n" + preamble), Lines{"Error in line 1: Unknown command"});
}

TEST_F(ReaderTest, WhiteSpaceMayStandInFrontOfACommand) {
    EXPECT_EQ(ReadSteps(" \t dump\n\v\fdump\n\t deposition -name a -type t -thickness 1 "
                        "-color 1 2 3 4\n"),
              Lines{});
    EXPECT_EQ(file.steps.size(), 4u);
}

TEST_F(ReaderTest, TheFirstCommandMessageComesOnce) {
    EXPECT_EQ(Read("foo\nbar\n"),
              (Lines{"Error in line 1: " + firstCommand, "Error in line 1: Unknown command",
                     "Error in line 2: Unknown command", "Error in line 2: " + missingCommand}));
}

TEST_F(ReaderTest, AStepIsAppendedWhateverItsErrors) {
    ReadSteps("deposition\ncoating\nphoto\netch\nrelease\nstrip\npolish\nimplant\n");
    EXPECT_FALSE(Accepted());
    ASSERT_EQ(file.steps.size(), 9u);
    EXPECT_EQ(Step(1).kind, StepKind::Deposition);
    EXPECT_EQ(Step(2).kind, StepKind::Coating);
    EXPECT_EQ(Step(3).kind, StepKind::Photo);
    EXPECT_EQ(Step(4).kind, StepKind::Etch);
    EXPECT_EQ(Step(5).kind, StepKind::Release);
    EXPECT_EQ(Step(6).kind, StepKind::Strip);
    EXPECT_EQ(Step(7).kind, StepKind::Polish);
    EXPECT_EQ(Step(8).kind, StepKind::Implant);
}

TEST_F(ReaderTest, NothingOfOneReadReachesTheNext) {
    const std::string steps =
        "deposition -name a -type t -thickness 1 -color 1 2 3 4\n"
        "photo -name p -mask_id 1 -type 0 -res 0 -thickness 1\n"
        "etch -name e -targets t -depth 1 -iso 0\n";
    EXPECT_EQ(ReadSteps(steps), Lines{});
    EXPECT_EQ(ReadSteps(steps), Lines{});
    EXPECT_EQ(ReadSteps("release -name r -targets t\n"),
              Lines{"Error in line 4: Target etch type t is undefined"});
    EXPECT_EQ(ReadSteps(steps), Lines{});
    EXPECT_TRUE(Accepted());
}

TEST_F(ReaderTest, BytesAbove127PassThrough) {
    EXPECT_EQ(ReadSteps("deposition -name \xe9\xff -type t -thickness 1 -color 1 2 3 4\n"
                        "deposition -name \xe9\xff -type t -thickness 1 -color 1 2 3 4\n"),
              // the console widens byte by byte with the sign: 0xE9 is U+FFE9, 0xFF is U+FFFF
              Lines{"Error in line 5: Material \xef\xbf\xa9\xef\xbf\xbf in -name argument already "
                    "defined. Choose another name."});
    EXPECT_EQ(Step(1).material, "\xe9\xff");
    EXPECT_EQ(Step(1).description, "\xe9\xff deposition");
}

TEST_F(ReaderTest, MessagesHaveAnyLengthAndTakeValuesLiterally) {
    const std::string word = "-x%s%d%n" + std::string(900, 'y');
    EXPECT_EQ(ReadSteps("release -name r -targets " + word + "\n"),
              Lines{"Error in line 4: Invalid argument " + word});
}

}  // namespace
}  // namespace zelmo
