#pragma once

#include <optional>

#include "model/stack.h"

namespace zelmo {

/// What is thinner than this, in micrometres, is no film: the rest that rounding leaves.
constexpr float leastFilm = 0.0001f;

/// A copy of a stack in which films that are thinner than `thickness` micrometres are so thick, at
/// every cell by itself; what stands on them is lifted. For pictures only. Nothing where the stack
/// has no such film. What does not change is shared with the stack.
std::optional<Stack> ThickenThinFilms(const Stack& stack, float thickness);

}  // namespace zelmo
