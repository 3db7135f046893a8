#include "layout_tool/layout_run.h"

#include <fmt/format.h>

#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "command_line/diagnostics.h"
#include "command_line/reasons.h"
#include "command_line/standard_streams.h"
#include "command_line/whole_file.h"
#include "layout_tool/cell_facts.h"
#include "layout_tool/layer_choice.h"
#include "layout_tool/layout_picture.h"
#include "layout_tool/layout_reading.h"
#include "layout_tool/options.h"
#include "layout_tool/place_facts.h"
#include "layout_tool/process_view.h"
#include "layout_tool/reports.h"
#include "layout_tool/shown_text.h"

namespace zelmo {

namespace {

void WriteFailure(const Outcome& outcome, DiagnosticStyle style) {
    for (const std::string& line : FailureLines(outcome, "zelmo-layout", style)) {
        WriteToError(line);
    }
}

/// The later of two outcomes counts where it failed.
Outcome WorseOf(const Outcome& first, const Outcome& second) {
    return second.Failed() ? second : first;
}

Outcome Write(const std::string& text) {
    std::string failure;
    return WriteToOutput(text, failure) ? Outcome{} : Outcome{ExitStatus::Other, failure};
}

Outcome WritePicture(const LayoutReading& reading, const CellFacts& facts,
                     const ReportSubject& subject, const std::filesystem::path& path) {
    const LayoutPicture picture = DrawLayout(reading, facts, subject);
    if (!picture.failure.empty()) {
        return {ExitStatus::Picture, fmt::format("the picture {} cannot be drawn: {}", TextOf(path),
                                                 ShownText(picture.failure))};
    }
    const std::string failure = WriteWholeFile(path, picture.svg);
    if (!failure.empty()) {
        return {ExitStatus::Picture, failure};
    }
    if (!picture.leftOut.empty()) {
        WriteLayoutToolError(fmt::format("warning: {}: {}", TextOf(path), picture.leftOut));
    }
    return {};
}

/// What is known of a cell, of the layers that are asked for alone. Fails if it lacks one, or the
/// cell whose places are asked for.
Outcome FindFacts(const LayoutReading& reading, const LayoutToolOptions& options, std::size_t cell,
                  CellFacts& facts) {
    const CellLayers layers = CountLayers(reading.database, cell);
    const std::vector<MaskLayer> unknown = UnknownLayers(options.layers, layers);
    if (!unknown.empty()) {
        return {
            ExitStatus::Usage,
            fmt::format("--layers: cell \"{}\" of the layout {} has nothing on {}; it has {}",
                        ShownText(NameText(reading.database.cells[cell].name)),
                        TextOf(options.layout), LayerListText(unknown), KnownLayersText(layers))};
    }
    facts = FindCellFacts(reading, cell, options.texts, layers, options.layers);
    return ChoosePlaces(reading, options, facts);
}

/// What is asked for of one cell.
Outcome TellCell(const LayoutReading& reading, const LayoutToolOptions& options,
                 const std::optional<ProcessFile>& process, std::size_t cell) {
    const ReportSubject subject{TextOf(options.layout),
                                options.process ? TextOf(*options.process) : std::string()};
    CellFacts facts;
    Outcome outcome = FindFacts(reading, options, cell, facts);
    if (!outcome.Failed() && process) {
        facts.masks = FindMasks(*process, facts);
    }
    if (!outcome.Failed()) {
        outcome = ChooseWindow(reading, options, process, facts);
    }
    if (outcome.Failed()) {
        return outcome;
    }
    if (facts.window) {
        CutWithWindow(reading, facts);
    }
    outcome =
        Write(options.json ? CellJson(reading, facts, subject) : CellText(reading, facts, subject));
    if (outcome.Failed() || !options.picture) {
        return outcome;
    }
    return WritePicture(reading, facts, subject, *options.picture);
}

Outcome Tell(const LayoutReading& reading, const LayoutToolOptions& options) {
    std::optional<ProcessFile> process;
    std::optional<std::size_t> cell;
    Outcome outcome = ReadProcess(options, process);
    if (!outcome.Failed()) {
        outcome = ChooseCell(reading, options, process, cell);
    }
    if (outcome.Failed()) {
        return outcome;
    }
    if (cell) {
        return TellCell(reading, options, process, *cell);
    }
    const ReportSubject subject{TextOf(options.layout), {}};
    return Write(options.json ? LayoutJson(reading, subject) : LayoutText(reading, subject));
}

/// A layout that is refused for its references alone is told of all the same.
Outcome ReadAndTell(const LayoutToolOptions& options) {
    const LayoutReading reading = ReadLayout(options.layout, options.repair);
    if (reading.hasCells) {
        return WorseOf(reading.outcome, Tell(reading, options));
    }
    WriteFailure(reading.outcome, options.diagnostics);
    for (const ProblemLine& problem : ProblemLines(reading)) {
        if (options.diagnostics == DiagnosticStyle::Gcc) {
            WriteToError(GccLine({TextOf(options.layout), 0, problem.text}, "note"));
        } else {
            WriteLayoutToolError(problem.text);
        }
    }
    return {reading.outcome.status, {}};
}

/// The same for whatever the standard library may throw.
Outcome ReadAndTellOrSayWhyNot(const LayoutToolOptions& options) {
    try {
        return ReadAndTell(options);
    } catch (const std::bad_alloc&) {
        return {ExitStatus::Other, "there is not enough memory for this layout"};
    } catch (const std::exception& error) {
        return {ExitStatus::Other, error.what()};
    }
}

}  // namespace

void WriteLayoutToolError(const std::string& message) {
    WriteErrorLine("zelmo-layout", message);
}

ExitStatus RunLayoutTool(const std::vector<std::string>& arguments) {
    const LayoutCommandLine commandLine = ParseLayoutCommandLine(arguments);
    if (!commandLine.options) {
        return zelmo::Tell(commandLine.end, WriteLayoutToolError);
    }
    const Outcome outcome = ReadAndTellOrSayWhyNot(*commandLine.options);
    if (!outcome.message.empty()) {
        WriteFailure(outcome, commandLine.options->diagnostics);
    }
    return outcome.status;
}

}  // namespace zelmo
