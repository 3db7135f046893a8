#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>

#include "gds/coordinates.h"
#include "gds/placed_boxes.h"
#include "layout_tool/layer_choice.h"
#include "layout_tool/lengths.h"
#include "layout_tool/reports.h"
#include "layout_tool/shown_text.h"
#include "layout_tool/table.h"

namespace zelmo {

namespace {

constexpr const char* unknown = "-";

std::string Plural(std::uint64_t count, const std::string& thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

std::string CellName(const LayoutReading& reading, std::size_t cell) {
    return ShownText(NameText(reading.database.cells[cell].name));
}

/// "layout.gds: 3 cells, 1 on top; a unit is 0.001 um"
std::string HeadLine(const LayoutReading& reading, const ReportSubject& subject) {
    const GdsDatabase& database = reading.database;
    std::size_t tops = 0;
    for (std::size_t i = 0; i < reading.cells.size(); ++i) {
        tops += reading.cells[i].isTop && !reading.isAgain[i] ? 1 : 0;
    }
    return fmt::format("{}: {}, {} on top; database unit {} um, user unit {} um\n", subject.layout,
                       Plural(reading.cells.size(), "cell"), tops,
                       ShortText(database.micronsPerUnit),
                       ShortText(database.micronsPerUnit / database.userUnit));
}

/// Left, lower, right and upper side, width and height; dashes where there is no box.
std::vector<std::string> BoxCells(const GdsRect& box, bool isKnown, const Lengths& lengths) {
    if (!isKnown || IsNothing(box)) {
        return {unknown, unknown, unknown, unknown};
    }
    return {lengths.Text(box.xmin), lengths.Text(box.ymin),
            lengths.Text(SaturatingSubtract(box.xmax, box.xmin)),
            lengths.Text(SaturatingSubtract(box.ymax, box.ymin))};
}

void Append(std::vector<std::string>& row, std::vector<std::string> cells) {
    std::move(cells.begin(), cells.end(), std::back_inserter(row));
}

/// "A x 3, B and 5 more", at most so many names.
std::string ContainedText(const LayoutReading& reading, const std::vector<ContainedCell>& cells,
                          std::size_t most) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(most, cells.size()); ++i) {
        const std::string name = CellName(reading, cells[i].cell);
        names.push_back(cells[i].times == 1 ? name : fmt::format("{} x {}", name, cells[i].times));
    }
    const std::string rest =
        cells.size() > most ? fmt::format(" and {} more", cells.size() - most) : std::string();
    return fmt::format("{}{}", fmt::join(names, ", "), rest);
}

/// How many places there are beyond those whose boxes are known.
FlatCount CountBeyond(const CellPlaces& places) {
    return places.count.isExact ? CountOf(places.count.exact - places.boxes.size()) : places.count;
}

const char* CellMark(const LayoutReading& reading, std::size_t cell) {
    if (reading.isAgain[cell]) {
        return "again";
    }
    if (reading.cells[cell].isEndless) {
        return "endless";
    }
    return reading.cells[cell].isTop ? "top" : "";
}

std::string CellTable(const LayoutReading& reading) {
    using enum Table::Side;
    constexpr std::size_t mostNames = 4;
    const Lengths lengths(reading.database);
    Table table({{"cell", Left},
                 {"", Left},
                 {"shapes"},
                 {"own"},
                 {"texts"},
                 {"cells"},
                 {"x um"},
                 {"y um"},
                 {"dx um"},
                 {"dy um"},
                 {"contains", Left}});
    for (const std::size_t number : ListedCells(reading)) {
        const CellContents& cell = reading.cells[number];
        std::vector<std::string> row{CellName(reading, number),
                                     CellMark(reading, number),
                                     cell.isEndless ? "endless" : CountText(cell.shapes),
                                     fmt::format("{}", cell.ownShapes),
                                     cell.isEndless ? "endless" : CountText(cell.texts),
                                     fmt::format("{}", cell.ownPlacements)};
        Append(row, BoxCells(cell.box, cell.hasBox, lengths));
        row.push_back(ContainedText(reading, reading.contained[number], mostNames));
        table.AddRow(row);
    }
    return table.IsEmpty() ? std::string() : fmt::format("\n{}", table.Text());
}

std::string ProblemText(const LayoutReading& reading) {
    std::string text = "\n";
    const std::vector<ProblemLine> problems = ProblemLines(reading);
    text += problems.empty() && reading.repairs.empty() ? "problems: none\n" : "problems:\n";
    for (const ProblemLine& problem : problems) {
        text += fmt::format("  {}: {}\n", problem.kind, problem.text);
    }
    for (const std::string& repair : reading.repairs) {
        text += fmt::format("  repaired: {}\n", ShownText(repair));
    }
    return text;
}

std::string CellHead(const LayoutReading& reading, const CellFacts& facts) {
    const CellContents& cell = reading.cells[facts.cell];
    const Lengths lengths(reading.database);
    std::string text = fmt::format("\ncell {}: {} shapes, {} of its own; {} texts\n",
                                   CellName(reading, facts.cell), CountText(cell.shapes),
                                   cell.ownShapes, CountText(cell.texts));
    if (cell.hasBox && !IsNothing(cell.box)) {
        text += fmt::format("box: {} to {} by {} to {} um\n", lengths.Text(cell.box.xmin),
                            lengths.Text(cell.box.xmax), lengths.Text(cell.box.ymin),
                            lengths.Text(cell.box.ymax));
    }
    constexpr std::size_t mostNames = 20;
    const auto addCells = [&](const char* title, const std::vector<ContainedCell>& cells) {
        const std::string names = ContainedText(reading, cells, mostNames);
        text += fmt::format("{}: {}\n", title, names.empty() ? "no other cell" : names);
    };
    addCells("contains", reading.contained[facts.cell]);
    addCells("used in", facts.usedIn);
    if (!facts.only.empty()) {
        text += fmt::format("layers: only {}\n", LayerListText(facts.only));
    }
    if (facts.window) {
        text += fmt::format("window: {} to {} by {} to {} um\n", ShortText(facts.window->x),
                            ShortText(facts.window->x + facts.window->width),
                            ShortText(facts.window->y),
                            ShortText(facts.window->y + facts.window->height));
    }
    return text;
}

/// Where the cell is placed that is asked for.
std::string PlaceTable(const LayoutReading& reading, const CellFacts& facts) {
    if (!facts.places) {
        return {};
    }
    const CellPlaces& places = facts.places->places;
    std::string text =
        fmt::format("\nplaces of {} in {}: {}\n", CellName(reading, facts.places->cell),
                    CellName(reading, facts.cell), CountText(places.count));
    if (!places.hasShapes) {
        return text + "they have no boxes: the cell has no shapes\n";
    }
    const Lengths lengths(reading.database);
    Table table({{"x um"}, {"y um"}, {"dx um"}, {"dy um"}});
    for (const GdsRect& box : places.boxes) {
        table.AddRow(BoxCells(box, true, lengths));
    }
    text += table.Text();
    if (places.count != CountOf(places.boxes.size())) {
        text += fmt::format("and {} more\n", CountText(CountBeyond(places)));
    }
    return text;
}

/// The masks that a row of the layers belongs to.
std::string MasksOf(const CellFacts& facts, std::size_t row) {
    std::vector<std::string> masks;
    for (const MaskFacts& mask : facts.masks) {
        if (std::find(mask.rows.begin(), mask.rows.end(), row) != mask.rows.end()) {
            masks.push_back(fmt::format("{}: {}", mask.text, UsesText(mask)));
        }
    }
    return fmt::format("{}", fmt::join(masks, "; "));
}

std::string LayerTable(const LayoutReading& reading, const CellFacts& facts) {
    const Lengths lengths(reading.database);
    const bool isCut = !facts.cuts.empty();
    std::vector<Table::Column> columns{{"layer"}, {"shapes"}, {"area um2"}, {"x um"},
                                       {"y um"},  {"dx um"},  {"dy um"},    {"texts"}};
    if (isCut) {
        columns.push_back({"in window"});
        columns.push_back({"area um2"});
    }
    if (!facts.masks.empty()) {
        columns.push_back({"mask", Table::Side::Left});
    }
    Table table(columns);
    for (std::size_t i = 0; i < facts.layers.layers.size(); ++i) {
        const LayerContents& layer = facts.layers.layers[i];
        std::vector<std::string> row{fmt::format("{}/{}", layer.layer, layer.datatype),
                                     CountText(layer.shapes), lengths.AreaText(layer.area)};
        Append(row, BoxCells(layer.box, facts.layers.haveBoxes, lengths));
        row.push_back(CountText(layer.texts));
        if (isCut) {
            row.push_back(fmt::format("{}", facts.cuts[i].shapes));
            row.push_back(SquareMicronsText(facts.cuts[i].area));
        }
        if (!facts.masks.empty()) {
            row.push_back(MasksOf(facts, i));
        }
        table.AddRow(row);
    }
    return table.IsEmpty() ? "\nno layers: the cell has neither shapes nor texts\n"
                           : fmt::format("\n{}", table.Text());
}

/// The area as a share of the window's, where nothing overlaps.
std::string ShareText(const CellFacts& facts, const WindowCut& cut) {
    const double window =
        static_cast<double>(facts.window->width) * static_cast<double>(facts.window->height);
    return fmt::format("{:.1f} %", 100.0 * cut.area / window);
}

std::string MaskTable(const LayoutReading& reading, const CellFacts& facts,
                      const ReportSubject& subject) {
    if (subject.process.empty()) {
        return {};
    }
    using enum Table::Side;
    std::string text = fmt::format("\nmasks of {}:\n", subject.process);
    Table table({{"mask", Left},
                 {"rows"},
                 {"in window"},
                 {"area um2"},
                 {"of window"},
                 {"photo steps", Left}});
    const bool isCut = facts.cutFailure.empty() && facts.window;
    for (const MaskFacts& mask : facts.masks) {
        table.AddRow({mask.text, fmt::format("{}", mask.rows.size()),
                      isCut ? fmt::format("{}", mask.cut.shapes) : unknown,
                      isCut ? SquareMicronsText(mask.cut.area) : unknown,
                      isCut ? ShareText(facts, mask.cut) : unknown, UsesText(mask)});
    }
    const char* const none = facts.only.empty() ? "none: the process has no photo step\n"
                                                : "none: no mask of the process has these layers\n";
    text += table.IsEmpty() ? none : table.Text();
    for (const std::string& line : MissingMaskLines(reading, facts)) {
        text += fmt::format("missing: {}\n", line);
    }
    return text;
}

std::string TextTable(const LayoutReading& reading, const CellFacts& facts) {
    if (facts.texts.empty()) {
        return {};
    }
    const Lengths lengths(reading.database);
    Table table({{"layer"}, {"x um"}, {"y um"}, {"text", Table::Side::Left}});
    for (const PlacedText& text : facts.texts) {
        table.AddRow({fmt::format("{}/{}", text.layer, text.texttype), lengths.Text(text.place.x),
                      lengths.Text(text.place.y), ShownText(text.string)});
    }
    const FlatCount all = facts.allTexts;
    const std::string rest = all == CountOf(facts.texts.size())
                                 ? ""
                                 : fmt::format("{} of {} texts (--texts lists more)\n",
                                               facts.texts.size(), CountText(all));
    return fmt::format("\n{}{}", table.Text(), rest);
}

}  // namespace

std::string UsesText(const MaskFacts& mask) {
    std::vector<std::string> uses;
    for (const MaskUse& use : mask.uses) {
        uses.push_back(fmt::format("{} ({}, line {})", ShownText(use.photo),
                                   use.dark ? "dark" : "clear", use.line));
    }
    return fmt::format("{}", fmt::join(uses, ", "));
}

std::vector<std::string> MissingMaskLines(const LayoutReading& reading, const CellFacts& facts) {
    std::vector<std::string> lines;
    for (const MaskFacts& mask : facts.masks) {
        if (mask.rows.empty()) {
            lines.push_back(fmt::format("mask {} of {}: cell {} draws nothing on it", mask.text,
                                        UsesText(mask), CellName(reading, facts.cell)));
        } else if (facts.window && facts.cutFailure.empty() && mask.cut.shapes == 0) {
            lines.push_back(fmt::format("mask {} of {}: nothing of it{} lies in the window",
                                        mask.text, UsesText(mask),
                                        facts.only.empty() ? "" : " on these layers"));
        }
    }
    if (!facts.cutFailure.empty()) {
        lines.push_back(fmt::format("what the window cuts: {}", ShownText(facts.cutFailure)));
    }
    return lines;
}

std::string LayoutText(const LayoutReading& reading, const ReportSubject& subject) {
    return HeadLine(reading, subject) + CellTable(reading) + ProblemText(reading);
}

std::string CellText(const LayoutReading& reading, const CellFacts& facts,
                     const ReportSubject& subject) {
    return HeadLine(reading, subject) + CellHead(reading, facts) + PlaceTable(reading, facts) +
           LayerTable(reading, facts) + MaskTable(reading, facts, subject) +
           TextTable(reading, facts) + ProblemText(reading);
}

}  // namespace zelmo
