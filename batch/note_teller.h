#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "batch/options.h"
#include "command_line/exit_status.h"
#include "results/notes/note.h"

namespace zelmo {

/// Whom the notes of a run are given to: it tells those that are wanted, each as a line, and knows
/// what there is of them.
class NoteTeller {
public:
    /// `tell` receives the lines. With `quiet` they are told only if they end the program.
    NoteTeller(NoteChoice choice, bool quiet, std::function<void(const std::string&)> tell);

    /// Whether any notes are wanted at all.
    bool WantsNotes() const { return !choice_.none; }

    /// Keeps notes for the next call of TellAll; what is allowed is left out.
    void Add(const std::vector<Note>& notes);

    /// Tells what has not been told.
    void TellAll();

    /// All notes so far that are not allowed.
    const std::vector<Note>& Notes() const { return notes_; }

    /// Fails where notes are to end the program, and there are any.
    Outcome CheckStrict() const;

private:
    NoteChoice choice_;
    bool silent_;
    std::function<void(const std::string&)> tell_;
    std::vector<Note> notes_;
    std::size_t told_ = 0;  ///< of these
};

}  // namespace zelmo
