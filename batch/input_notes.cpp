#include "batch/input_notes.h"

#include <exception>
#include <optional>

#include "batch/note_teller.h"
#include "model/process_model.h"
#include "process_file/command_text.h"
#include "render/camera.h"
#include "results/notes/layout_notes.h"
#include "results/notes/preparation_notes.h"
#include "results/notes/process_file_notes.h"

namespace zelmo {

namespace {

/// What pictures of the bare substrate can show; the stack on it changes little of that.
PictureScale ScaleOf(const ProcessSettings& settings) {
    constexpr double substrateShare = 0.05;
    const double width = settings.windowWidth;
    const Camera camera(width, settings.windowHeight, width * substrateShare, settings.cameraAngle);
    return {PixelsPerMicron(camera), LeastHeight(camera)};
}

/// Adds what `find` finds. Layouts can be such that no polygons can be taken of them, or no memory
/// is left for more than the run: that is told by the run, and notes end none.
template <typename Find>
void AddFound(NoteTeller& teller, const Find& find) {
    if (!teller.WantsNotes()) {
        return;
    }
    try {
        teller.Add(find());
    } catch (const std::exception&) {
        return;
    }
}

}  // namespace

void NoteRefusedLayout(const BatchOptions& options, NoteTeller& teller) {
    AddFound(teller, [&] { return RefusedLayoutNotes(options.layout, options.process); });
}

void NoteLayout(const BatchOptions& options, const GdsDatabase& layout, NoteTeller& teller) {
    AddFound(teller, [&] { return LayoutNotes(options.layout, options.process, layout); });
}

void NoteProcess(const BatchOptions& options, const GdsDatabase& layout, const ColorTable& colors,
                 const ProcessModel* model, NoteTeller& teller) {
    if (!teller.WantsNotes()) {
        return;
    }
    const auto& variables = options.view.variables;
    const std::vector<CommandText> commands =
        ReadCommandTexts(options.process, variables ? &*variables : nullptr);
    AddFound(teller, [&] { return ProcessFileNotes(options.process, commands, colors); });
    AddFound(teller, [&] {
        if (model == nullptr) {
            return UnknownCellNotes(options.process, commands, options.view, layout);
        }
        return PreparationNotes(
            {options.process, commands, options.view, layout, *model,
             options.pictures ? std::optional(ScaleOf(model->settings)) : std::nullopt});
    });
}

}  // namespace zelmo
