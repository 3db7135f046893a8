#include "batch/listeners/report_writer.h"

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
#include "model/process_model.h"
#include "pictures/step_image.h"
#include "process_file/command_text.h"
#include "process_run/step_choice.h"
#include "report/page_file.h"
#include "report/process_file_lines.h"
#include "report/run_page.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;

std::string FileName(const fs::path& path) {
    return ReadableText(TextOf(path.filename()));
}

PageSource SourceOf(const BatchOptions& options) {
    return {std::string("zelmo-batch ") + programVersion, FileName(options.process),
            FileName(options.layout), ProcessFileLines(options.process)};
}

std::vector<CommandText> CommandsOf(const BatchOptions& options) {
    const auto& variables = options.view.variables;
    return ReadCommandTexts(options.process, variables ? &*variables : nullptr);
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
    steps_ = PageSteps(model, CommandsOf(options_));
    head_ = PageHead(model, SourceOf(options_), grid_);
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
    const auto encode = [image] { return EncodePagePictures(*image); };
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
    AddPageNotes(page, record.notes, ReadableText(TextOf(options_.process)));
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
