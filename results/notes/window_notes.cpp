#include <fmt/format.h>

#include <algorithm>
#include <variant>

#include "base/nearest_name.h"
#include "gds/gds_database.h"
#include "model/process_model.h"
#include "process_file/decimal.h"
#include "results/notes/command_words.h"
#include "results/notes/layout_cell.h"
#include "results/notes/mask_window.h"
#include "results/notes/note_kinds.h"
#include "results/notes/note_list.h"
#include "results/notes/preparation_notes.h"

namespace zelmo {

namespace {

/// A box of the layout in micrometres.
struct Box {
    double x0 = 0.0;
    double y0 = 0.0;
    double x1 = 0.0;
    double y1 = 0.0;

    double Area() const { return (x1 - x0) * (y1 - y0); }
};

Box WindowOf(const ProcessSettings& settings) {
    const double x = settings.windowX;
    const double y = settings.windowY;
    return {x, y, x + static_cast<double>(settings.windowWidth),
            y + static_cast<double>(settings.windowHeight)};
}

std::string TextOf(const Box& box) {
    return fmt::format("({:.6g}, {:.6g}) to ({:.6g}, {:.6g}) um", box.x0, box.y0, box.x1, box.y1);
}

/// The box of a cell as the layout keeps it: with the cell's origin.
std::optional<Box> CellBox(const GdsDatabase& layout, std::string_view name) {
    const GdsCell* const cell = FindCell(layout, name);
    if (cell == nullptr) {
        return std::nullopt;
    }
    const auto toMicrons = [&](std::int64_t units) {
        return static_cast<double>(units) * layout.micronsPerUnit;
    };
    const GdsRect& box = cell->bounds;
    return Box{toMicrons(box.xmin), toMicrons(box.ymin), toMicrons(box.xmax), toMicrons(box.ymax)};
}

/// What both have in common; of no area where that is nothing.
Box Common(const Box& a, const Box& b) {
    const Box common{std::max(a.x0, b.x0), std::max(a.y0, b.y0), std::min(a.x1, b.x1),
                     std::min(a.y1, b.y1)};
    return common.x0 < common.x1 && common.y0 < common.y1 ? common : Box{};
}

/// Whether a window sticks out at one side of a cell, and not at the other.
bool SticksOutOnce(double from, double to, double cellFrom, double cellTo) {
    return (from < cellFrom) != (to > cellTo);
}

/// A window that lies mostly outside, over one of the cell's corners, and shows little of it.
bool IsCorner(const Box& window, const Box& cell) {
    const double common = Common(window, cell).Area();
    return SticksOutOnce(window.x0, window.x1, cell.x0, cell.x1) &&
           SticksOutOnce(window.y0, window.y1, cell.y0, cell.y1) && common < window.Area() / 4.0 &&
           common < cell.Area() / 2.0;
}

void CheckPlace(NoteList& notes, const Preparation& preparation, std::int32_t line) {
    const ProcessSettings& settings = preparation.model.settings;
    const auto cell = CellBox(preparation.layout, settings.cellName);
    if (!cell) {
        return;
    }
    const Box window = WindowOf(settings);
    const std::string boxes =
        fmt::format("{}; the box of cell {}, its origin included, is {}", TextOf(window),
                    Readable(settings.cellName), TextOf(*cell));
    const bool holdsNothing =
        preparation.model.skippedPolygons == 0 && LayersInWindow(preparation.model).empty();
    if (holdsNothing || Common(window, *cell).Area() <= 0.0) {
        notes.Add(note_kind::windowOutside, line,
                  fmt::format("the window holds nothing of the cell: it is {}: move it there, or "
                              "let --window fit find one",
                              boxes));
    } else if (IsCorner(window, *cell)) {
        notes.Add(note_kind::windowCorner, line,
                  fmt::format("the window holds only a corner of the cell: it is {}: move it "
                              "there, or let --window fit find one",
                              boxes));
    }
}

/// What the window is called where it is to be mended.
std::string_view WindowText(const Preparation& preparation) {
    return std::holds_alternative<std::monostate>(preparation.view.window) ? "the window"
                                                                           : "that of --window";
}

/// How wide and high a window was asked for, in the unit of whoever asked.
struct AskedSize {
    float width = 0.0f;
    float height = 0.0f;
};

AskedSize SizeInFile(const std::vector<CommandText>& commands) {
    for (const CommandText& command : commands) {
        const CommandWords words = WordsOf(command.text);
        if (words.word == "location") {
            return {ParseDecimal(FirstValue(words, "-dx")).value_or(0.0f),
                    ParseDecimal(FirstValue(words, "-dy")).value_or(0.0f)};
        }
    }
    return {};
}

AskedSize SizeOf(const Preparation& preparation) {
    if (const auto* const given = std::get_if<GivenWindow>(&preparation.view.window)) {
        return {given->width, given->height};
    }
    return std::holds_alternative<FittedWindow>(preparation.view.window)
               ? AskedSize{}
               : SizeInFile(preparation.commands);
}

void CheckShape(NoteList& notes, const Preparation& preparation, std::int32_t line) {
    const AskedSize size = SizeOf(preparation);
    if (size.height > size.width) {
        notes.Add(note_kind::windowSquare, line,
                  fmt::format("{} is higher than wide, {:.6g} by {:.6g}, and is cut to a "
                              "square at its lower edge: widen it, or turn the cell",
                              WindowText(preparation), size.width, size.height));
    }
}

bool HasPhoto(const ProcessModel& model) {
    return std::any_of(model.steps.begin(), model.steps.end(),
                       [](const ProcessStep& step) { return step.kind == StepKind::Photo; });
}

}  // namespace

std::int32_t LineOf(const std::vector<CommandText>& commands, std::string_view word) {
    for (const CommandText& command : commands) {
        if (WordsOf(command.text).word == word) {
            return command.line;
        }
    }
    return 0;
}

std::int32_t WindowLine(const Preparation& preparation) {
    const bool isOfFile = std::holds_alternative<std::monostate>(preparation.view.window);
    return isOfFile ? LineOf(preparation.commands, "location") : 0;
}

std::vector<Note> WindowNotes(const Preparation& preparation) {
    NoteList notes(preparation.processFile);
    const std::int32_t line = WindowLine(preparation);
    CheckShape(notes, preparation, line);
    if (HasPhoto(preparation.model)) {
        CheckPlace(notes, preparation, line);
    }
    return notes.Take();
}

std::vector<Note> UnknownCellNotes(const std::filesystem::path& processFile,
                                   const std::vector<CommandText>& commands, const ViewChoice& view,
                                   const GdsDatabase& layout) {
    NoteList notes(processFile);
    const std::int32_t line = LineOf(commands, "gds");
    std::string name = view.cell.value_or("");
    for (const CommandText& command : commands) {
        if (!view.cell && command.line == line) {
            name = FirstValue(WordsOf(command.text), "-cell");
        }
    }
    std::vector<std::string_view> known;
    for (const GdsCell& cell : layout.cells) {
        known.push_back(NameText(cell.name));
    }
    if (name.empty() || std::find(known.begin(), known.end(), name) != known.end()) {
        return {};
    }
    const std::string_view nearest = NearestName(name, known);
    std::string wayOut = nearest.empty() ? "zelmo-layout lists those that it has"
                                         : fmt::format("is {} meant?", Quoted(nearest));
    if (!view.cell) {
        wayOut += nearest.empty() ? ", and --cell NAME looks at one of them"
                                  : " --cell NAME looks at that or another";
    }
    notes.Add(note_kind::misspelt, view.cell ? 0 : line,
              fmt::format("the layout has no cell {}: {}", Quoted(name), wayOut));
    return notes.Take();
}

}  // namespace zelmo
