#pragma once

#include <string>

namespace zelmo {

/// Loads the library that EGL and OpenGL come from, if that has not been done yet. Returns the
/// reason if there is none, else an empty text. Without it every call of OpenGL does nothing.
std::string LoadGlLibrary();

}  // namespace zelmo
