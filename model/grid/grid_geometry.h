#pragma once

namespace zelmo {

struct ProcessModel;

/// Sizes the grid from the location window and `gridColumns`: origin, extent, spacing, rows and
/// margins, every operation in single precision. The grid overhangs the window by a tenth of its
/// size on each side.
void SizeGrid(ProcessModel& model);

}  // namespace zelmo
