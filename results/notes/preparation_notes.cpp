#include "results/notes/preparation_notes.h"

#include <algorithm>

#include "model/process_model.h"
#include "results/notes/note_kinds.h"
#include "results/notes/note_list.h"

namespace zelmo {

namespace {

std::vector<Note> ResistLeftNotes(const Preparation& preparation) {
    const ProcessStep* open = nullptr;
    for (const ProcessStep& step : preparation.model.steps) {
        if (step.kind == StepKind::Photo) {
            open = &step;
        } else if (step.kind == StepKind::Strip) {
            open = nullptr;
        }
    }
    NoteList notes(preparation.processFile);
    if (open != nullptr) {
        notes.Add(note_kind::resistLeft, open->line,
                  "the resist of this line is left at the end of the file: a strip behind its last "
                  "etch removes it");
    }
    return notes.Take();
}

}  // namespace

std::vector<Note> PreparationNotes(const Preparation& preparation) {
    std::vector<Note> notes = WindowNotes(preparation);
    Append(notes, SizeNotes(preparation));
    Append(notes, MaskNotes(preparation));
    Append(notes, ResistLeftNotes(preparation));
    std::stable_sort(notes.begin(), notes.end(),
                     [](const Note& a, const Note& b) { return a.line < b.line; });
    return notes;
}

}  // namespace zelmo
