#pragma once

namespace zelmo {

struct Grid;
struct ProcessStep;
struct Stack;

/// The implant column by column, each from the top of the stack down. Finds the cover anew as well.
void ExecuteImplantPlain(Stack& stack, const Grid& grid, const ProcessStep& step);

}  // namespace zelmo
