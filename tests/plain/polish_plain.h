#pragma once

namespace zelmo {

struct Grid;
struct ProcessStep;
struct Stack;

/// The polish with nine looks at each square and each cell by itself. Finds the cover anew as well.
/// Layers with nothing left stay in their slots.
bool ExecutePolishPlain(Stack& stack, const Grid& grid, const ProcessStep& step);

}  // namespace zelmo
