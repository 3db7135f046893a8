#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "model/process_model.h"
#include "results/notes/layout_cell.h"
#include "results/notes/note_kinds.h"
#include "results/notes/note_list.h"
#include "results/notes/preparation_notes.h"

namespace zelmo {

namespace {

constexpr float nanometresPerMicron = 1000.0f;

bool IsFilm(const ProcessStep& step) {
    return step.kind == StepKind::Deposition || step.kind == StepKind::Coating;
}

/// A film of less is hit by few pixels, wherever its edge lies.
constexpr double leastPixels = 0.25;

void CheckThinFilms(NoteList& notes, const Preparation& preparation) {
    if (!preparation.scale) {
        return;
    }
    const PictureScale& scale = *preparation.scale;
    const double least = std::max(leastPixels / scale.pixelsPerMicron, scale.leastHeight);
    std::vector<std::int32_t> lines;
    const ProcessStep* first = nullptr;
    for (const ProcessStep& step : preparation.model.steps) {
        if (IsFilm(step) && static_cast<double>(step.thickness) < least) {
            first = first == nullptr ? &step : first;
            lines.push_back(step.line);
        }
    }
    if (first != nullptr) {
        const double thickness = first->thickness;
        notes.Add(note_kind::thinFilm, lines[0],
                  fmt::format("{} is {:.3g} nm thick, which is {:.2g} pixels of the picture: no "
                              "edge of a film below {:.3g} nm can be seen at this size{}: take a "
                              "smaller window",
                              Readable(first->material), thickness * nanometresPerMicron,
                              thickness * scale.pixelsPerMicron, least * nanometresPerMicron,
                              OtherLines(lines)));
    }
}

/// A film of less than a nanometre, or one much thicker than the window is wide.
void CheckThickness(NoteList& notes, const ProcessModel& model, const ProcessStep& step) {
    constexpr float thickest = 10.0f;
    constexpr float thinnest = 0.001f;
    if (step.thickness <= 0.0f) {
        return;
    }
    if (step.thickness < thinnest) {
        notes.Add(note_kind::unit, step.line,
                  fmt::format("-thickness {:.3g} is less than a nanometre: it is in nanometres",
                              step.thickness * nanometresPerMicron));
    }
    if (step.thickness > thickest * model.settings.windowWidth) {
        notes.Add(note_kind::unit, step.line,
                  fmt::format("-thickness is {:.6g} um, and the window {:.6g} um wide: a thickness "
                              "is in nanometres",
                              step.thickness, model.settings.windowWidth));
    }
}

/// A bias above the window, or a shift of many windows.
void CheckAdjustment(NoteList& notes, const ProcessModel& model, const ProcessStep& step) {
    const float width = model.settings.windowWidth;
    const float shift =
        std::max(std::abs(step.adjustment.shiftX), std::abs(step.adjustment.shiftY));
    const auto add = [&](const char* argument, float length) {
        notes.Add(
            note_kind::unit, step.line,
            fmt::format("{} is {:.6g} um, and the window {:.6g} um wide: it is in the unit of "
                        "the window",
                        argument, length, width));
    };
    if (std::abs(step.adjustment.bias) > width) {
        add("-bias", std::abs(step.adjustment.bias));
    }
    if (shift > 10.0f * width) {
        add("-shift", shift);
    }
}

/// The larger side of a cell's box in micrometres; 0 where it is not known.
double SizeOfCell(const GdsDatabase& layout, std::string_view name) {
    const GdsCell* const cell = FindCell(layout, name);
    if (cell == nullptr) {
        return 0.0;
    }
    const GdsRect& box = cell->bounds;
    return static_cast<double>(std::max(SaturatingSubtract(box.xmax, box.xmin),
                                        SaturatingSubtract(box.ymax, box.ymin))) *
           layout.micronsPerUnit;
}

/// A window that is probably meant in the other unit.
void CheckWindowUnit(NoteList& notes, const Preparation& preparation) {
    constexpr double smallest = 0.1;
    constexpr double mostCells = 100.0;
    const ProcessSettings& settings = preparation.model.settings;
    const double width = settings.windowWidth;
    const double cell = SizeOfCell(preparation.layout, settings.cellName);
    const std::int32_t line = WindowLine(preparation);
    if (settings.lengthsInNanometres && width < smallest) {
        notes.Add(note_kind::unit, line,
                  fmt::format("the window is {:.6g} nm wide: with -use_nm its lengths are in "
                              "nanometres, without it in micrometres",
                              width * static_cast<double>(nanometresPerMicron)));
    }
    if (!settings.lengthsInNanometres && cell > 0.0 && width > mostCells * cell) {
        notes.Add(note_kind::unit, line,
                  fmt::format("the window is {:.6g} um wide, and the cell with its origin {:.6g} "
                              "um: without -use_nm lengths of the layout are in micrometres",
                              width, cell));
    }
}

}  // namespace

std::vector<Note> SizeNotes(const Preparation& preparation) {
    NoteList notes(preparation.processFile);
    CheckWindowUnit(notes, preparation);
    for (const ProcessStep& step : preparation.model.steps) {
        CheckThickness(notes, preparation.model, step);
        CheckAdjustment(notes, preparation.model, step);
    }
    CheckThinFilms(notes, preparation);
    return notes.Take();
}

}  // namespace zelmo
