#include "batch/note_teller.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace zelmo {

NoteTeller::NoteTeller(NoteChoice choice, bool quiet, std::function<void(const std::string&)> tell)
    : choice_(std::move(choice)), silent_(quiet && !choice_.strict), tell_(std::move(tell)) {}

void NoteTeller::Add(const std::vector<Note>& notes) {
    const auto& allowed = choice_.allowed;
    for (const Note& note : notes) {
        if (!choice_.none &&
            std::find(allowed.begin(), allowed.end(), note.kind) == allowed.end()) {
            notes_.push_back(note);
        }
    }
}

void NoteTeller::TellAll() {
    for (; told_ < notes_.size(); ++told_) {
        if (!silent_) {
            tell_(NoteLine(notes_[told_]));
        }
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
