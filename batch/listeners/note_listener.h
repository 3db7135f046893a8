#pragma once

#include "batch/listeners/step_listener.h"
#include "batch/note_teller.h"
#include "results/notes/step_notes.h"

namespace zelmo {

/// Tells what is suspicious about the steps of a run, as they come, and gives the record all notes
/// of the run.
class NoteListener : public StepListener {
public:
    /// `teller` outlives it.
    NoteListener(const BatchOptions& options, NoteTeller& teller)
        : teller_(teller), stepNotes_(options.process) {}

    Outcome Begin(const ProcessModel& /*model*/) override { return {}; }
    Outcome Restart(const ProcessModel& model, std::size_t first) override;
    void BeforeStep(const ProcessModel& model, std::size_t index) override;
    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override;
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    NoteTeller& teller_;
    StepNotes stepNotes_;
    bool hasLooked_ = false;  ///< at the stack before the present step
};

}  // namespace zelmo
