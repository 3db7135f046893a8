#include "batch/note_listener.h"

#include <new>

#include "batch/run_record.h"

namespace zelmo {

void NoteListener::BeforeStep(const ProcessModel& model, std::size_t index) {
    try {
        stepNotes_.Before(model, index);
        hasLooked_ = true;
    } catch (const std::bad_alloc&) {
        hasLooked_ = false;  // the run may have enough without its notes
    }
}

Outcome NoteListener::AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) {
    try {
        if (hasLooked_) {
            teller_.Add(stepNotes_.After(model, index), index);
        }
    } catch (const std::bad_alloc&) {
        hasLooked_ = false;
    }
    teller_.TellAll();
    record.notes = teller_.Notes();
    return {};
}

}  // namespace zelmo
