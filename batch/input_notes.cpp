#include "batch/input_notes.h"

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

}  // namespace

void NoteRefusedLayout(const BatchOptions& options, NoteTeller& teller) {
    if (teller.WantsNotes()) {
        teller.Add(RefusedLayoutNotes(options.layout, options.process));
    }
}

void NoteLayout(const BatchOptions& options, const GdsDatabase& layout, NoteTeller& teller) {
    if (teller.WantsNotes()) {
        teller.Add(LayoutNotes(options.layout, options.process, layout));
    }
}

void NoteProcess(const BatchOptions& options, const GdsDatabase& layout, const ColorTable& colors,
                 const ProcessModel* model, NoteTeller& teller) {
    if (!teller.WantsNotes()) {
        return;
    }
    const auto& variables = options.view.variables;
    const std::vector<CommandText> commands =
        ReadCommandTexts(options.process, variables ? &*variables : nullptr);
    teller.Add(ProcessFileNotes(options.process, commands, colors));
    if (model == nullptr) {
        teller.Add(UnknownCellNotes(options.process, commands, options.view, layout));
        return;
    }
    teller.Add(PreparationNotes(
        {options.process, commands, options.view, layout, *model,
         options.pictures ? std::optional(ScaleOf(model->settings)) : std::nullopt}));
}

}  // namespace zelmo
