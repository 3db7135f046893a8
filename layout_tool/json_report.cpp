#include <nlohmann/json.hpp>

#include <cmath>

#include "gds/coordinates.h"
#include "gds/placed_boxes.h"
#include "layout_tool/layer_choice.h"
#include "layout_tool/lengths.h"
#include "layout_tool/reports.h"
#include "layout_tool/shown_text.h"

namespace zelmo {

namespace {

using Json = nlohmann::ordered_json;

Json Number(double number) {
    return std::isfinite(number) ? Json(number) : Json();
}

/// A number of single precision without the digits that it does not have.
Json Decimal(float number) {
    constexpr double scale = 1e6;
    return Number(std::round(static_cast<double>(number) * scale) / scale);
}

/// An integer, or about how much it is, or null.
Json Count(const FlatCount& count) {
    return count.isExact ? Json(count.exact) : Number(count.estimate);
}

Json Name(const LayoutReading& reading, std::size_t cell) {
    return ShownText(NameText(reading.database.cells[cell].name));
}

Json Box(const GdsRect& box, bool isKnown, const Lengths& lengths) {
    if (!isKnown || IsNothing(box)) {
        return nullptr;
    }
    return {{"x0", Number(lengths.Microns(box.xmin))},
            {"y0", Number(lengths.Microns(box.ymin))},
            {"x1", Number(lengths.Microns(box.xmax))},
            {"y1", Number(lengths.Microns(box.ymax))}};
}

Json Contained(const LayoutReading& reading, const std::vector<ContainedCell>& cells) {
    Json list = Json::array();
    for (const ContainedCell& cell : cells) {
        list.push_back({{"name", Name(reading, cell.cell)}, {"times", cell.times}});
    }
    return list;
}

Json Cell(const LayoutReading& reading, std::size_t number) {
    const CellContents& cell = reading.cells[number];
    const Lengths lengths(reading.database);
    return {{"name", Name(reading, number)},
            {"top", cell.isTop && !reading.isAgain[number]},
            {"again", static_cast<bool>(reading.isAgain[number])},
            {"endless", cell.isEndless},
            {"shapes", cell.isEndless ? Json() : Count(cell.shapes)},
            {"ownShapes", cell.ownShapes},
            {"texts", cell.isEndless ? Json() : Count(cell.texts)},
            {"placements", cell.ownPlacements},
            {"box", Box(cell.box, cell.hasBox, lengths)},
            {"contains", Contained(reading, reading.contained[number])}};
}

Json Problems(const LayoutReading& reading) {
    Json list = Json::array();
    for (const ProblemLine& problem : ProblemLines(reading)) {
        list.push_back({{"kind", problem.kind}, {"text", problem.text}});
    }
    for (const std::string& repair : reading.repairs) {
        list.push_back({{"kind", "repaired"}, {"text", ShownText(repair)}});
    }
    return list;
}

Json Head(const LayoutReading& reading, const ReportSubject& subject) {
    const GdsDatabase& database = reading.database;
    return {{"layout", ShownText(subject.layout)},
            {"databaseUnit", Number(database.micronsPerUnit)},
            {"userUnit", Number(database.micronsPerUnit / database.userUnit)}};
}

Json Cut(const WindowCut& cut) {
    return {{"shapes", cut.shapes}, {"area", Number(cut.area)}};
}

Json Layers(const LayoutReading& reading, const CellFacts& facts) {
    const Lengths lengths(reading.database);
    Json list = Json::array();
    for (std::size_t i = 0; i < facts.layers.layers.size(); ++i) {
        const LayerContents& layer = facts.layers.layers[i];
        Json row = {{"layer", layer.layer},
                    {"datatype", layer.datatype},
                    {"shapes", Count(layer.shapes)},
                    {"texts", Count(layer.texts)},
                    {"area", Number(lengths.SquareMicrons(layer.area))},
                    {"box", Box(layer.box, facts.layers.haveBoxes, lengths)}};
        if (!facts.cuts.empty()) {
            row["inWindow"] = Cut(facts.cuts[i]);
        }
        list.push_back(std::move(row));
    }
    return list;
}

Json Uses(const MaskFacts& mask) {
    Json list = Json::array();
    for (const MaskUse& use : mask.uses) {
        list.push_back(
            {{"photo", ShownText(use.photo)}, {"line", use.line}, {"type", use.dark ? 1 : 0}});
    }
    return list;
}

Json Process(const LayoutReading& reading, const CellFacts& facts, const ReportSubject& subject) {
    const bool isCut = facts.window && facts.cutFailure.empty();
    Json masks = Json::array();
    for (const MaskFacts& mask : facts.masks) {
        Json rows = Json::array();
        for (const std::size_t row : mask.rows) {
            const LayerContents& layer = facts.layers.layers[row];
            rows.push_back({{"layer", layer.layer}, {"datatype", layer.datatype}});
        }
        masks.push_back({{"mask", mask.text},
                         {"steps", Uses(mask)},
                         {"layers", std::move(rows)},
                         {"inWindow", isCut ? Cut(mask.cut) : Json()}});
    }
    return {{"file", ShownText(subject.process)},
            {"masks", std::move(masks)},
            {"missing", MissingMaskLines(reading, facts)}};
}

Json Texts(const LayoutReading& reading, const CellFacts& facts) {
    const Lengths lengths(reading.database);
    Json list = Json::array();
    for (const PlacedText& text : facts.texts) {
        list.push_back({{"text", ShownText(text.string)},
                        {"layer", text.layer},
                        {"texttype", text.texttype},
                        {"x", Number(lengths.Microns(text.place.x))},
                        {"y", Number(lengths.Microns(text.place.y))}});
    }
    return list;
}

Json Places(const LayoutReading& reading, const PlaceFacts& facts) {
    const Lengths lengths(reading.database);
    Json boxes = Json::array();
    for (const GdsRect& box : facts.places.boxes) {
        boxes.push_back({{"x", Number(lengths.Microns(box.xmin))},
                         {"y", Number(lengths.Microns(box.ymin))},
                         {"dx", Number(lengths.Microns(SaturatingSubtract(box.xmax, box.xmin)))},
                         {"dy", Number(lengths.Microns(SaturatingSubtract(box.ymax, box.ymin)))}});
    }
    return {{"cell", Name(reading, facts.cell)},
            {"count", Count(facts.places.count)},
            {"boxes", std::move(boxes)}};
}

std::string Written(const Json& json) {
    constexpr int indent = 1;
    return json.dump(indent) + "\n";
}

}  // namespace

std::string LayoutJson(const LayoutReading& reading, const ReportSubject& subject) {
    Json json = Head(reading, subject);
    Json cells = Json::array();
    for (const std::size_t number : ListedCells(reading)) {
        cells.push_back(Cell(reading, number));
    }
    json["cells"] = std::move(cells);
    json["problems"] = Problems(reading);
    return Written(json);
}

std::string CellJson(const LayoutReading& reading, const CellFacts& facts,
                     const ReportSubject& subject) {
    Json json = Head(reading, subject);
    json["cell"] = Cell(reading, facts.cell);
    json["cell"]["usedIn"] = Contained(reading, facts.usedIn);
    if (facts.window) {
        json["window"] = {{"x", Decimal(facts.window->x)},
                          {"y", Decimal(facts.window->y)},
                          {"dx", Decimal(facts.window->width)},
                          {"dy", Decimal(facts.window->height)}};
    }
    if (facts.places) {
        json["places"] = Places(reading, *facts.places);
    }
    if (!facts.only.empty()) {
        json["onlyLayers"] = LayerListText(facts.only);
    }
    json["layers"] = Layers(reading, facts);
    if (!subject.process.empty()) {
        json["process"] = Process(reading, facts, subject);
    }
    json["texts"] = Texts(reading, facts);
    json["problems"] = Problems(reading);
    return Written(json);
}

}  // namespace zelmo
