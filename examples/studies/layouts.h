#pragma once

#include "examples/gds_writer.h"

namespace zelmo {

// The layouts of the worked studies, each one cell that is cut along x.

/// A gate, mask 1.
GdsWriter SpacerLayout();
/// A gate, mask 1, and a contact beside it, mask 2.
GdsWriter ContactLayout();
/// A trench, mask 1.
GdsWriter CoverageLayout();
/// The edge of a piece of silicon that stays, mask 1.
GdsWriter IsolationLayout();

}  // namespace zelmo
