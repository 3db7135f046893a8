#include "batch/note_teller.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace zelmo {

NoteTeller::NoteTeller(NoteChoice choice, bool quiet, std::function<void(const Note&)> tell)
    : choice_(std::move(choice)), silent_(quiet && !choice_.strict), tell_(std::move(tell)) {}

void NoteTeller::Add(const std::vector<Note>& notes, std::optional<std::size_t> step) {
    const auto& allowed = choice_.allowed;
    for (const Note& note : notes) {
        if (!choice_.none &&
            std::find(allowed.begin(), allowed.end(), note.kind) == allowed.end()) {
            notes_.push_back({note, step});
        }
    }
}

void NoteTeller::ForgetInputs() {
    std::erase_if(notes_, [](const Kept& kept) { return !kept.step; });
}

void NoteTeller::ForgetStepsFrom(std::size_t first) {
    std::erase_if(notes_, [first](const Kept& kept) { return kept.step >= first; });
}

void NoteTeller::MoveLines(const std::function<std::int32_t(std::size_t)>& lineOf) {
    for (Kept& kept : notes_) {
        if (kept.step) {
            kept.note.line = lineOf(*kept.step);
        }
    }
}

std::vector<Note> NoteTeller::Notes() const {
    std::vector<Note> notes;
    for (const bool ofSteps : {false, true}) {
        for (const Kept& kept : notes_) {
            if (kept.step.has_value() == ofSteps) {
                notes.push_back(kept.note);
            }
        }
    }
    return notes;
}

void NoteTeller::TellAll() {
    for (Kept& kept : notes_) {
        if (!silent_ && !kept.isTold) {
            tell_(kept.note);
        }
        kept.isTold = true;
    }
}

Outcome NoteTeller::CheckStrict() const {
    if (!choice_.strict || notes_.empty()) {
        return {};
    }
    return {
        ExitStatus::Process,
        fmt::format("--strict: there {}; mend what they are about, or --allow their kinds",
                    notes_.size() == 1 ? "is 1 note" : fmt::format("are {} notes", notes_.size()))};
}

}  // namespace zelmo
