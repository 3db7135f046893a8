#include "results/notes/etch_notes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "model/process_model.h"
#include "results/notes/consumed_resist.h"
#include "results/notes/note_kinds.h"
#include "results/notes/note_list.h"

namespace zelmo {

namespace {

constexpr double nanometresPerMicron = 1000.0;

/// A finished etch, by its layers before and after.
struct Etched {
    const ProcessModel& model;
    const ProcessStep& step;
    std::size_t index;
    const StackBefore& before;
    ShownWindow window;
    std::vector<WindowValues> after;  ///< thickness, one for each layer of `before`

    double Cells() const { return static_cast<double>(CellsOf(window)); }
    std::string Name() const { return Readable(step.description); }
};

bool LostAnything(const WindowValues& before, const WindowValues& after) {
    for (std::size_t cell = 0; cell < before.size(); ++cell) {
        if (after[cell] < before[cell]) {
            return true;
        }
    }
    return false;
}

/// The materials that lie open on at least a hundredth of the window, the largest first.
std::string ExposedText(const Etched& etched) {
    std::map<std::int32_t, std::size_t> cells;
    for (const CoverCell& cover : etched.before.cover) {
        ++cells[cover.layerId];
    }
    std::vector<std::pair<std::size_t, std::int32_t>> sorted;
    for (const auto& [id, count] : cells) {
        if (100 * count >= etched.before.cover.size()) {
            sorted.emplace_back(count, id);
        }
    }
    std::sort(sorted.rbegin(), sorted.rend());
    constexpr std::size_t most = 4;
    sorted.resize(std::min(sorted.size(), most));
    std::vector<std::string> names;
    for (const auto& [count, id] : sorted) {
        const auto& layer = etched.model.stack.layers[static_cast<std::size_t>(id)];
        names.push_back(layer != nullptr ? Readable(layer->label) : "what is gone now");
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

void CheckNothingRemoved(NoteList& notes, const Etched& etched) {
    for (std::size_t i = 0; i < etched.after.size(); ++i) {
        const LayerBefore& layer = etched.before.layers[i];
        if (!layer.isPhotoresist && LostAnything(layer.thickness, etched.after[i])) {
            return;
        }
    }
    if (!etched.step.targets.empty()) {  // else the line has been told of
        notes.Add(note_kind::nothingRemoved, etched.step.line,
                  fmt::format("{} removed nothing in the window, where {} lay open: look at "
                              "-targets, -depth and what covers the targets",
                              etched.Name(), ExposedText(etched)));
    }
}

bool IsTarget(const ProcessStep& step, const std::string& material) {
    return std::find(step.targets.begin(), step.targets.end(), material) != step.targets.end();
}

/// Whether a material was patterned by one etch and shielded another, of what had come before it,
/// that did not touch it: then its task is done.
bool WasMask(const Etched& etched, const std::string& material) {
    const auto& steps = etched.model.steps;
    const auto end = steps.begin() + static_cast<std::ptrdiff_t>(etched.index);
    const auto added = std::find_if(
        steps.begin(), end, [&](const ProcessStep& step) { return step.material == material; });
    const auto patterned = std::find_if(added, end, [&](const ProcessStep& step) {
        return step.kind == StepKind::Etch && IsTarget(step, material);
    });
    const auto cameBefore = [&](const std::string& target) {
        return std::any_of(steps.begin(), added,
                           [&](const ProcessStep& step) { return step.material == target; });
    };
    return std::any_of(patterned, end, [&](const ProcessStep& step) {
        return step.kind == StepKind::Etch && !IsTarget(step, material) &&
               std::any_of(step.targets.begin(), step.targets.end(), cameBefore);
    });
}

/// Whether most of a layer lay above another target, of which something is left.
bool LayAboveTarget(const Etched& etched, std::size_t upper) {
    const LayerBefore& layer = etched.before.layers[upper];
    for (std::size_t i = 0; i < upper; ++i) {
        const LayerBefore& lower = etched.before.layers[i];
        if (lower.isPhotoresist || CountThick(etched.after[i]) == 0) {
            continue;
        }
        std::size_t common = 0;
        for (std::size_t cell = 0; cell < layer.thickness.size(); ++cell) {
            common += layer.thickness[cell] > 0.0f && lower.thickness[cell] > 0.0f ? 1 : 0;
        }
        if (2 * common >= layer.cells) {
            return true;
        }
    }
    return false;
}

void CheckLayersGone(NoteList& notes, const Etched& etched) {
    for (std::size_t i = 0; i < etched.after.size(); ++i) {
        const LayerBefore& layer = etched.before.layers[i];
        if (layer.isPhotoresist || layer.cells == 0 || CountThick(etched.after[i]) > 0 ||
            LayAboveTarget(etched, i) || WasMask(etched, layer.material)) {
            continue;
        }
        notes.Add(note_kind::layerGone, etched.step.line,
                  fmt::format("{} removed all of {} in the window, where it had {} of the area: "
                              "look at the mask, -depth and -targets",
                              etched.Name(), Readable(layer.material),
                              Percent(static_cast<double>(layer.cells), etched.Cells())));
    }
}

/// An etch that just arrives there has done what it was to do.
constexpr float leastLeftOver = 0.001f;

void CheckSubstrate(NoteList& notes, const Etched& etched) {
    const Layer& substrate = *etched.model.stack.layers[0];
    std::size_t reached = 0;
    float leftOver = 0.0f;
    std::size_t cell = 0;
    for (std::int32_t row = 0; row < etched.window.rows; ++row) {
        for (std::int32_t col = 0; col < etched.window.cols; ++col, ++cell) {
            const std::size_t place = etched.window.GridIndex(col, row);
            const CoverCell& before = etched.before.cover[cell];
            if (before.layerId == 0 || etched.model.stack.coverMap[place].layerId != 0) {
                continue;
            }
            const float left = substrate.top[place] - (before.height - etched.step.depth);
            reached += left > leastLeftOver ? 1 : 0;
            leftOver = std::max(leftOver, left);
        }
    }
    if (reached > 0) {
        notes.Add(note_kind::substrateReached, etched.step.line,
                  fmt::format("{} reached the substrate, which no etch removes, on {} of the "
                              "window, with up to {:.4g} nm of its depth to go: etch less deep, "
                              "or deposit the silicon that is to be etched as a film",
                              etched.Name(), Percent(static_cast<double>(reached), etched.Cells()),
                              static_cast<double>(leftOver) * nanometresPerMicron));
    }
}

ConsumedResist FindConsumed(const Etched& etched) {
    ConsumedResist resist{etched.window.cols, std::vector<std::uint8_t>(CellsOf(etched.window)),
                          std::vector<std::uint8_t>(CellsOf(etched.window))};
    for (std::size_t i = 0; i < etched.after.size(); ++i) {
        const LayerBefore& layer = etched.before.layers[i];
        for (std::size_t cell = 0; layer.isPhotoresist && cell < layer.thickness.size(); ++cell) {
            const bool was = layer.thickness[cell] > 0.0f;
            resist.before[cell] |= was ? 1 : 0;
            resist.consumed[cell] |= was && !(etched.after[i][cell] > 0.0f) ? 1 : 0;
        }
    }
    return resist;
}

/// How many cells of the resist's edge an etch moves: by its slope, and sideways.
std::int32_t SlopeCells(const Etched& etched, const ProcessStep& photo) {
    constexpr float degrees = 3.1415927f / 180.0f;
    const double slope = std::tan(static_cast<double>(std::min(photo.taper, 89.0f) * degrees));
    const double depth = static_cast<double>(etched.step.depth * etched.step.resistRate);
    const double moved = depth * (static_cast<double>(etched.step.iso) + 1.0 / slope);
    const double cells = std::ceil(moved / static_cast<double>(etched.model.grid.spacing)) + 1.0;
    return static_cast<std::int32_t>(std::min(cells, 10000.0));
}

/// "Metal1 lost up to 120 nm on 8.0 % of the window" for the layer that lost most where resist was
/// used up.
std::string LossText(const Etched& etched, const ConsumedResist& resist) {
    std::string text = "nothing was lost beneath so far";
    float most = 0.0f;
    for (std::size_t i = 0; i < etched.after.size(); ++i) {
        const LayerBefore& layer = etched.before.layers[i];
        std::size_t cells = 0;
        float deepest = 0.0f;
        for (std::size_t cell = 0; !layer.isPhotoresist && cell < resist.consumed.size(); ++cell) {
            const float lost = layer.thickness[cell] - etched.after[i][cell];
            if (resist.consumed[cell] != 0 && lost > 0.0f) {
                ++cells;
                deepest = std::max(deepest, lost);
            }
        }
        if (deepest > most) {
            most = deepest;
            text = fmt::format("beneath, {} lost up to {:.4g} nm on {} of the window",
                               Readable(layer.material),
                               static_cast<double>(deepest) * nanometresPerMicron,
                               Percent(static_cast<double>(cells), etched.Cells()));
        }
    }
    return text;
}

void CheckResist(NoteList& notes, const Etched& etched) {
    const ProcessStep* const photo = OpenPhoto(etched.model, etched.index);
    if (photo == nullptr) {
        return;
    }
    const ConsumedResist resist = FindConsumed(etched);
    const auto count = [](const std::vector<std::uint8_t>& marks) {
        return static_cast<double>(std::count(marks.begin(), marks.end(), 1));
    };
    const double consumed = count(resist.consumed);
    if (consumed == 0.0 || !IsMoreThanSlopes(resist, SlopeCells(etched, *photo))) {
        return;
    }
    notes.Add(note_kind::resistConsumed, etched.step.line,
              fmt::format("{} used up the resist of line {} on {} of the window, which is {} of "
                          "the resist, before it ended; {}: take thicker resist, etch less deep, "
                          "or let -resist say how much slower resist is etched",
                          etched.Name(), photo->line, Percent(consumed, etched.Cells()),
                          Percent(consumed, count(resist.before)), LossText(etched, resist)));
}

}  // namespace

const ProcessStep* OpenPhoto(const ProcessModel& model, std::size_t index) {
    for (std::size_t i = index; i-- > 0;) {
        if (model.steps[i].kind == StepKind::Strip) {
            return nullptr;
        }
        if (model.steps[i].kind == StepKind::Photo) {
            return &model.steps[i];
        }
    }
    return nullptr;
}

std::vector<Note> EtchNotes(const std::filesystem::path& processFile, const ProcessModel& model,
                            std::size_t index, const StackBefore& before, bool openIsKnown) {
    Etched etched{model, model.steps[index], index, before, FindShownWindow(model.grid), {}};
    for (const LayerBefore& layer : before.layers) {
        etched.after.push_back(ThicknessOf(model.stack.layers[layer.slot].get(), etched.window));
    }
    NoteList notes(processFile);
    if (before.cover.empty()) {
        return {};
    }
    if (!openIsKnown) {
        CheckNothingRemoved(notes, etched);
        CheckLayersGone(notes, etched);
    }
    CheckResist(notes, etched);
    CheckSubstrate(notes, etched);
    return notes.Take();
}

std::vector<Note> ReleaseNotes(const std::filesystem::path& processFile, const ProcessModel& model,
                               std::size_t index, const StackBefore& before) {
    NoteList notes(processFile);
    const ProcessStep& step = model.steps[index];
    const bool removedAny = std::any_of(before.layers.begin(), before.layers.end(),
                                        [](const LayerBefore& layer) { return layer.cells > 0; });
    if (!removedAny && !step.targets.empty()) {
        notes.Add(note_kind::nothingRemoved, step.line,
                  fmt::format("{} removed nothing in the window, where none of its targets is "
                              "left: look at -targets and at the etches before it",
                              Readable(step.description)));
    }
    return notes.Take();
}

}  // namespace zelmo
