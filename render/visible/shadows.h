#pragma once

#include <memory>
#include <vector>

#include "render/visible/layer_stack.h"
#include "render/visible/sight.h"

namespace zelmo {

/// What an opaque layer hides from the eye, as if the eye were a light: for every square of the
/// window, row by row, the heights at its front edge from which every way to the eye passes the
/// layer's inside. Nothing that is drawn before the layer and shows through can stand in front of
/// it there: translucent layers below it in the stack do not reach up to these heights.
struct Shadow {
    std::unique_ptr<float[]> lowest;
    std::unique_ptr<float[]> highest;  ///< below the lowest where there is no shadow
};

/// The shadows of the opaque layers above each translucent one in the stack, or rather of the
/// thickest of those that follow each other. None where the eye is close to the window.
std::vector<Shadow> FindShadows(const LayerStack& stack, const Sight& sight);

}  // namespace zelmo
