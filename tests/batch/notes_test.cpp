#include <fstream>
#include <iterator>

#include "results/notes/note_kinds.h"
#include "tests/batch/batch_fixture.h"

namespace zelmo {
namespace {

/// A mask without polygons, on line 4, and resist that is left.
const std::string emptyMask = "photo -name P -mask_id 9 -type 1 -res 0.2 -thickness 800\n";
/// An etch that reaches the substrate, on line 5.
const std::string deepEtch =
    "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
    "etch -name Deep -targets oxide -depth 900 -iso 0\n";

class NotesProgramTest : public BatchTest {
protected:
    Ended RunWith(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--no-pictures", "square.gds", "flow.txt"});
        return Run(arguments);
    }
};

std::size_t Count(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos;
         at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

TEST_F(NotesProgramTest, AreLinesOnStandardErrorThatNameFileLineAndKind) {
    WriteProcess(emptyMask);
    const Ended ended = RunWith({});
    EXPECT_EQ(ended.status, 0);
    EXPECT_TRUE(ended.errors.starts_with("note: flow.txt:4: mask 9 has no polygons in the window"))
        << ended.errors;
    EXPECT_NE(ended.errors.find(" [mask-empty]\nnote: flow.txt:4: "), std::string::npos)
        << ended.errors;
    EXPECT_TRUE(ended.errors.ends_with(" [resist-left]\n")) << ended.errors;
    EXPECT_EQ(Count(ended.errors, "\n"), 2u);
    EXPECT_EQ(ended.output.find("note"), std::string::npos);
}

TEST_F(NotesProgramTest, OfStepsComeWhenTheyAreDone) {
    WriteProcess(deepEtch);
    const Ended ended = RunWith({"--allow", "layer-gone"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_TRUE(ended.errors.starts_with("note: flow.txt:5: Deep etching reached the substrate"))
        << ended.errors;
    EXPECT_TRUE(ended.errors.ends_with(" [substrate-reached]\n")) << ended.errors;
}

TEST_F(NotesProgramTest, AreSilencedByKind) {
    WriteProcess(emptyMask);
    EXPECT_TRUE(RunWith({"--allow", "mask-empty"}).errors.ends_with("[resist-left]\n"));
    EXPECT_EQ(RunWith({"--allow", "mask-empty", "--allow", "resist-left"}).errors, "");
    EXPECT_EQ(RunWith({"--no-notes"}).errors, "");
}

TEST_F(NotesProgramTest, AnUnknownKindIsAnErrorThatNamesTheNearest) {
    const Ended ended = RunWith({"--allow", "mask-emty"});
    ExpectRefusal(ended, 1, {"--allow", "\"mask-emty\"", "the nearest is \"mask-empty\""});
    EXPECT_EQ(ended.output, "");
    ExpectRefusal(RunWith({"--allow", "everything"}), 1, {"\"everything\"", "docs/notes.md"});
}

TEST_F(NotesProgramTest, KnownBeforeTheRunEndItBeforeWhenTheyAreStrict) {
    WriteProcess(emptyMask);
    const Ended ended = RunWith({"--strict"});
    EXPECT_EQ(ended.status, 3);
    EXPECT_TRUE(
        ended.errors.ends_with("zelmo-batch: --strict: there are 2 notes; mend what they "
                               "are about, or --allow their kinds\n"))
        << ended.errors;
    EXPECT_EQ(ended.output.find("EXECUTING"), std::string::npos);
}

TEST_F(NotesProgramTest, OfStepsEndAStrictRunBehindIt) {
    WriteProcess(deepEtch);
    const Ended ended = RunWith({"--strict", "--allow", "layer-gone"});
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(Count(ended.errors, "\n"), 2u) << ended.errors;
    EXPECT_NE(ended.errors.find("there is 1 note;"), std::string::npos) << ended.errors;
    EXPECT_NE(ended.output.find("All process steps completed"), std::string::npos);
}

TEST_F(NotesProgramTest, ThatAreSilencedEndNothing) {
    WriteProcess(emptyMask);
    EXPECT_EQ(RunWith({"--strict", "--no-notes"}).status, 0);
    EXPECT_EQ(RunWith({"--strict", "--allow", "mask-empty", "--allow", "resist-left"}).status, 0);
}

TEST_F(NotesProgramTest, OfACheckAreThoseThatNeedNoRun) {
    WriteProcess(emptyMask + "strip -name S\n" + deepEtch);
    const Ended ended = RunWith({"--check"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(Count(ended.errors, "\n"), 1u) << ended.errors;
    EXPECT_EQ(RunWith({"--check", "--strict"}).status, 3);
}

TEST_F(NotesProgramTest, AreNoErrorsWhereOnlyThoseAreWanted) {
    WriteProcess(emptyMask);
    EXPECT_EQ(RunWith({"--quiet"}).errors, "");
    const Ended strict = RunWith({"--quiet", "--strict"});
    EXPECT_EQ(strict.status, 3);
    EXPECT_EQ(Count(strict.errors, "\n"), 3u) << strict.errors;
}

TEST_F(NotesProgramTest, ExplainAnErrorBehindItsLine) {
    WriteProcess(
        "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
        "etch -name E -targets oxid -depth 100 -iso 0\n");
    const Ended ended = RunWith({});
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.errors,
              "zelmo-batch: the process file flow.txt cannot be run: Error in line 5: Target etch "
              "type oxid is undefined\n"
              "note: flow.txt:5: no earlier line defines the type \"oxid\": is \"oxide\" meant? "
              "[misspelt]\n");
}

TEST_F(NotesProgramTest, ExplainALayoutThatIsNone) {
    folder_.Write("square.gds", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16));
    const Ended ended = RunWith({});
    EXPECT_EQ(Count(ended.errors, "[layout-format]\n"), 1u) << ended.errors;
    EXPECT_NE(ended.errors.find("note: square.gds: the file is a PNG picture"), std::string::npos)
        << ended.errors;
}

TEST_F(NotesProgramTest, TellOfFilesInEachOthersPlace) {
    const Ended ended = Run({"--no-pictures", "flow.txt", "square.gds"});
    EXPECT_EQ(ended.status, 3) << ended.errors;
    EXPECT_TRUE(ended.errors.starts_with("zelmo-batch: the process file square.gds cannot be run"))
        << ended.errors;
    EXPECT_TRUE(ended.errors.ends_with("[files-swapped]\n")) << ended.errors;
}

TEST_F(NotesProgramTest, HaveAllTheirKindsInTheDocumentation) {
    std::ifstream stream(ZELMO_NOTES_PAGE, std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(stream),
                           std::istreambuf_iterator<char>()};
    std::size_t lines = 0;
    for (const NoteKind& kind : noteKinds) {
        const std::string name(kind.name);
        EXPECT_EQ(Count(page, "### " + name + "\n"), 1u) << name;
        EXPECT_EQ(Count(page, " [" + name + "]\n"), 1u) << name;
        ++lines;
    }
    EXPECT_EQ(Count(page, "\n### "), lines);
    const Ended help = Run({"--help"});
    EXPECT_NE(help.output.find("docs/notes.md"), std::string::npos);
}

/// Examples and reference processes, on their own layouts.
class CleanExample : public testing::TestWithParam<const char*> {};

TEST_P(CleanExample, GivesNoNoteAtAll) {
    const std::string files = "examples/" + std::string(GetParam());
    const Ended checked =
        RunToEnd(BatchProgram(), {"--check", "--strict", files + ".gds", files + ".txt"});
    EXPECT_EQ(checked.status, 0);
    EXPECT_EQ(checked.errors, "");
    const Ended run =
        RunToEnd(BatchProgram(), {"--no-pictures", "--strict", files + ".gds", files + ".txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
}

INSTANTIATE_TEST_SUITE_P(Examples, CleanExample,
                         testing::Values("cmos_inverter", "mems_release", "array",
                                         "processes/gf180mcu", "processes/mems_three_poly",
                                         "processes/sg13g2", "processes/sky130",
                                         "processes/soi220"),
                         [](const auto& example) {
                             std::string name = example.param;
                             return name.substr(name.find('/') + 1);
                         });

}  // namespace
}  // namespace zelmo
