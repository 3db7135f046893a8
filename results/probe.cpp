#include "results/probe.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include <nlohmann/json.hpp>

#include "results/readable_text.h"

namespace zelmo {

namespace {

using Json = nlohmann::ordered_json;
using TextRow = std::array<std::string, 5>;

constexpr std::size_t firstNumber = 2;  // material and label stand on the left

std::size_t CharacterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char character) {
        return (static_cast<unsigned char>(character) & 0xC0) != 0x80;
    }));
}

std::vector<TextRow> TextRows(const std::vector<ColumnPart>& column) {
    std::vector<TextRow> rows{{"material", "label", "from nm", "to nm", "thickness nm"}};
    for (const ColumnPart& part : column) {
        rows.push_back({part.layer ? part.layer->material : "gap",
                        part.layer ? part.layer->label : "", NanometresText(part.from),
                        NanometresText(part.to), NanometresText(part.Thickness())});
    }
    return rows;
}

/// The rows under each other, words on the left of their columns and numbers on the right.
std::string Aligned(const std::vector<TextRow>& rows) {
    std::array<std::size_t, std::tuple_size_v<TextRow>> widths{};
    for (const TextRow& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], CharacterCount(row[i]));
        }
    }
    std::string text;
    for (const TextRow& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string filling(widths[i] - CharacterCount(row[i]), ' ');
            text += "  " + (i < firstNumber ? row[i] + filling : filling + row[i]);
        }
        text += '\n';
    }
    return text;
}

}  // namespace

std::string ProbeTables(const ProbeReport& report) {
    std::string text;
    for (std::size_t place = 0; place < report.places.size(); ++place) {
        text +=
            fmt::format("\nSTACK AT ({0} {2}, {1} {2}), heights above the substrate's upper side\n",
                        report.places[place].x, report.places[place].y, report.unit);
        for (const ProbedStep& step : report.steps) {
            text += fmt::format("{:03d} {}\n", step.step.number, step.step.name);
            text += Aligned(TextRows(step.columns[place]));
        }
    }
    return text;
}

std::string ProbeCsv(const ProbeReport& report) {
    std::string text = fmt::format(
        "probe,x_{0},y_{0},step,step_name,layer,material,label,from_nm,to_nm,thickness_nm\n",
        report.unit);
    for (std::size_t place = 0; place < report.places.size(); ++place) {
        for (const ProbedStep& step : report.steps) {
            for (const ColumnPart& part : step.columns[place]) {
                text +=
                    fmt::format("{},{},{},{},{},", place + 1, report.places[place].x,
                                report.places[place].y, step.step.number, CsvField(step.step.name));
                text += part.layer ? fmt::format("{},{},{}", part.layer->number,
                                                 CsvField(part.layer->material),
                                                 CsvField(part.layer->label))
                                   : std::string(",gap,");
                text += fmt::format(",{},{},{}\n", NanometresText(part.from),
                                    NanometresText(part.to), NanometresText(part.Thickness()));
            }
        }
    }
    return text;
}

namespace {

Json JsonOf(const ColumnPart& part) {
    Json json;
    json["kind"] = part.layer ? "layer" : "gap";
    if (part.layer) {
        json["layer"] = part.layer->number;
        json["material"] = part.layer->material;
        json["label"] = part.layer->label;
    }
    json["from_nm"] = RoundedNanometres(part.from);
    json["to_nm"] = RoundedNanometres(part.to);
    json["thickness_nm"] = RoundedNanometres(part.Thickness());
    return json;
}

}  // namespace

std::string ProbeJson(const ProbeReport& report) {
    Json json;
    json["unit"] = report.unit;
    json["probes"] = Json::array();
    for (std::size_t place = 0; place < report.places.size(); ++place) {
        Json probe;
        probe["x"] = report.places[place].x;
        probe["y"] = report.places[place].y;
        probe["steps"] = Json::array();
        for (const ProbedStep& step : report.steps) {
            Json stack = Json::array();
            for (const ColumnPart& part : step.columns[place]) {
                stack.push_back(JsonOf(part));
            }
            probe["steps"].push_back({{"number", step.step.number},
                                      {"name", step.step.name},
                                      {"stack", std::move(stack)}});
        }
        json["probes"].push_back(std::move(probe));
    }
    return json.dump(2) + "\n";
}

}  // namespace zelmo
