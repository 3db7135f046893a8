#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "results/notes/note.h"
#include "results/notes/stack_before.h"

namespace zelmo {

struct ProcessModel;

/// What is probably not meant in the steps of a run, told of each by the stack before and after it,
/// in the shown window. A step can be told of again, with those behind it, as in a run that begins
/// once more in the middle: what is kept of steps is kept by their indices.
class StepNotes {
public:
    /// `processFile` is its name for the notes.
    explicit StepNotes(std::filesystem::path processFile) : file_(std::move(processFile)) {}

    /// What is known of photos, by their indices: whether their resist opened all of the window or
    /// none of it. For a run that goes on elsewhere.
    const std::map<std::size_t, bool>& KnownPhotos() const { return opensAllOrNone_; }
    void SetKnownPhotos(std::map<std::size_t, bool> known) { opensAllOrNone_ = std::move(known); }

    /// Looks at the stack before a step.
    void Before(const ProcessModel& model, std::size_t index);
    /// Looks at it after the same step.
    std::vector<Note> After(const ProcessModel& model, std::size_t index);

private:
    std::vector<Note> AfterPhoto(const ProcessModel& model, std::size_t index);
    bool IsAllOrNoneOpen(const ProcessModel& model, std::size_t index) const;

    std::filesystem::path file_;
    StackBefore before_;
    /// By the index of a photo: whether its resist opened all of the window or none of it. What is
    /// etched through such resist has been told of.
    std::map<std::size_t, bool> opensAllOrNone_;
};

}  // namespace zelmo
