#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/shared_array.h"

// The stack of material layers. Heights are micrometres in single precision; height 0 is the
// underside of the substrate.

namespace zelmo {

struct Grid;
struct ProcessStep;

/// The exposed layer at a cell, and the height of that layer's upper surface there.
struct CoverCell {
    std::int32_t layerId = 0;
    float height = 0.0f;
};

/// Stands for what a layer's surfaces hold: as long as somebody keeps one, no other contents get
/// the same. So whoever made something of the surfaces can tell whether it still holds.
struct SurfaceVersion {};

/// A material layer: two surfaces over the grid. Where `top` equals `bottom` exactly, the layer
/// does not exist.
struct Layer {
    SharedArray<float> top;
    SharedArray<float> bottom;
    std::string material;
    std::string label;
    bool isPhotoresist = false;
    bool coversAround = true;  ///< also the cells around its own (UpdateCoverMap)
    std::array<float, 3> color{};
    float alpha = 1.0f;
    bool changed = true;  ///< since SettleStack last looked
    std::shared_ptr<const SurfaceVersion> version;
    std::int32_t cols = 0;  ///< of the grid, as `rows` and `spacing`
    std::int32_t rows = 0;
    float spacing = 0.0f;
};

/// All layers of a run, bottom first, and what is exposed of them. A layer's position in `layers`
/// is its id; a deleted layer leaves an empty slot, and slots are only ever appended. Slot 0 is the
/// substrate.
struct Stack {
    SharedArray<CoverCell> coverMap;
    std::vector<std::unique_ptr<Layer>> layers;
    float substrateThickness = 0.0f;
    std::int32_t layerCount = 0;  ///< slots that are not empty, counted by SettleStack
};

/// A layer of the grid's size with zero-filled surfaces.
std::unique_ptr<Layer> CreateLayer(const Grid& grid);

/// The same with the material, label, colour and opacity that a step gives its layer.
std::unique_ptr<Layer> CreateLayer(const Grid& grid, const ProcessStep& step);

/// Puts a layer on top of the stack.
void AppendLayer(Stack& stack, std::unique_ptr<Layer> layer);

/// To be called before the surfaces of a layer are rewritten: they become the layer's own. It can
/// run out of memory, and a step that does leaves the surfaces as they were.
void MarkChanged(Layer& layer);

/// A stack that is the same now and goes its own way from here. It shares what neither has
/// rewritten, so that it costs next to nothing.
Stack CopyStack(const Stack& stack);

/// Ends a step: of the layers that have changed, those with no thickness at any cell of the window
/// leave the stack, and the rest are counted. The grid's margin does not count, and in a window
/// that is one cell wide nothing shows. A layer that was not changed stays, whatever it holds.
void SettleStack(Stack& stack, const Grid& grid);

}  // namespace zelmo
