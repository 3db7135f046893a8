#include "batch/listeners/probe_writer.h"

#include <fmt/format.h>

#include <array>
#include <utility>

#include "batch/options.h"
#include "batch/run_record.h"
#include "command_line/whole_file.h"
#include "model/process_model.h"
#include "process_run/step_choice.h"
#include "results/readable_text.h"
#include "results/window_places.h"

namespace zelmo {

ProbeWriter::ProbeWriter(const BatchOptions& options,
                         std::function<std::string(const std::string&)> print)
    : numbers_(options.numbers),
      steps_(options.steps),
      printsTables_(!options.quiet || !(numbers_.probeCsv || numbers_.probeJson)),
      print_(std::move(print)) {}

Outcome ProbeWriter::Begin(const ProcessModel& model) {
    for (const auto& [x, y] : numbers_.probes) {
        if (const std::string reason = WhyOutside(model.settings, {x, y}); !reason.empty()) {
            return {ExitStatus::Usage, fmt::format("--probe {},{}: {}", x, y, reason)};
        }
    }
    for (const auto& file : {numbers_.probeCsv, numbers_.probeJson}) {
        if (const std::string reason = file ? WhyNotWritable(*file) : ""; !reason.empty()) {
            return {ExitStatus::Other, reason};
        }
    }
    chosen_ = ChooseSteps(steps_, model.steps).chosen;
    unit_ = LayoutUnitName(model.settings);
    return {};
}

Outcome ProbeWriter::AfterStep(const ProcessModel& model, std::size_t index,
                               RunRecord& /*record*/) {
    if (!chosen_.at(index)) {
        return {};
    }
    ProbedStep probed{NameOf(model.steps[index], index), {}};
    for (const auto& [x, y] : numbers_.probes) {
        const Place place = FromLayoutUnit(model.settings, {x, y});
        probed.columns.push_back(ReadStackColumn(model, PositionOnGrid(model.grid, place)));
    }
    taken_[index] = std::move(probed);
    return {};
}

ProbeReport ProbeWriter::MakeReport(std::size_t stepCount) const {
    ProbeReport report;
    report.unit = unit_;
    for (const auto& [x, y] : numbers_.probes) {
        report.places.push_back({x, y});
    }
    for (const auto& [index, step] : taken_) {
        if (index < stepCount && chosen_[index]) {
            report.steps.push_back(step);
        }
    }
    return report;
}

Outcome ProbeWriter::Finish(RunRecord& record, bool complete) {
    if (!complete) {
        return {};
    }
    const ProbeReport report = MakeReport(record.seconds.size());
    std::string failure = printsTables_ ? print_(ProbeTables(report)) : "";
    if (failure.empty() && numbers_.probeCsv) {
        failure = WriteWholeFile(*numbers_.probeCsv, ProbeCsv(report));
    }
    if (failure.empty() && numbers_.probeJson) {
        failure = WriteWholeFile(*numbers_.probeJson, ProbeJson(report));
    }
    return failure.empty() ? Outcome{} : Outcome{ExitStatus::Other, failure};
}

}  // namespace zelmo
