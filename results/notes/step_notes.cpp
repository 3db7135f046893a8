#include "results/notes/step_notes.h"

#include <fmt/format.h>

#include "model/process_model.h"
#include "results/notes/etch_notes.h"
#include "results/notes/mask_window.h"
#include "results/notes/note_kinds.h"
#include "results/notes/note_list.h"

namespace zelmo {

namespace {

/// The cells of the shown window that the topmost layer has any thickness in. A step that adds a
/// layer adds it there, and one without any leaves an empty slot.
std::size_t CellsOfNewLayer(const ProcessModel& model, const ShownWindow& window) {
    return CountThick(ThicknessOf(model.stack.layers.back().get(), window));
}

/// Whether there are any.
bool ShowsNewLayer(const ProcessModel& model, const ShownWindow& window) {
    const Layer* const layer = model.stack.layers.back().get();
    for (std::int32_t row = 0; layer != nullptr && row < window.rows; ++row) {
        for (std::int32_t col = 0; col < window.cols; ++col) {
            const std::size_t cell = window.GridIndex(col, row);
            if (layer->top[cell] > layer->bottom[cell]) {
                return true;
            }
        }
    }
    return false;
}

/// What is to be said of a film that shows nowhere.
std::string NothingShownText(const ProcessStep& step) {
    const std::string name = Readable(step.description);
    return step.kind == StepKind::Implant
               ? fmt::format(
                     "nothing shows of {}: no target lies open in the window, as far as "
                     "its depth goes: look at -targets, -depth and what covers them",
                     name)
               : fmt::format(
                     "nothing shows of {}: {:.3g} nm are nothing beside the heights of "
                     "the stack: look at -thickness, which is in nanometres",
                     name, static_cast<double>(step.thickness) * 1000.0);
}

std::vector<Note> FilmNotes(const std::filesystem::path& file, const ProcessModel& model,
                            const ProcessStep& step) {
    NoteList notes(file);
    if (!ShowsNewLayer(model, FindShownWindow(model.grid))) {
        notes.Add(note_kind::nothingShown, step.line, NothingShownText(step));
    }
    return notes.Take();
}

}  // namespace

void StepNotes::Before(const ProcessModel& model, std::size_t index) {
    before_ = TakeStackBefore(model, model.steps[index]);
}

std::vector<Note> StepNotes::After(const ProcessModel& model, std::size_t index) {
    const ProcessStep& step = model.steps[index];
    const bool openIsKnown = IsAllOrNoneOpen(model, index);
    const StackBefore before = std::move(before_);
    if (CellsOf(FindShownWindow(model.grid)) == 0) {
        return {};
    }
    switch (step.kind) {
        case StepKind::Photo:
            return AfterPhoto(model, index);
        case StepKind::Etch:
            return EtchNotes(file_, model, index, before, openIsKnown);
        case StepKind::Release:
            return ReleaseNotes(file_, model, index, before);
        case StepKind::Implant:
            return openIsKnown || step.targets.empty() ? std::vector<Note>()
                                                       : FilmNotes(file_, model, step);
        case StepKind::Coating:
        case StepKind::Deposition:
            return FilmNotes(file_, model, step);
        default:
            return {};
    }
}

std::vector<Note> StepNotes::AfterPhoto(const ProcessModel& model, std::size_t index) {
    const ProcessStep& step = model.steps[index];
    const ShownWindow window = FindShownWindow(model.grid);
    const std::size_t covered = CellsOfNewLayer(model, window);
    const bool opensAll = covered == 0;
    opensAllOrNone_[index] = opensAll || covered == CellsOf(window);
    NoteList notes(file_);
    if (opensAllOrNone_[index] && HasPolygonsInWindow(model, step)) {
        notes.Add(note_kind::maskAllOrNone, step.line,
                  fmt::format("mask {} opens {} of the window: look at -type, {} here, at -mask_id "
                              "and at the window",
                              MaskText(step.mask), opensAll ? "100 %" : "0 %",
                              step.maskDark ? "1 (resist stays inside the polygons)"
                                            : "0 (resist stays outside the polygons)"));
    }
    return notes.Take();
}

bool StepNotes::IsAllOrNoneOpen(const ProcessModel& model, std::size_t index) const {
    const ProcessStep* const photo = OpenPhoto(model, index);
    if (photo == nullptr) {
        return false;
    }
    const auto found = opensAllOrNone_.find(static_cast<std::size_t>(photo - model.steps.data()));
    return found != opensAllOrNone_.end() && found->second;
}

}  // namespace zelmo
