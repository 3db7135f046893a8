#include "results/notes/step_notes.h"

#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "model/execute_step.h"
#include "model/process_model.h"
#include "process_run/prepare_run.h"
#include "results/notes/note_list.h"
#include "tests/results/notes/note_run.h"
#include "tests/support/recording_console.h"

namespace zelmo {
namespace {

/// Silicon that keeps etches off the substrate, on line 4, and an oxide, on line 5.
const std::string films =
    "deposition -name Si -type si -thickness 1000 -sc 1 -color 1 2 3 100\n"
    "deposition -name Oxide -type oxide -thickness 500 -sc 1 -color 1 2 3 100\n";

std::string Photo(const std::string& arguments) {
    return "photo -name P -res 0.2 -taper 89 " + arguments + "\n";
}

class StepNotesTest : public NotesTest {
protected:
    std::vector<Note> NotesOf(const std::string& steps) { return NotesOfSteps(films + steps); }
};

TEST_F(StepNotesTest, AreNoneForAGoodProcess) {
    ExpectSilence(
        NotesOf(Photo("-mask_id 1 -type 0 -thickness 800") +
                "etch -name E -targets oxide -depth 550 -iso 0\nstrip -name S\n"
                "coating -name C -type c -thickness 500 -color 1 2 3 100\n"
                "polish -name CMP -stop oxide\n" +
                Photo("-mask_id 2 -type 0 -thickness 800") +
                "implant -name N -type n -targets oxide -depth 50 -color 1 2 3 100\nstrip -name T\n"
                "release -name R -targets c\n"));
}

TEST_F(StepNotesTest, TellOfAMaskThatOpensAllOfTheWindowOrNone) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, -5000, -5000, 15000, 15000);
    writer.EndCell();
    writer.EndLibrary();
    SetLayout(writer);
    ExpectNote(NotesOf(Photo("-mask_id 1 -type 1 -thickness 800") + "strip -name S\n"),
               note_kind::maskAllOrNone, 6, {"mask 1 opens 0 % of the window", "-type"});
    ExpectNote(NotesOf(Photo("-mask_id 1 -type 0 -thickness 800") + "strip -name S\n"),
               note_kind::maskAllOrNone, 6, {"mask 1 opens 100 % of the window"});
}

TEST_F(StepNotesTest, SayOnceWhyAnEmptyMaskRemovesAllOrNothing) {
    const std::string etch = "etch -name E -targets oxide -depth 550 -iso 0\nstrip -name S\n";
    for (const char* const type : {"0", "1"}) {
        const std::vector<Note> notes =
            NotesOf(Photo("-mask_id 9 -thickness 800 -type " + std::string(type)) + etch);
        ExpectNote(notes, note_kind::maskEmpty, 6, {});
        EXPECT_EQ(notes.size(), 1u);
    }
}

TEST_F(StepNotesTest, TellOfResistThatIsUsedUpAndWhatIsLostBeneath) {
    const std::vector<Note> notes =
        NotesOf(Photo("-mask_id 1 -type 1 -thickness 200") +
                "etch -name E -targets oxide -depth 350 -iso 0\nstrip -name S\n");
    // The square of 16 um^2 is all of the resist; 350 - 200 nm of etching were left for the oxide.
    ExpectNote(notes, note_kind::resistConsumed, 7,
               {"of line 6", "100.0 % of the resist", "beneath, Oxide lost up to 150 nm",
                "thicker resist"});
}

TEST_F(StepNotesTest, TellOfResistThatIsUsedUpWithoutALossBeneath) {
    ExpectNote(NotesOf(Photo("-mask_id 1 -type 0 -thickness 200") +
                       "etch -name E -targets si -depth 350 -iso 0\nstrip -name S\n"),
               note_kind::resistConsumed, 7, {"nothing was lost beneath"});
}

TEST_F(StepNotesTest, SayNothingOfSlopesOfResistThatGiveWay) {
    const std::string etch = "etch -name E -targets oxide -depth 350 -iso 0.5\nstrip -name S\n";
    ExpectSilence(
        NotesOf("photo -name P -res 0.2 -taper 60 -mask_id 1 -type 1 -thickness 500\n" + etch));
    ExpectSilence(
        NotesOf("photo -name P -res 0.2 -taper 45 -mask_id 1 -type 0 -thickness 500\n" + etch));
}

TEST_F(StepNotesTest, CountHowMuchSlowerResistIsEtched) {
    ExpectSilence(NotesOf(Photo("-mask_id 1 -type 1 -thickness 200") +
                          "etch -name E -targets oxide -depth 350 -iso 0 -resist 0.2\n"
                          "strip -name S\n"));
}

TEST_F(StepNotesTest, TellOfAnEtchThatRemovedNothing) {
    ExpectNote(NotesOf("etch -name E -targets si -depth 100 -iso 0\n"), note_kind::nothingRemoved,
               6, {"E etching removed nothing", "where Oxide lay open", "-targets"});
    ExpectNote(NotesOf("etch -name E -targets oxide -depth 0 -iso 0\n"), note_kind::nothingRemoved,
               6, {});
    ExpectSilence(NotesOf("etch -name E -targets oxide -depth 1 -iso 0\n"));
}

TEST_F(StepNotesTest, TellOfAReleaseThatRemovedNothing) {
    const std::string both = "release -name R -targets oxide\nrelease -name R2 -targets oxide\n";
    ExpectNote(NotesOf(both), note_kind::nothingRemoved, 7, {"R2 release etch removed nothing"});
    ExpectSilence(NotesOf("release -name R -targets oxide si\n"));
}

TEST_F(StepNotesTest, TellOfAnEtchThatRemovedAllOfALayer) {
    ExpectNote(NotesOf("etch -name E -targets oxide -depth 550 -iso 0\n"), note_kind::layerGone, 6,
               {"E etching removed all of Oxide", "100.0 % of the area"});
    ExpectSilence(NotesOf("etch -name E -targets oxide -depth 400 -iso 0\n"));
}

TEST_F(StepNotesTest, SayNothingOfALinerThatGoesAboveAnotherTarget) {
    ExpectSilence(NotesOf("etch -name E -targets oxide si -depth 600 -iso 0\n"));
}

TEST_F(StepNotesTest, SayNothingOfAMaskWhoseTaskIsDone) {
    const std::string mask = Photo("-mask_id 1 -type 1 -thickness 800") +
                             "etch -name E -targets oxide -depth 550 -iso 0\nstrip -name S\n";
    ExpectSilence(NotesOf(mask + "etch -name Trench -targets si -depth 200 -iso 0\n"
                                 "etch -name Off -targets oxide -depth 550 -iso 0\n"));
    ExpectNote(NotesOf(mask + "etch -name Off -targets oxide -depth 550 -iso 0\n"),
               note_kind::layerGone, 9, {"Oxide", "15.0 % of the area"});
}

TEST_F(StepNotesTest, TellOfAnEtchThatReachedTheSubstrate) {
    const auto notesOf = [&](const std::string& depth) {
        return NotesOf(Photo("-mask_id 1 -type 0 -thickness 2500") +
                       "etch -name E -targets oxide si -depth " + depth +
                       " -iso 0\nstrip -name S\n");
    };
    ExpectNote(notesOf("1800"), note_kind::substrateReached, 7,
               {"E etching reached the substrate", "up to 300 nm", "as a film"});
    ExpectSilence(notesOf("1500"));  // just there
    ExpectSilence(notesOf("1400"));
}

TEST_F(StepNotesTest, TellOfAFilmThatNothingShowsOf) {
    ExpectNote(NotesOf("deposition -name Thin -type thin -thickness 0.00001 -color 1 2 3 100\n"),
               note_kind::nothingShown, 6, {"Thin deposition", "-thickness"});
    ExpectNote(NotesOf("coating -name Thin -type thin -thickness 0.00001 -color 1 2 3 100\n"),
               note_kind::nothingShown, 6, {"Thin coating"});
}

TEST_F(StepNotesTest, TellOfAnImplantThatMetNoTarget) {
    ExpectNote(NotesOf("implant -name N -type n -targets si -depth 50 -color 1 2 3 100\n"),
               note_kind::nothingShown, 6, {"N implant", "no target lies open"});
    ExpectSilence(NotesOf("implant -name N -type n -targets oxide -depth 50 -color 1 2 3 100\n"));
}

TEST_F(StepNotesTest, AreTheSameForStepsThatAreToldOfAgain) {
    folder.Write("process.txt", processHead + films + Photo("-mask_id 9 -type 0 -thickness 200") +
                                    "etch -name E -targets oxide -depth 350 -iso 0\n"
                                    "etch -name F -targets oxide -depth 550 -iso 0\n"
                                    "strip -name S\n");
    RecordingConsole console;
    GdsDatabase layout;
    ASSERT_EQ(ReadGdsFile(layout, folder.Path() / "layout.gds", &console), std::nullopt);
    const auto prepare = [&] {
        return PrepareRun(folder.Path() / "process.txt", layout, colors, &console).model;
    };
    StepNotes stepNotes("process.txt");
    const auto run = [&](ProcessModel& model, std::size_t firstTold) {
        std::string lines;
        for (std::size_t index = 0; index < model.steps.size(); ++index) {
            if (index >= firstTold) {
                stepNotes.Before(model, index);
            }
            ExecuteStep(model, model.steps[index], &console);
            if (index >= firstTold) {
                for (const Note& note : stepNotes.After(model, index)) {
                    lines += index >= 4 ? NoteLine(note) + "\n" : "";
                }
            }
        }
        return lines;
    };
    const std::string whole = run(*prepare(), 0);
    EXPECT_NE(whole, "");
    EXPECT_EQ(run(*prepare(), 4), whole);
}

}  // namespace
}  // namespace zelmo
