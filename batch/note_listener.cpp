#include "batch/note_listener.h"

#include "batch/run_record.h"

namespace zelmo {

void NoteListener::BeforeStep(const ProcessModel& model, std::size_t index) {
    stepNotes_.Before(model, index);
}

Outcome NoteListener::AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) {
    teller_.Add(stepNotes_.After(model, index));
    teller_.TellAll();
    record.notes = teller_.Notes();
    return {};
}

}  // namespace zelmo
