#include "results/notes/preparation_notes.h"

#include "tests/results/notes/note_run.h"

namespace zelmo {
namespace {

const std::string photo =
    "photo -name P -mask_id 1 -type 1 -res 0.2 -thickness 800\nstrip -name S\n";

class PreparationNotesTest : public NotesTest {
protected:
    /// Notes of a file with this `location`, on line 2, and these steps from line 4 on.
    std::vector<Note> NotesIn(const std::string& window, const std::string& steps = photo,
                              const std::string& settings = "") {
        return NotesBefore("settings -version 4 -N 200 " + settings + "\nlocation " + window +
                           "\ngds -cell TOP\n" + steps);
    }
    std::vector<Note> NotesOf(const std::string& steps) {
        return NotesIn("-x 0 -y 0 -dx 10 -dy 10", steps);
    }
};

TEST_F(PreparationNotesTest, AreNoneForAGoodProcess) {
    ExpectSilence(NotesOf(photo));
}

TEST_F(PreparationNotesTest, TellOfAWindowOutsideOfTheCellWithBothBoxes) {
    const std::vector<Note> notes = NotesIn("-x 100 -y 0 -dx 10 -dy 10");
    ExpectNote(notes, note_kind::windowOutside, 2,
               {"(100, 0) to (110, 10) um", "(0, 0) to (21, 7) um", "--window fit"});
    ExpectNone(notes, note_kind::maskEmpty);
}

TEST_F(PreparationNotesTest, TellOfAWindowBetweenWhatIsDrawn) {
    ExpectNote(NotesIn("-x 10 -y 2 -dx 5 -dy 4"), note_kind::windowOutside, 2,
               {"(10, 2) to (15, 6) um"});
}

TEST_F(PreparationNotesTest, SayNothingOfTheWindowOfAProcessWithoutMasks) {
    ExpectSilence(NotesIn("-x 100 -y 0 -dx 10 -dy 10",
                          "deposition -name N -type n -thickness 50 -color 1 2 3 4\n"));
}

TEST_F(PreparationNotesTest, TellOfAWindowThatHoldsACornerOfTheCell) {
    const std::string mask3 =
        "photo -name P -mask_id 3 -type 1 -res 1 -thickness 800\nstrip -name S\n";
    ExpectNote(NotesIn("-x 20.5 -y -9.5 -dx 10 -dy 10", mask3), note_kind::windowCorner, 2,
               {"only a corner", "(20.5, -9.5)", "(0, 0) to (21, 7) um"});
    // Inside, at a corner; over one side; around the whole cell
    ExpectSilence(
        NotesIn("-x 20 -y 0 -dx 1 -dy 1",
                "photo -name P -mask_id 3 -type 1 -res 0.1 -thickness 80\nstrip -name S\n"));
    ExpectSilence(NotesIn("-x 2 -y -5 -dx 10 -dy 9"));
    ExpectSilence(
        NotesIn("-x -5 -y -5 -dx 40 -dy 20",
                "photo -name P -mask_id 1 -type 1 -res 1 -thickness 800\nstrip -name S\n"));
}

TEST_F(PreparationNotesTest, TellOfAWindowThatIsCutToASquare) {
    ExpectNote(NotesIn("-x 2 -y 0 -dx 6 -dy 8"), note_kind::windowSquare, 2,
               {"6 by 8", "square", "widen"});
    ExpectSilence(NotesIn("-x 2 -y 0 -dx 6 -dy 6"));
    view.window = GivenWindow{2.0f, 0.0f, 6.0f, 9.0f};
    ExpectNote(NotesIn("-x 2 -y 0 -dx 6 -dy 6"), note_kind::windowSquare, 0,
               {"--window", "6 by 9"});
    view.window = FittedWindow{1.0f};
    ExpectSilence(NotesIn("-x 2 -y 0 -dx 6 -dy 8"));
}

TEST_F(PreparationNotesTest, TellOfMasksWithoutPolygonsInTheWindowAndWhatItHas) {
    const std::vector<Note> notes =
        NotesOf("photo -name P -mask_id 2/4 -type 1 -res 0.2 -thickness 800\nstrip -name S\n");
    ExpectNote(notes, note_kind::maskEmpty, 4,
               {"mask 2/4 has no polygons", "stays nowhere", "the cell has none either",
                "the window has 1/0, 2/5:", "--allow mask-empty"});
    ExpectNote(NotesOf("photo -name P -mask_id 3 -type 0 -res 0.2 -thickness 800\nstrip -name S\n"),
               note_kind::maskEmpty, 4,
               {"stays everywhere", "the cell has some from (20, 0) to (21, 1) um"});
    ExpectSilence(
        NotesOf("photo -name P -mask_id 2/4,1 -type 1 -res 0.2 -thickness 800\nstrip -name S\n"));
}

TEST_F(PreparationNotesTest, CountPolygonsThatAMasksShiftBringsIntoTheWindow) {
    const std::string mask = "photo -name P -mask_id 3 -type 1 -res 0.2 -thickness 800 -shift ";
    ExpectSilence(NotesOf(mask + "-15 0\nstrip -name S\n"));
    ExpectNote(NotesOf("photo -name P -mask_id 1 -type 1 -res 0.2 -thickness 800 -shift 9 0\n"
                       "strip -name S\n"),
               note_kind::maskEmpty, 4, {"mask 1 "});
}

TEST_F(PreparationNotesTest, TellOfPolygonsOfMasksThatAreTooSmallForTheGrid) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 3000, 3000, 7000, 7000);
    writer.Rectangle(1, 8000, 3000, 8050, 7000);
    writer.Rectangle(4, 1000, 1000, 1010, 1010);
    writer.EndCell();
    writer.EndLibrary();
    SetLayout(writer);
    ExpectNote(NotesOf(photo), note_kind::polygonsSkipped, 4,
               {"1 of the polygons of mask 1 ", "0.0603 um", "-N"});
    ExpectNone(
        NotesOf("photo -name P -mask_id 1/1 -type 1 -res 0.2 -thickness 80\nstrip -name S\n"),
        note_kind::polygonsSkipped);
}

TEST_F(PreparationNotesTest, TellOfAResolutionBelowTwoCells) {
    const auto notesOf = [&](const std::string& first, const std::string& second) {
        return NotesOf("photo -name P -mask_id 1 -type 1 -thickness 800 -res " + first +
                       "\nstrip -name S\nphoto -name Q -mask_id 1 -type 1 -thickness 800 -res " +
                       second + "\nstrip -name T\n");
    };
    ExpectNote(notesOf("0.1", "0.05"), note_kind::resFine, 4,
               {"-res is 0.1 um", "0.121 um", "(line 6 as well)", "-N"});
    ExpectNote(notesOf("0.2", "0.1"), note_kind::resFine, 6, {"-res is 0.1 um"});
    ExpectSilence(notesOf("0.13", "0"));
}

TEST_F(PreparationNotesTest, TellOfAResolutionAboveTheWindow) {
    const std::string mask = "photo -name P -mask_id 1 -type 1 -thickness 800 -res ";
    ExpectNote(NotesOf(mask + "200\nstrip -name S\n"), note_kind::resCoarse, 4,
               {"-res is 200 um", "10 um wide", "unit"});
    ExpectSilence(NotesOf(mask + "9\nstrip -name S\n"));
}

TEST_F(PreparationNotesTest, TellOfNumbersOfAnotherOrderThanTheWindow) {
    const std::string film = "deposition -name N -type n -color 1 2 3 4 -thickness ";
    ExpectNote(NotesOf(film + "0.5\n"), note_kind::unit, 4,
               {"-thickness 0.5 is less than a nanometre"});
    ExpectNote(NotesOf(film + "500000\n"), note_kind::unit, 4,
               {"-thickness is 500 um", "10 um wide", "nanometres"});
    ExpectSilence(NotesOf(film + "50000\n"));
    const std::string mask = "photo -name P -mask_id 1 -type 1 -res 0.2 -thickness 800 ";
    ExpectNote(NotesOf(mask + "-bias 20\nstrip -name S\n"), note_kind::unit, 4, {"-bias is 20 um"});
    ExpectNote(NotesOf(mask + "-shift 0 -300\nstrip -name S\n"), note_kind::unit, 4,
               {"-shift is 300 um"});
    ExpectSilence(NotesOf(mask + "-bias 0.2 -shift 0.5 -0.5\nstrip -name S\n"));
}

TEST_F(PreparationNotesTest, TellOfAWindowInTheOtherUnit) {
    ExpectNote(NotesIn("-x 0 -y 0 -dx 10 -dy 10", "", "-use_nm"), note_kind::unit, 2,
               {"10 nm wide", "-use_nm"});
    ExpectSilence(NotesIn("-x 0 -y 0 -dx 10000 -dy 10000", "", "-use_nm"));
    ExpectNote(NotesIn("-x 0 -y 0 -dx 10000 -dy 10000"), note_kind::unit, 2,
               {"10000 um wide", "21 um", "-use_nm"});
}

TEST_F(PreparationNotesTest, TellOfFilmsThatThePictureCannotShow) {
    const std::string films =
        "deposition -name A -type a -color 1 2 3 4 -thickness 3\n"
        "coating -name B -type b -color 1 2 3 4 -thickness 2\n"
        "coating -name C -type c -color 1 2 3 4 -thickness 1\n";
    scale = PictureScale{100.0, 1e-6};
    ExpectNote(
        NotesOf(films), note_kind::thinFilm, 5,
        {"B is 2 nm thick", "0.2 pixels", "below 2.5 nm", "(line 6 as well)", "smaller window"});
    scale = PictureScale{1000.0, 1e-6};
    ExpectSilence(NotesOf(films));
    scale = PictureScale{1000.0, 0.0015};  // surfaces that lie closer look like one
    ExpectNote(NotesOf(films), note_kind::thinFilm, 6, {"C is 1 nm thick", "below 1.5 nm"});
    scale = std::nullopt;  // no pictures
    ExpectSilence(NotesOf(films));
}

TEST_F(PreparationNotesTest, TellOfResistThatIsLeftAtTheEnd) {
    const std::string mask = "photo -name P -mask_id 1 -type 1 -res 0.2 -thickness 800\n";
    ExpectNote(NotesOf(mask), note_kind::resistLeft, 4, {"left at the end", "strip"});
    ExpectNote(NotesOf(photo + mask), note_kind::resistLeft, 6, {});
    ExpectSilence(NotesOf(photo + photo.substr(0, photo.size() - 2) + "T\n"));
}

TEST_F(PreparationNotesTest, ComeInTheOrderOfTheirLines) {
    const std::vector<Note> notes = NotesOf(
        "photo -name P -mask_id 7 -type 1 -res 0.1 -thickness 800\nstrip -name S\n"
        "deposition -name N -type n -color 1 2 3 4 -thickness 0.5\n"
        "photo -name P -mask_id 7 -type 1 -res 0.1 -thickness 800\n");
    for (std::size_t i = 1; i < notes.size(); ++i) {
        EXPECT_LE(notes[i - 1].line, notes[i].line);
    }
    EXPECT_GE(notes.size(), 5u);
}

}  // namespace
}  // namespace zelmo
