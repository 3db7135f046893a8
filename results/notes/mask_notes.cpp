#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <span>

#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "gds/polygon_extraction.h"
#include "model/process_model.h"
#include "results/notes/layout_cell.h"
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

/// How far polygons outside the window are looked for: notes are not worth a long wait.
constexpr ExtractionLimits searchLimits{
    .polygons = 1000000, .points = 20000000, .fruitlessTests = 20000000};

/// All polygons of the cell, in units from the corner of its box; none where they are too many.
PolygonExtraction AllPolygons(const GdsDatabase& layout, const GdsCell& cell) {
    const GdsRect& box = cell.bounds;
    PolygonExtraction all = ExtractPolygons(
        layout, NameText(cell.name),
        {box.xmin, box.ymin, SaturatingAdd(box.xmax, 1), SaturatingAdd(box.ymax, 1), 1},
        searchLimits);
    if (all.refusal) {
        all.polygons.clear();
    }
    return all;
}

/// Where a cell draws a mask, in words; empty where that is not known.
std::string PlaceText(const PolygonExtraction& all, const GdsCell& cell,
                      std::span<const MaskLayer> mask, double micronsPerUnit) {
    std::optional<GdsRect> box;
    for (const RawPolygon& polygon : all.polygons) {
        for (const GdsPoint point : polygon.points) {
            if (!IsPartOf(mask, polygon.layer, polygon.datatype)) {
                break;
            }
            box = box.value_or(GdsRect{});
            box->xmin = std::min(box->xmin, SaturatingAdd(point.x, cell.bounds.xmin));
            box->ymin = std::min(box->ymin, SaturatingAdd(point.y, cell.bounds.ymin));
            box->xmax = std::max(box->xmax, SaturatingAdd(point.x, cell.bounds.xmin));
            box->ymax = std::max(box->ymax, SaturatingAdd(point.y, cell.bounds.ymin));
        }
    }
    if (all.refusal) {
        return {};
    }
    const auto toMicrons = [&](std::int64_t units) {
        return static_cast<double>(units) * micronsPerUnit;
    };
    return box ? fmt::format("; the cell has some from ({:.6g}, {:.6g}) to ({:.6g}, {:.6g}) um",
                             toMicrons(box->xmin), toMicrons(box->ymin), toMicrons(box->xmax),
                             toMicrons(box->ymax))
               : "; the cell has none either";
}

/// Tells of one such mask; of the first with all that there is to say.
class EmptyMasks {
public:
    EmptyMasks(NoteList& notes, const Preparation& preparation)
        : notes_(notes),
          preparation_(preparation),
          layers_(LayersInWindow(preparation.model)),
          cell_(FindCell(preparation.layout, preparation.model.settings.cellName)) {}

    /// Whether no mask has any polygons, which the window's note tells.
    bool HasNone() const { return layers_.empty(); }

    void Add(const ProcessStep& photo) {
        const std::string_view stays = photo.maskDark ? "nowhere" : "everywhere";
        const std::string what =
            fmt::format("mask {} has no polygons in the window, so the resist stays {}{}",
                        MaskText(photo.mask), stays, Place(photo));
        const std::string wayOut =
            isFirst_ ? fmt::format(
                           "; the window has {}: check -mask_id and the window, or --allow "
                           "{} for a process that serves any cell",
                           LayersText(layers_), note_kind::maskEmpty)
                     : ": check -mask_id and the window";
        notes_.Add(note_kind::maskEmpty, photo.line, what + wayOut);
        isFirst_ = false;
    }

private:
    std::string Place(const ProcessStep& photo) {
        if (cell_ == nullptr) {
            return {};
        }
        if (!all_) {
            all_ = AllPolygons(preparation_.layout, *cell_);
        }
        return PlaceText(*all_, *cell_, photo.mask, preparation_.layout.micronsPerUnit);
    }

    NoteList& notes_;
    const Preparation& preparation_;
    LayerCounts layers_;
    const GdsCell* cell_;
    std::optional<PolygonExtraction> all_;  ///< of the cell, once they were needed
    bool isFirst_ = true;
};

void CheckEmptyMasks(NoteList& notes, const Preparation& preparation) {
    EmptyMasks masks(notes, preparation);
    for (const ProcessStep& step : preparation.model.steps) {
        if (step.kind == StepKind::Photo && !masks.HasNone() &&
            !HasPolygonsInWindow(preparation.model, step)) {
            masks.Add(step);
        }
    }
}

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
                        WindowIn(preparation.layout, model.settings), searchLimits);
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
    if (preparation.model.skippedPolygons == 0) {
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
    CheckEmptyMasks(notes, preparation);
    CheckSkipped(notes, preparation);
    CheckRes(notes, preparation.model);
    return notes.Take();
}

}  // namespace zelmo
