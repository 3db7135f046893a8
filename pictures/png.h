#pragma once

#include <cstdio>
#include <string>

#include "pictures/step_image.h"

namespace zelmo {

/// Writes a picture as an 8-bit RGB file, top row first. Its alpha is left out: it only records how
/// translucent layers were blended, and would make them see-through on a slide. False, with the
/// reason in `reason`, if the picture is empty or a write failed; `file` is buffered, so a failure
/// may show only when it is closed.
bool WritePng(const StepImage& image, std::FILE* file, std::string& reason);

}  // namespace zelmo
