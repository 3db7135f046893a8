#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "model/grid/shown_window.h"
#include "model/stack.h"

namespace zelmo {

struct ProcessModel;
struct ProcessStep;

/// One value for each cell of the shown window, row by row.
using WindowValues = std::vector<float>;

/// A layer that an etch or a release can remove.
struct LayerBefore {
    std::size_t slot = 0;
    std::string material;
    bool isPhotoresist = false;
    WindowValues thickness;  ///< in micrometres
    std::size_t cells = 0;   ///< in which there is any
};

/// What there is to know of a stack before an etch or a release, in the shown window.
struct StackBefore {
    std::vector<LayerBefore> layers;  ///< those that the step can remove, bottom first
    std::vector<CoverCell> cover;     ///< what was exposed
};

/// Takes it. Nothing for steps of other kinds.
StackBefore TakeStackBefore(const ProcessModel& model, const ProcessStep& step);

/// The thickness of a layer; 0 everywhere where it has left the stack.
WindowValues ThicknessOf(const Layer* layer, const ShownWindow& window);

/// The cells with any.
std::size_t CountThick(const WindowValues& thickness);

/// The cells of a window.
std::size_t CellsOf(const ShownWindow& window);

}  // namespace zelmo
