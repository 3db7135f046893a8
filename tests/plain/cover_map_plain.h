#pragma once

namespace zelmo {

struct Grid;
struct Stack;

/// The cover update cell by cell, from the topmost layer down, with nine looks at each layer.
void UpdateCoverMapPlain(Stack& stack, const Grid& grid);

}  // namespace zelmo
