#include "results/notes/process_file_notes.h"

#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "tests/results/notes/note_run.h"
#include "tests/support/recording_console.h"

namespace zelmo {
namespace {

const std::string oxide = "deposition -name Oxide -type oxide -thickness 500 -color 1 2 3 100\n";

class ProcessFileNotesTest : public NotesTest {
protected:
    /// Notes of the oxide's line, 4, and of these behind it.
    std::vector<Note> NotesOf(const std::string& lines) {
        return NotesOfLines(processHead + oxide + lines + "\nstop\n");
    }
};

TEST_F(ProcessFileNotesTest, AreNoneForAGoodFile) {
    ExpectSilence(
        NotesOf("# a comment\n"
                "\t\n"
                "deposition -name B -type b -thickness 1e2 -sc 0.5 -scolor gold -alpha 0.5\n"
                "coating -name C -type c -thickness 12.5 -dop 1 -color 1 2 3 4\r\n"
                "photo -name P -mask_id 1/0,2 -type 0 -res 0.2 -thickness 800 -taper 89 -bias "
                "-0.1 -shift -1 2\n"
                "etch -name E -targets oxide b -depth 500 -iso 0.1 -resist 0.5\n"
                "strip -name S\n"
                "implant -name I -type i -targets oxide -depth 5 -color 1 2 3 4\n"
                "release -targets b i -name R\n"
                "polish -name P -stop oxide -over 5\n"
                "dump what stands here is nothing to it"));
}

TEST_F(ProcessFileNotesTest, SayNothingOfWhatIsBehindTheStop) {
    ExpectSilence(NotesOf("stop\netch -name E -targets oxid -depth 0,5 -iso 0"));
}

TEST_F(ProcessFileNotesTest, NameTheNearestType) {
    ExpectNote(NotesOf("etch -name E -targets oxid -depth 500 -iso 0"), note_kind::misspelt, 5,
               {"\"oxid\"", "is \"oxide\" meant?"});
    ExpectNote(NotesOf("polish -name E -stop oxdie"), note_kind::misspelt, 5,
               {"is \"oxide\" meant?"});
    ExpectSilence(NotesOf("etch -name E -targets tungsten -depth 500 -iso 0"));
}

TEST_F(ProcessFileNotesTest, NameTheTypeOfAMaterialThatIsNamedInItsPlace) {
    ExpectNote(NotesOf("deposition -name Gate -type poly -thickness 5 -color 1 2 3 4\n"
                       "etch -name E -targets Gate -depth 500 -iso 0"),
               note_kind::misspelt, 6, {"\"Gate\"", "is \"poly\" meant?"});
}

TEST_F(ProcessFileNotesTest, KnowNoTypesOfLaterLines) {
    ExpectSilence(
        NotesOf("etch -name E -targets nitrid -depth 5 -iso 0\n"
                "deposition -name N -type nitride -thickness 5 -color 1 2 3 4"));
}

TEST_F(ProcessFileNotesTest, NameTheNearestColour) {
    const std::string film = "coating -name N -type n -thickness 5 -scolor ";
    ExpectNote(NotesOf(film + "Navy"), note_kind::misspelt, 5,
               {"no colour is named \"Navy\"", "is \"navy\" meant?"});
    ExpectSilence(NotesOf(film + "navy"));
    ExpectSilence(NotesOf(film + "chartreuse"));
}

TEST_F(ProcessFileNotesTest, NameTheNearestCommandAndArgument) {
    ExpectNote(NotesOf("depositon -name N -type n -thickness 5 -color 1 2 3 4"),
               note_kind::misspelt, 5, {"no command \"depositon\"", "is \"deposition\" meant?"});
    ExpectNote(NotesOf("etch -name E -target oxide -depth 5 -iso 0"), note_kind::misspelt, 5,
               {"etch has no argument \"-target\"", "is \"-targets\" meant?"});
    ExpectSilence(NotesOf("electroplate -name N"));
}

TEST_F(ProcessFileNotesTest, NameTheNearestCell) {
    RecordingConsole console;
    GdsDatabase layout;
    ASSERT_EQ(ReadGdsFile(layout, folder.Path() / "layout.gds", &console), std::nullopt);
    const auto notesOf = [&](const std::string& cell) {
        const auto path = folder.Write("process.txt", "settings -version 4\ngds -cell " + cell);
        return UnknownCellNotes(path, ReadCommandTexts(path), view, layout);
    };
    ExpectNote(notesOf("top"), note_kind::misspelt, 2,
               {"no cell \"top\"", "is \"TOP\" meant?", "--cell NAME"});
    ExpectNote(notesOf("ADDER"), note_kind::misspelt, 2,
               {"no cell \"ADDER\"", "lists", "--cell NAME"});
    ExpectSilence(notesOf("TOP"));
    view.cell = "TOPP";
    ExpectNote(notesOf("TOP"), note_kind::misspelt, 0, {"no cell \"TOPP\"", "is \"TOP\" meant?"});
}

TEST_F(ProcessFileNotesTest, TellOfRemarksBehindACommand) {
    ExpectNote(NotesOf("strip -name S # all of it"), note_kind::remark, 5,
               {"\"# all of it\"", "a line of its own"});
    ExpectNote(NotesOf("strip -name Two words"), note_kind::remark, 5, {"\"words\""});
    ExpectNote(NotesOf("strip everything -name S"), note_kind::remark, 5, {"\"everything\""});
    const std::vector<Note> targets = NotesOf("release -name R -targets oxide # at last");
    ExpectNote(targets, note_kind::remark, 5, {"\"# at last\""});
    ExpectNone(targets, note_kind::misspelt);
    ExpectNote(NotesOfLines("settings -version 4 -legend 1\n"), note_kind::remark, 1, {"\"1\""});
}

TEST_F(ProcessFileNotesTest, TellOfTabs) {
    ExpectNote(NotesOf("etch -name E -targets oxide -depth\t500 -iso 0"), note_kind::tab, 5,
               {"in front of \"500\"", "blanks"});
    ExpectSilence(NotesOf("etch\t-name E -targets oxide -depth 500 -iso 0\t"));
}

TEST_F(ProcessFileNotesTest, TellOfTextBehindDigits) {
    const auto notesOf = [&](const std::string& depth) {
        return NotesOf("etch -name E -targets oxide -iso 0 -depth " + depth);
    };
    ExpectNote(notesOf("0,5"), note_kind::numberTail, 5, {"\"0,5\"", "reads 0:", "point"});
    ExpectNote(notesOf("0.5um"), note_kind::numberTail, 5, {"\"0.5um\"", "reads 0.5:", "ignored"});
    ExpectNote(notesOf("5e"), note_kind::numberTail, 5, {"reads 5:"});
    for (const char* const good : {"0.5", "5.", ".5", "1e-3", "+5", "-5", "${DEPTH}"}) {
        ExpectSilence(notesOf(good));
    }
    ExpectNote(NotesOf("photo -name P -mask_id 1 -type 1 -res 0 -thickness 5 -shift 1 2um"),
               note_kind::numberTail, 5, {"-shift", "reads 2:"});
}

TEST_F(ProcessFileNotesTest, TellOfArgumentsGivenTwice) {
    ExpectNote(NotesOf("etch -name E -depth 5 -targets oxide -depth 7 -iso 0 -depth 9"),
               note_kind::argumentTwice, 5, {"-depth", "first one counts"});
}

TEST_F(ProcessFileNotesTest, TellOfStepCoverageInsideAColour) {
    ExpectNote(NotesOf("deposition -name N -type n -thickness 5 -scolor navy -sc 0.5"),
               note_kind::argumentInWord, 5,
               {"-sc is found inside the word \"-scolor\"", "in front of -scolor"});
    ExpectNote(NotesOf("deposition -name N -type n -thickness 5 -scolor navy"),
               note_kind::argumentInWord, 5, {"-sc"});
    ExpectSilence(NotesOf("deposition -name N -type n -thickness 5 -sc 0.5 -scolor navy"));
}

TEST_F(ProcessFileNotesTest, TellOfArgumentsInsideNames) {
    ExpectNote(NotesOf("coating -name over-type -type n -thickness 5 -color 1 2 3 4"),
               note_kind::argumentInWord, 5, {"-type", "\"over-type\"", "dashes"});
    ExpectSilence(NotesOf("photo -name no-bias -mask_id 1 -type 1 -res 0 -thickness 5"));
}

TEST_F(ProcessFileNotesTest, TellOfTargetsWithoutAType) {
    ExpectNote(NotesOf("etch -name E -targets -depth 5 -iso 0"), note_kind::noType, 5,
               {"-targets names no type", "name one"});
    ExpectNote(NotesOf("polish -name P -stop -over 5"), note_kind::noType, 5, {"-stop"});
}

TEST_F(ProcessFileNotesTest, TellOfATaperAboveTheSteepest) {
    const std::string photo = "photo -name P -mask_id 1 -type 1 -res 0 -thickness 5 -taper ";
    ExpectNote(NotesOf(photo + "90"), note_kind::taper, 5, {"-taper 90 counts as 89"});
    ExpectSilence(NotesOf(photo + "89"));
}

}  // namespace
}  // namespace zelmo
