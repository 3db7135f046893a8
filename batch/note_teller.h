#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
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
    NoteTeller(NoteChoice choice, bool quiet, std::function<void(const Note&)> tell);

    /// Whether any notes are wanted at all.
    bool WantsNotes() const { return !choice_.none; }

    /// Keeps notes for the next call of TellAll; what is allowed is left out. Those about a step
    /// name its index, the others are about the inputs.
    void Add(const std::vector<Note>& notes, std::optional<std::size_t> step = std::nullopt);

    /// Forgets the notes about the inputs, or about the steps from this index on, for a run that
    /// begins anew.
    void ForgetInputs();
    void ForgetStepsFrom(std::size_t first);

    /// The lines of the steps are others now: `lineOf` gives that of a step's index.
    void MoveLines(const std::function<std::int32_t(std::size_t)>& lineOf);

    /// Tells what has not been told.
    void TellAll();

    /// All notes so far that are not allowed, those about the inputs first.
    std::vector<Note> Notes() const;

    /// Fails where notes are to end the program, and there are any.
    Outcome CheckStrict() const;

private:
    NoteChoice choice_;
    bool silent_;
    std::function<void(const Note&)> tell_;
    struct Kept {
        Note note;
        std::optional<std::size_t> step;
        bool isTold = false;
    };
    std::vector<Kept> notes_;
};

}  // namespace zelmo
