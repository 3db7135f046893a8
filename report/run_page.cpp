#include "report/run_page.h"

#include <algorithm>
#include <cstdint>

#include "base/text.h"
#include "model/grid/places.h"
#include "model/process_model.h"
#include "pictures/smaller_image.h"
#include "pictures/webp.h"
#include "process_run/step_choice.h"
#include "report/argument_meanings.h"
#include "results/notes/note.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

/// Pixels across: what screens show of a page, and what its strip does.
constexpr std::int32_t pictureWidth = 1920;
constexpr std::int32_t thumbnailWidth = 240;
constexpr float thumbnailQuality = 75.0f;

PageNote PageNoteOf(const Note& note) {
    return {std::string(note.kind), ReadableText(Utf8FromWide(PathText(note.file))), note.line,
            ReadableText(note.text)};
}

}  // namespace

Page PageHead(const ProcessModel& model, PageSource source, const PageGrid& grid) {
    const auto [low, high] = LocationWindow(model.settings);
    Page page;
    page.program = std::move(source.program);
    page.title = std::move(source.process);
    page.layout = std::move(source.layout);
    page.cell = ReadableText(model.settings.cellName);
    page.windowX = low.x;
    page.windowY = low.y;
    page.windowWidth = high.x - low.x;
    page.windowHeight = high.y - low.y;
    page.unit = LayoutUnitName(model.settings);
    page.stepCount = model.steps.size();
    page.positions = FindPagePositions(grid, model.grid, model.settings);
    page.processFile = std::move(source.processLines);
    return page;
}

std::vector<PageStep> PageSteps(const ProcessModel& model,
                                const std::vector<CommandText>& commands) {
    std::vector<PageStep> steps;
    for (const ProcessStep& step : model.steps) {
        PageStep known;
        known.number = static_cast<int>(steps.size()) + 1;
        known.name = ReadableText(step.description);
        known.kind = CommandWord(step.kind);
        known.line = step.line;
        const auto isOfStep = [&](const CommandText& text) { return text.line == step.line; };
        const auto command = std::find_if(commands.begin(), commands.end(), isOfStep);
        if (command != commands.end()) {
            known.arguments = ArgumentsOf(command->text);
        }
        steps.push_back(std::move(known));
    }
    return steps;
}

void AddPageNotes(Page& page, const std::vector<Note>& notes, const std::string& process) {
    for (const Note& note : notes) {
        const PageNote told = PageNoteOf(note);
        const auto isOfStep = [&](const PageStep& step) {
            return step.line > 0 && step.line == told.line && told.file == process;
        };
        const auto step = std::find_if(page.steps.begin(), page.steps.end(), isOfStep);
        (step != page.steps.end() ? step->notes : page.notes).push_back(told);
    }
}

std::pair<PagePicture, PagePicture> EncodePagePictures(const StepImage& drawn) {
    const StepImage picture = SmallerImage(drawn, pictureWidth);
    const StepImage thumbnail = SmallerImage(drawn, thumbnailWidth);
    return {{picture.width, picture.height, LosslessWebp(picture)},
            {thumbnail.width, thumbnail.height, LossyWebp(thumbnail, thumbnailQuality)}};
}

}  // namespace zelmo
