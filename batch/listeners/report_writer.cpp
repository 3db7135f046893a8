#include "batch/listeners/report_writer.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "base/data_files.h"
#include "base/text.h"
#include "base/version.h"
#include "batch/consoles.h"
#include "batch/files/asked_file.h"
#include "batch/run_record.h"
#include "command_line/reasons.h"
#include "command_line/whole_file.h"
#include "model/grid/places.h"
#include "model/process_model.h"
#include "pictures/smaller_image.h"
#include "pictures/webp.h"
#include "process_file/command_text.h"
#include "process_run/step_choice.h"
#include "report/argument_meanings.h"
#include "report/page_file.h"
#include "report/process_file_lines.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;

/// Pixels across: what screens show of a page, and what its strip does.
constexpr std::int32_t pictureWidth = 1920;
constexpr std::int32_t thumbnailWidth = 240;
constexpr float thumbnailQuality = 75.0f;

/// Both pictures that a page has of a step.
std::pair<PagePicture, PagePicture> EncodePictures(const StepImage& drawn) {
    const StepImage picture = SmallerImage(drawn, pictureWidth);
    const StepImage thumbnail = SmallerImage(drawn, thumbnailWidth);
    return {{picture.width, picture.height, LosslessWebp(picture)},
            {thumbnail.width, thumbnail.height, LossyWebp(thumbnail, thumbnailQuality)}};
}

std::string FileName(const fs::path& path) {
    return ReadableText(TextOf(path.filename()));
}

PageNote PageNoteOf(const Note& note) {
    return {std::string(note.kind), ReadableText(TextOf(note.file)), note.line,
            ReadableText(note.text)};
}

/// What is known of all steps before they run.
std::vector<PageStep> StepsOf(const ProcessModel& model, const BatchOptions& options) {
    const auto& variables = options.view.variables;
    const std::vector<CommandText> commands =
        ReadCommandTexts(options.process, variables ? &*variables : nullptr);
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

/// What is told of a run but for its steps.
Page HeadOf(const ProcessModel& model, const BatchOptions& options, const PageGrid& grid) {
    const auto [low, high] = LocationWindow(model.settings);
    Page page;
    page.program = std::string("zelmo-batch ") + programVersion;
    page.title = FileName(options.process);
    page.layout = FileName(options.layout);
    page.cell = ReadableText(model.settings.cellName);
    page.windowX = low.x;
    page.windowY = low.y;
    page.windowWidth = high.x - low.x;
    page.windowHeight = high.y - low.y;
    page.unit = LayoutUnitName(model.settings);
    page.stepCount = model.steps.size();
    page.positions = FindPagePositions(grid, model.grid, model.settings);
    page.processFile = ProcessFileLines(options.process);
    return page;
}

}  // namespace

ReportWriter::ReportWriter(BatchOptions options, std::vector<fs::path> assetFolders,
                           OutputConsole& console)
    : options_(std::move(options)), assetFolders_(std::move(assetFolders)), console_(console) {}

Outcome ReportWriter::Begin(const ProcessModel& model) {
    const fs::path& file = *options_.report.file;
    std::string reason = WhyNotToWrite(file, "page", options_.overwrite);
    if (reason.empty()) {
        reason = ReadPageBundle(FindDataFile(assetFolders_, "page.js"),
                                FindDataFile(assetFolders_, "page.css"), bundle_);
    }
    if (!reason.empty()) {
        return {ExitStatus::Other, reason};
    }
    return Restart(model, 0);
}

Outcome ReportWriter::Restart(const ProcessModel& model, std::size_t first) {
    WaitForPicture();
    taken_.erase(taken_.lower_bound(first), taken_.end());
    TakeOver(model);
    if (first == 0 || !fields_) {
        fields_.emplace(grid_);
    }
    fields_->KeepFirst(taken_.size());
    return {};
}

void ReportWriter::TakeOver(const ProcessModel& model) {
    chosen_ = ChooseSteps(options_.steps, model.steps).chosen;
    grid_ = ThinGrid(model.grid, options_.report.columns);
    steps_ = StepsOf(model, options_);
    head_ = HeadOf(model, options_, grid_);
}

void ReportWriter::BeforeStep(const ProcessModel& /*model*/, std::size_t /*index*/) {
    console_.BeginCopy();
}

Outcome ReportWriter::AfterStep(const ProcessModel& model, std::size_t index,
                                RunRecord& /*record*/) {
    std::vector<std::string> lines;
    for (const std::wstring& line : console_.TakeCopy()) {
        lines.push_back(ReadableText(Utf8FromWide(line)));
    }
    if (!lines.empty()) {
        consoleLines_[index] = std::move(lines);  // a step that is only taken again has none
    }
    if (chosen_.at(index)) {
        zero_ = static_cast<double>(model.stack.substrateThickness);
        taken_[index].stack = fields_->Take(model.stack, model.grid.columns);
    }
    return {};
}

void ReportWriter::TakePicture(std::size_t index, const std::shared_ptr<const StepImage>& image) {
    WaitForPicture();
    pictureIndex_ = index;
    const auto encode = [image] { return EncodePictures(*image); };
    try {
        picture_ = std::async(std::launch::async, encode);
    } catch (const std::system_error&) {
        picture_ = std::async(std::launch::deferred, encode);  // no thread to be had
    }
}

void ReportWriter::WaitForPicture() {
    if (picture_.valid()) {
        std::tie(taken_[pictureIndex_].picture, taken_[pictureIndex_].thumbnail) = picture_.get();
    }
}

Outcome ReportWriter::Finish(RunRecord& record, bool complete) {
    if (!complete) {
        return {};
    }
    WaitForPicture();
    const Page page = MakePage(record);
    const auto write = [&](std::FILE* file) { return WritePage(page, bundle_, file); };
    const fs::path& file = *options_.report.file;
    // From the second time on it is this run's own page that is replaced.
    const bool replaces = options_.overwrite || wasWritten_;
    const std::string failure = replaces ? WriteWholeFile(file, write) : WriteNewFile(file, write);
    wasWritten_ = wasWritten_ || failure.empty();
    return failure.empty() ? Outcome{} : Outcome{ExitStatus::Other, failure};
}

Page ReportWriter::MakePage(const RunRecord& record) const {
    Page page = head_;
    page.zero = zero_;
    for (const auto& [index, taken] : taken_) {
        page.steps.push_back(MakeStep(index, record));
    }
    const std::string process = ReadableText(TextOf(options_.process));
    for (const Note& note : record.notes) {
        const PageNote told = PageNoteOf(note);
        const auto isOfStep = [&](const PageStep& step) {
            return step.line > 0 && step.line == told.line && told.file == process;
        };
        const auto step = std::find_if(page.steps.begin(), page.steps.end(), isOfStep);
        (step != page.steps.end() ? step->notes : page.notes).push_back(told);
    }
    page.chunks = fields_->Chunks();
    return page;
}

PageStep ReportWriter::MakeStep(std::size_t index, const RunRecord& record) const {
    const Taken& taken = taken_.at(index);
    PageStep step = steps_.at(index);
    step.seconds = record.seconds.at(index).step;
    const auto lines = consoleLines_.find(index);
    step.console = lines != consoleLines_.end() ? lines->second : std::vector<std::string>();
    step.stack = taken.stack;
    step.picture = taken.picture;
    step.thumbnail = taken.thumbnail;
    return step;
}

}  // namespace zelmo
