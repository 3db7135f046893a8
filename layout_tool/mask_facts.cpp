#include <algorithm>
#include <iterator>

#include "layout_tool/cell_facts.h"
#include "layout_tool/layer_choice.h"
#include "model/process.h"
#include "process_file/reader.h"

namespace zelmo {

namespace {

using Steps = std::vector<ProcessStep>;

bool MakesFilm(const ProcessStep& step) {
    return step.kind == StepKind::Coating || step.kind == StepKind::Deposition;
}

/// The film that was made last before a step and is of one of its targets, or null.
const ProcessStep* TargetFilm(const Steps& steps, std::size_t index) {
    const std::vector<std::string>& targets = steps[index].targets;
    for (std::size_t i = index; i-- > 0;) {
        if (MakesFilm(steps[i]) &&
            std::find(targets.begin(), targets.end(), steps[i].material) != targets.end()) {
            return &steps[i];
        }
    }
    return nullptr;
}

/// The film that is made next, before the next photo step, or null.
const ProcessStep* NextFilm(const Steps& steps, std::size_t index) {
    for (std::size_t i = index + 1; i < steps.size() && steps[i].kind != StepKind::Photo; ++i) {
        if (MakesFilm(steps[i])) {
            return &steps[i];
        }
    }
    return nullptr;
}

/// The step with the colour of what a photo step's mask stands for: the film that it leaves where
/// the mask is dark, what fills its openings otherwise, or what is implanted. Null where none is.
const ProcessStep* ColoringStep(const Steps& steps, std::size_t photo) {
    for (std::size_t i = photo + 1; i < steps.size() && steps[i].kind != StepKind::Photo; ++i) {
        if (steps[i].kind == StepKind::Implant) {
            return &steps[i];
        }
        if (steps[i].kind == StepKind::Etch) {
            const ProcessStep* const filling = steps[photo].maskDark ? nullptr : NextFilm(steps, i);
            return filling != nullptr ? filling : TargetFilm(steps, i);
        }
    }
    return nullptr;
}

void FindRows(MaskFacts& mask, const CellLayers& layers) {
    for (std::size_t row = 0; row < layers.layers.size(); ++row) {
        const LayerContents& layer = layers.layers[row];
        if (layer.shapes != FlatCount() && IsPartOf(mask.layers, layer.layer, layer.datatype)) {
            mask.rows.push_back(row);
        }
    }
}

}  // namespace

std::vector<MaskFacts> FindMasks(const ProcessFile& process, const CellLayers& layers) {
    std::vector<MaskFacts> masks;
    for (std::size_t i = 0; i < process.steps.size(); ++i) {
        const ProcessStep& step = process.steps[i];
        if (step.kind != StepKind::Photo) {
            continue;
        }
        auto mask = std::find_if(masks.begin(), masks.end(),
                                 [&](const MaskFacts& known) { return known.layers == step.mask; });
        if (mask == masks.end()) {
            masks.push_back(
                {step.mask, LayerListText(step.mask), {}, masks.size(), {}, false, {}, {}});
            mask = std::prev(masks.end());
            FindRows(*mask, layers);
        }
        mask->uses.push_back({step.photoName, step.line, step.maskDark});
        if (const ProcessStep* const coloring = ColoringStep(process.steps, i);
            coloring != nullptr && !mask->hasColor) {
            mask->color = coloring->color;
            mask->hasColor = true;
        }
    }
    return masks;
}

std::vector<MaskFacts> FindMasks(const ProcessFile& process, const CellFacts& facts) {
    std::vector<MaskFacts> masks = FindMasks(process, facts.layers);
    if (!facts.only.empty()) {
        std::erase_if(masks, [](const MaskFacts& mask) { return mask.rows.empty(); });
    }
    return masks;
}

}  // namespace zelmo
