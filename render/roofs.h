#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/layer_stack.h"
#include "render/sight.h"

namespace zelmo {

/// An opaque layer that hides what is under it even through translucent layers: at the height of
/// the roof, the places where that height lies in the layer's inside, with all places around them.
/// No translucent layer that is drawn before the layer reaches above this height, so whatever way
/// to the eye passes one of these places comes out of the layer with nothing drawn before it.
struct Roof {
    std::size_t place = 0;  ///< of the layer in the stack
    float height = 0.0f;
    std::vector<std::uint8_t> hides;
};

/// The roofs of a stack, lowest first.
std::vector<Roof> FindRoofs(const LayerStack& stack, const Sight& sight);

}  // namespace zelmo
