#include "tests/results/notes/note_run.h"

#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "model/execute_step.h"
#include "model/process_model.h"
#include "process_run/prepare_run.h"
#include "results/notes/note_list.h"
#include "results/notes/process_file_notes.h"
#include "results/notes/step_notes.h"
#include "tests/support/recording_console.h"

namespace zelmo {

namespace {

/// A process file, prepared for the layout of a folder.
struct Prepared {
    GdsDatabase layout;
    std::vector<CommandText> commands;
    PreparedRun run;
};

void Prepare(Prepared& prepared, const TempFolder& folder, const ColorTable& colors,
             const ViewChoice& view) {
    RecordingConsole console;
    EXPECT_EQ(ReadGdsFile(prepared.layout, folder.Path() / "layout.gds", &console), std::nullopt);
    const auto path = folder.Path() / "process.txt";
    prepared.commands = ReadCommandTexts(path);
    prepared.run = PrepareRun(path, prepared.layout, colors, &console, view);
    EXPECT_EQ(prepared.run.errors, std::vector<std::string>{});
}

std::string Lines(const std::vector<Note>& notes) {
    std::string lines;
    for (const Note& note : notes) {
        lines += NoteLine(note) + "\n";
    }
    return lines;
}

}  // namespace

NotesTest::NotesTest() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 3000, 3000, 7000, 7000);
    writer.Rectangle({2, 5}, 500, 500, 1500, 1500);
    writer.Rectangle(3, 20000, 0, 21000, 1000);
    writer.EndCell();
    writer.EndLibrary();
    SetLayout(writer);
}

void NotesTest::SetLayout(const GdsWriter& layout) {
    folder.Write("layout.gds", layout.Bytes());
}

std::vector<Note> NotesTest::NotesOfLines(const std::string& text) {
    const auto path = folder.Write("process.txt", text);
    return ProcessFileNotes(path, ReadCommandTexts(path), colors);
}

std::vector<Note> NotesTest::NotesBefore(const std::string& text) {
    std::vector<Note> notes = NotesOfLines(text);
    Prepared prepared;
    Prepare(prepared, folder, colors, view);
    if (prepared.run.model != nullptr) {
        Append(notes, PreparationNotes({folder.Path() / "process.txt", prepared.commands, view,
                                        prepared.layout, *prepared.run.model, scale}));
    }
    return notes;
}

std::vector<Note> NotesTest::NotesOfSteps(const std::string& steps) {
    std::vector<Note> notes = NotesBefore(processHead + steps);
    Prepared prepared;
    Prepare(prepared, folder, colors, view);
    if (prepared.run.model == nullptr) {
        return notes;
    }
    ProcessModel& model = *prepared.run.model;
    StepNotes stepNotes(folder.Path() / "process.txt");
    RecordingConsole console;
    for (std::size_t index = 0; index < model.steps.size(); ++index) {
        stepNotes.Before(model, index);
        ExecuteStep(model, model.steps[index], &console);
        Append(notes, stepNotes.After(model, index));
    }
    return notes;
}

void ExpectNote(const std::vector<Note>& notes, std::string_view kind, std::int32_t line,
                const std::vector<std::string>& pieces) {
    int found = 0;
    for (const Note& note : notes) {
        if (note.kind != kind) {
            continue;
        }
        ++found;
        EXPECT_EQ(note.line, line) << NoteLine(note);
        for (const std::string& piece : pieces) {
            EXPECT_NE(note.text.find(piece), std::string::npos) << piece << " in " << note.text;
        }
    }
    EXPECT_EQ(found, 1) << kind << " in:\n" << Lines(notes);
}

void ExpectNone(const std::vector<Note>& notes, std::string_view kind) {
    for (const Note& note : notes) {
        EXPECT_NE(note.kind, kind) << NoteLine(note);
    }
}

void ExpectSilence(const std::vector<Note>& notes) {
    EXPECT_EQ(Lines(notes), "");
}

}  // namespace zelmo
