#include "results/notes/layout_notes.h"

#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "tests/results/notes/note_run.h"
#include "tests/support/recording_console.h"

namespace zelmo {
namespace {

using namespace std::string_literals;

class LayoutNotesTest : public NotesTest {
protected:
    LayoutNotesTest() { folder.Write("process.txt", processHead); }

    /// Notes of a layout of these bytes, read or refused.
    std::vector<Note> NotesOfBytes(const std::string& bytes, bool& refused) {
        const auto layout = folder.Write("layout.gds", bytes);
        RecordingConsole console;
        GdsDatabase database;
        refused = ReadGdsFile(database, layout, &console).has_value();
        return refused ? RefusedLayoutNotes(layout, Process())
                       : LayoutNotes(layout, Process(), database);
    }
    std::vector<Note> NotesOfBytes(const std::string& bytes) {
        bool refused = false;
        return NotesOfBytes(bytes, refused);
    }
    std::vector<Note> NotesOf(const GdsWriter& writer) { return NotesOfBytes(Text(writer)); }

    static std::string Text(const GdsWriter& writer) {
        const auto& bytes = writer.Bytes();
        return {bytes.begin(), bytes.end()};
    }
    static GdsWriter GoodLayout() {
        GdsWriter writer;
        writer.BeginLibrary();
        writer.BeginCell("TOP");
        writer.Rectangle(1, 0, 0, 10, 10);
        writer.EndCell();
        writer.EndLibrary();
        return writer;
    }
    std::filesystem::path Process() const { return folder.Path() / "process.txt"; }
};

TEST_F(LayoutNotesTest, AreNoneForAGoodLayout) {
    ExpectSilence(NotesOf(GoodLayout()));
}

TEST_F(LayoutNotesTest, TellWhatAFileLooksLike) {
    ExpectNote(NotesOfBytes("\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s), note_kind::layoutFormat, 0,
               {"a PNG picture", "GDSII", "export"});
    ExpectNote(NotesOfBytes("%SEMI-OASIS\r\n\1\3"), note_kind::layoutFormat, 0,
               {"OASIS", "export the layout as GDSII"});
    ExpectNote(NotesOfBytes("PK\3\4"), note_kind::layoutFormat, 0, {"unpack"});
    ExpectNote(NotesOfBytes("just some words, long enough for records\n"), note_kind::layoutFormat,
               0, {"text", "export"});
    ExpectNote(NotesOfBytes("settings -version 4\n"), note_kind::layoutFormat, 0,
               {"text", "looks like a process file"});
}

TEST_F(LayoutNotesTest, SayNothingOfAFileThatCannotBeRead) {
    ExpectSilence(RefusedLayoutNotes(folder.Path() / "absent.gds", Process()));
    ExpectSilence(NotesOfBytes("\x1F\x8B\x08 and no more of it"));
}

TEST_F(LayoutNotesTest, TellOfExchangedFiles) {
    folder.Write("process.txt", Text(GoodLayout()));
    const std::vector<Note> notes = NotesOfBytes(processHead);
    ExpectNote(notes, note_kind::filesSwapped, 0, {"process.txt is a GDSII layout", "first"});
    ExpectNone(notes, note_kind::layoutFormat);
}

TEST_F(LayoutNotesTest, TellOfAnEmptyFile) {
    ExpectNote(NotesOfBytes(""), note_kind::layoutEmpty, 0, {"empty", "once more"});
}

TEST_F(LayoutNotesTest, TellOfALayoutWithNothingInIt) {
    GdsWriter noCells;
    noCells.BeginLibrary();
    noCells.EndLibrary();
    ExpectNote(NotesOf(noCells), note_kind::layoutEmpty, 0, {"no cells"});
    GdsWriter nothingDrawn;
    nothingDrawn.BeginLibrary();
    nothingDrawn.BeginCell("TOP");
    nothingDrawn.EndCell();
    nothingDrawn.EndLibrary();
    ExpectNote(NotesOf(nothingDrawn), note_kind::layoutEmpty, 0, {"no cell", "draws anything"});
}

TEST_F(LayoutNotesTest, TellOfALayoutThatIsCutOff) {
    std::string bytes = Text(GoodLayout());
    bytes.resize(bytes.size() - 12);
    ExpectNote(NotesOfBytes(bytes), note_kind::layoutCut, 0, {"bytes", "once more"});
}

TEST_F(LayoutNotesTest, TellThatARefusedLayoutIsCutOff) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 0, 0, 10, 10);
    writer.Reference("LATER", {0, 0});
    writer.EndCell();
    bool refused = false;
    const std::vector<Note> notes = NotesOfBytes(Text(writer), refused);
    EXPECT_TRUE(refused);
    ExpectNote(notes, note_kind::layoutCut, 0, {"bytes", "missing"});
    writer.EndLibrary();
    ExpectSilence(NotesOfBytes(Text(writer), refused));
    EXPECT_TRUE(refused);
}

TEST_F(LayoutNotesTest, TellOfCellsThatAreDefinedTwice) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (const char* const name : {"TOP", "SUB", "SUB"}) {
        writer.BeginCell(name);
        writer.Rectangle(1, 0, 0, 10, 10);
        writer.EndCell();
    }
    writer.EndLibrary();
    ExpectNote(NotesOf(writer), note_kind::cellTwice, 0, {"2 cells", "\"SUB\"", "rename"});
}

}  // namespace
}  // namespace zelmo
