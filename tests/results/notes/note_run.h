#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "examples/gds_writer.h"
#include "process_file/color_table.h"
#include "process_run/view_choice.h"
#include "results/notes/note.h"
#include "results/notes/note_kinds.h"
#include "results/notes/preparation_notes.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

/// The first three lines of a process file, for a window of 10 um by 10 um on 200 columns of the
/// cell TOP. Steps begin with line 4.
inline const std::string processHead =
    "settings -version 4 -N 200\n"
    "location -x 0 -y 0 -dx 10 -dy 10\n"
    "gds -cell TOP\n";

/// Runs process files on a layout and collects the notes.
class NotesTest : public testing::Test {
protected:
    /// A layout with a square of 4 um on layer 1 in the middle of the window, one of 1 um on layer
    /// 2/5 in its corner, and one on layer 3 outside of it.
    NotesTest();

    void SetLayout(const GdsWriter& layout);
    /// Notes of the lines alone.
    std::vector<Note> NotesOfLines(const std::string& text);
    /// Notes of lines and preparation; of a file that can be prepared.
    std::vector<Note> NotesBefore(const std::string& text);
    /// All notes of a run of these steps.
    std::vector<Note> NotesOfSteps(const std::string& steps);

    ColorTable colors{{"navy", 0, 0, 128}, {"gold", 255, 215, 0}};
    ViewChoice view;
    std::optional<PictureScale> scale = PictureScale{100.0, 1e-6};
    TempFolder folder;
};

/// Expects exactly one note of this kind, with this line and with all of `pieces` in its text.
void ExpectNote(const std::vector<Note>& notes, std::string_view kind, std::int32_t line,
                const std::vector<std::string>& pieces);

/// Expects none of this kind.
void ExpectNone(const std::vector<Note>& notes, std::string_view kind);

/// Expects none of any kind.
void ExpectSilence(const std::vector<Note>& notes);

}  // namespace zelmo
