#pragma once

namespace zelmo {

struct Grid;
struct Stack;

/// Finds the exposed layer of every cell anew. A layer covers the cells where it has thickness and,
/// unless it is one that covers nothing around, the eight cells around each of them; the topmost
/// layer wins, and the height is its `top` at the cell itself. A cell that no layer covers keeps
/// what it had.
void UpdateCoverMap(Stack& stack, const Grid& grid);

}  // namespace zelmo
