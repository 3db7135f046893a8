#pragma once

#include <string>

namespace zelmo {

class OffscreenBuffer;

/// Forgets the errors that OpenGL has reported so far.
void ForgetGlErrors();

/// Why what was drawn into the buffer, which must be bound, is of no use: what is wrong with it or
/// went wrong since the errors were last forgotten. Empty if nothing is.
std::string DrawingProblem(const OffscreenBuffer& buffer);

}  // namespace zelmo
