#include "results/summary.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <utility>

#include <nlohmann/json.hpp>

#include "base/text.h"
#include "model/grid/grid.h"
#include "model/process.h"
#include "results/notes/note.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

using Json = nlohmann::ordered_json;

double ReadBack(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// The number with ten significant digits: what lies behind them is rounding.
double Significant(double value) {
    return std::isfinite(value) ? ReadBack(fmt::format("{:.9e}", value)) : value;
}

/// The shortest number that single precision holds as this one.
double Shortest(float value) {
    return std::isfinite(value) ? ReadBack(fmt::format("{}", value)) : static_cast<double>(value);
}

double Microseconds(double seconds) {
    return std::round(seconds * 1e6) / 1e6;
}

std::string FileText(const Note& note) {
    return ReadableText(Utf8FromWide(PathText(note.file)));
}

Json JsonOf(const Note& note) {
    return {{"kind", std::string(note.kind)},
            {"file", FileText(note)},
            {"line", note.line},
            {"text", ReadableText(note.text)}};
}

/// The notes of a line of the process file, or those that belong to none of `steps`.
template <typename Belongs>
Json NotesWhere(const std::vector<Note>& notes, const Belongs& belongs) {
    Json json = Json::array();
    for (const Note& note : notes) {
        if (belongs(note)) {
            json.push_back(JsonOf(note));
        }
    }
    return json;
}

Json JsonOf(const MeasuredLayer& layer) {
    Json json;
    json["layer"] = layer.facts.number;
    json["material"] = layer.facts.material;
    json["label"] = layer.facts.label;
    json["area_um2"] = Significant(layer.numbers.area);
    json["volume_um3"] = Significant(layer.numbers.volume);
    const auto& heights = layer.numbers.heights;
    const auto add = [&](const char* name, double LayerNumbers::Heights::*value) {
        json[name] = heights ? Json(RoundedNanometres(*heights.*value)) : Json();
    };
    add("least_thickness_nm", &LayerNumbers::Heights::leastThickness);
    add("greatest_thickness_nm", &LayerNumbers::Heights::greatestThickness);
    add("mean_thickness_nm", &LayerNumbers::Heights::meanThickness);
    add("lowest_level_nm", &LayerNumbers::Heights::lowestLevel);
    add("highest_level_nm", &LayerNumbers::Heights::highestLevel);
    return json;
}

Json GridJson(const ProcessSettings& settings) {
    Grid grid;
    SizeGrid(grid, settings);
    return {{"columns", grid.columns},
            {"rows", grid.rows},
            {"spacing_um", Shortest(grid.spacing)},
            {"origin_x_um", Shortest(grid.originX)},
            {"origin_y_um", Shortest(grid.originY)},
            {"window_x_um", Shortest(settings.windowX)},
            {"window_y_um", Shortest(settings.windowY)},
            {"window_width_um", Shortest(settings.windowWidth)},
            {"window_height_um", Shortest(settings.windowHeight)}};
}

Json StepJson(const SummaryStep& step, Json notes) {
    Json json;
    json["number"] = step.step.number;
    json["name"] = step.step.name;
    json["line"] = step.line;
    json["seconds"] = Microseconds(step.seconds);
    json["picture_seconds"] = Microseconds(step.pictureSeconds);
    json["notes"] = std::move(notes);
    if (step.layers) {
        json["layers"] = Json::array();
        for (const MeasuredLayer& layer : *step.layers) {
            json["layers"].push_back(JsonOf(layer));
        }
    }
    return json;
}

}  // namespace

std::string SummaryJson(const Summary& summary, const ProcessSettings& settings,
                        const std::vector<Note>& notes, std::string_view processFile) {
    const auto isOf = [&](const Note& note, const SummaryStep& step) {
        return step.line > 0 && note.line == step.line && FileText(note) == processFile;
    };
    Json json;
    json["program"] = summary.program;
    json["version"] = summary.version;
    json["complete"] = summary.complete;
    json["inputs"] = Json::array();
    for (const SummaryInput& input : summary.inputs) {
        json["inputs"].push_back(
            {{"role", input.role}, {"path", input.path}, {"sha256", input.sha256}});
    }
    json["cell"] = ReadableText(settings.cellName);
    json["grid"] = GridJson(settings);
    json["notes"] = NotesWhere(notes, [&](const Note& note) {
        for (const SummaryStep& step : summary.steps) {
            if (isOf(note, step)) {
                return false;
            }
        }
        return true;
    });
    json["steps"] = Json::array();
    for (const SummaryStep& step : summary.steps) {
        json["steps"].push_back(
            StepJson(step, NotesWhere(notes, [&](const Note& note) { return isOf(note, step); })));
    }
    return json.dump(2) + "\n";
}

}  // namespace zelmo
