#pragma once

#include <string>

namespace zelmo {

/// Loads the entry points for the context that is current, and checks that it can do what the
/// pictures need. Returns the reason if it cannot, else an empty text.
std::string LoadGlEntryPoints();

}  // namespace zelmo
