#include "batch/listeners/note_listener.h"

#include <new>

#include "batch/run_record.h"
#include "model/process_model.h"

namespace zelmo {

Outcome NoteListener::Restart(const ProcessModel& model, std::size_t first) {
    teller_.ForgetStepsFrom(first);
    // What was noted of the others holds; lines above them may have come or gone.
    teller_.MoveLines([&](std::size_t index) { return model.steps[index].line; });
    return {};
}

void NoteListener::BeforeStep(const ProcessModel& model, std::size_t index) {
    try {
        stepNotes_.Before(model, index);
        hasLooked_ = true;
    } catch (const std::bad_alloc&) {
        hasLooked_ = false;  // the run may have enough without its notes
    }
}

Outcome NoteListener::AfterStep(const ProcessModel& model, std::size_t index,
                                RunRecord& /*record*/) {
    try {
        if (hasLooked_) {
            teller_.Add(stepNotes_.After(model, index), index);
        }
    } catch (const std::bad_alloc&) {
        hasLooked_ = false;
    }
    teller_.TellAll();
    return {};
}

Outcome NoteListener::Finish(RunRecord& record, bool /*complete*/) {
    record.notes = teller_.Notes();
    return {};
}

}  // namespace zelmo
