#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/nearest_name.h"
#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
#include "results/notes/note_kinds.h"

namespace zelmo {

namespace {

/// The reason why there is no such kind, or nothing if there is one.
std::string CheckKind(std::string_view kind) {
    std::vector<std::string_view> known;
    for (const NoteKind& row : noteKinds) {
        known.push_back(row.name);
    }
    if (std::find(known.begin(), known.end(), kind) != known.end()) {
        return {};
    }
    const std::string_view nearest = NearestName(kind, known);
    return fmt::format("--allow: no kind of note is named \"{}\"{}", kind,
                       nearest.empty() ? std::string(", docs/notes.md has them all")
                                       : fmt::format(", the nearest is \"{}\"", nearest));
}

class NoteOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddTexts(
            "--allow", allowed_,
            "Be silent about this kind of note, as its line has it in brackets; may be "
            "given several times (docs/notes.md lists the kinds)",
            "KIND");
        arguments.AddFlag("--no-notes", none_, "Be silent about all notes");
        arguments.AddFlag(
            "--strict", strict_,
            "End with status 3 if there are notes, before the run where they are known "
            "by then");
        arguments.AddText("--diagnostics", diagnostics_, diagnosticHelp, diagnosticForm);
    }

    std::string Take(const Arguments& /*arguments*/, BatchOptions& options) override {
        for (const std::string& kind : allowed_) {
            if (std::string reason = CheckKind(kind); !reason.empty()) {
                return reason;
            }
        }
        options.notes = {.allowed = allowed_, .none = none_, .strict = strict_};
        return TakeDiagnosticStyle(diagnostics_, options.diagnostics);
    }

private:
    std::vector<std::string> allowed_;
    bool none_ = false;
    bool strict_ = false;
    std::string diagnostics_ = "plain";
};

}  // namespace

std::unique_ptr<OptionGroup> MakeNoteOptions() {
    return std::make_unique<NoteOptions>();
}

}  // namespace zelmo
