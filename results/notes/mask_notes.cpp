#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "gds/polygon_extraction.h"
#include "model/process_model.h"
#include "results/notes/mask_window.h"
#include "results/notes/note_kinds.h"
#include "results/notes/note_list.h"
#include "results/notes/preparation_notes.h"

namespace zelmo {

namespace {

/// "64/20, 65/20 and 12 more".
std::string LayersText(const LayerCounts& layers) {
    constexpr std::size_t most = 8;
    std::vector<std::string> names;
    for (const auto& [layer, count] : layers) {
        if (names.size() < most) {
            names.push_back(fmt::format("{}/{}", layer.first, layer.second));
        }
    }
    const std::string more =
        layers.size() > most ? fmt::format(" and {} more", layers.size() - most) : "";
    return fmt::format("{}{}", fmt::join(names, ", "), more);
}

void CheckEmptyMasks(NoteList& notes, const ProcessModel& model) {
    const LayerCounts layers = LayersInWindow(model);
    if (layers.empty()) {
        return;  // no mask has any, which the window's note tells
    }
    for (const ProcessStep& step : model.steps) {
        if (step.kind == StepKind::Photo && !HasPolygonsInWindow(model, step)) {
            notes.Add(note_kind::maskEmpty, step.line,
                      fmt::format("mask {} has no polygons in the window, so the resist stays {}; "
                                  "the window has {}: check -mask_id and the window, or --allow {} "
                                  "for a process that serves any cell",
                                  MaskText(step.mask), step.maskDark ? "nowhere" : "everywhere",
                                  LayersText(layers), note_kind::maskEmpty));
        }
    }
}

/// How far polygons that were skipped are looked for: notes are not worth a long wait.
constexpr ExtractionLimits skippedLimits{
    .polygons = 1000000, .points = 20000000, .fruitlessTests = 20000000};

ExtractionWindow WindowIn(const GdsDatabase& layout, const ProcessSettings& settings) {
    const auto toUnits = [&](float from, float length) {
        return TruncateToI64((static_cast<double>(from) + static_cast<double>(length)) /
                             layout.micronsPerUnit);
    };
    return {toUnits(settings.windowX, 0.0f), toUnits(settings.windowY, 0.0f),
            toUnits(settings.windowX, settings.windowWidth),
            toUnits(settings.windowY, settings.windowHeight), 1};
}

bool IsBelow(const RawPolygon& polygon, std::int64_t size) {
    const auto sideOf = [&](auto coordinate) {
        const auto [least, most] = std::minmax_element(
            polygon.points.begin(), polygon.points.end(),
            [&](GdsPoint a, GdsPoint b) { return coordinate(a) < coordinate(b); });
        return SaturatingSubtract(coordinate(*most), coordinate(*least));
    };
    return !polygon.points.empty() &&
           std::min(sideOf([](GdsPoint point) { return point.x; }),
                    sideOf([](GdsPoint point) { return point.y; })) < size;
}

/// The polygons in the window that are too small for the grid, by layer. None where there are too
/// many to look at them all.
LayerCounts SkippedLayers(const Preparation& preparation) {
    const ProcessModel& model = preparation.model;
    const std::int64_t size =
        TruncateToI64(static_cast<double>(model.grid.spacing) / preparation.layout.micronsPerUnit);
    LayerCounts skipped;
    const PolygonExtraction all =
        ExtractPolygons(preparation.layout, model.settings.cellName,
                        WindowIn(preparation.layout, model.settings), skippedLimits);
    for (const RawPolygon& polygon : all.polygons) {
        if (IsBelow(polygon, size)) {
            ++skipped[{polygon.layer, polygon.datatype}];
        }
    }
    return skipped;
}

std::size_t CountOn(const LayerCounts& counts, std::span<const MaskLayer> mask) {
    std::size_t sum = 0;
    for (const auto& [layer, count] : counts) {
        sum += IsPartOf(mask, layer.first, layer.second) ? count : 0;
    }
    return sum;
}

void CheckSkipped(NoteList& notes, const Preparation& preparation) {
    if (preparation.skippedPolygons == 0) {
        return;
    }
    const LayerCounts skipped = SkippedLayers(preparation);
    for (const ProcessStep& step : preparation.model.steps) {
        const std::size_t count = step.kind == StepKind::Photo ? CountOn(skipped, step.mask) : 0;
        if (count > 0) {
            notes.Add(note_kind::polygonsSkipped, step.line,
                      fmt::format("{} of the polygons of mask {} in the window are smaller than a "
                                  "cell of the grid, {:.3g} um, and left out: take more columns "
                                  "(-N) or a smaller window",
                                  count, MaskText(step.mask), preparation.model.grid.spacing));
        }
    }
}

/// One note for all lines that have the same reason.
void CheckRes(NoteList& notes, const ProcessModel& model) {
    const float cells = 2.0f * model.grid.spacing;
    std::vector<std::int32_t> fine;
    float least = 0.0f;
    for (const ProcessStep& step : model.steps) {
        if (step.kind != StepKind::Photo) {
            continue;
        }
        if (step.res > 0.0f && step.res < cells) {
            least = fine.empty() ? step.res : least;
            fine.push_back(step.line);
        }
        if (step.res >= model.settings.windowWidth) {
            notes.Add(note_kind::resCoarse, step.line,
                      fmt::format("-res is {:.6g} um, and the whole window {:.6g} um wide: -res is "
                                  "in the unit of the window",
                                  step.res, model.settings.windowWidth));
        }
    }
    if (!fine.empty()) {
        notes.Add(note_kind::resFine, fine[0],
                  fmt::format("-res is {:.6g} um, below two cells of the grid, {:.3g} um, and "
                              "rounds nothing{}: take more columns (-N), a smaller window or a "
                              "larger -res, or 0 for none",
                              least, cells, OtherLines(fine)));
    }
}

}  // namespace

std::vector<Note> MaskNotes(const Preparation& preparation) {
    NoteList notes(preparation.processFile);
    CheckEmptyMasks(notes, preparation.model);
    CheckSkipped(notes, preparation);
    CheckRes(notes, preparation.model);
    return notes.Take();
}

}  // namespace zelmo
