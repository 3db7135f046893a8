#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "pictures/step_image.h"
#include "render/gl/gl_context.h"

namespace zelmo {

/// A context that also draws into a window of the user's.
class WindowGlContext : public GlContext {
public:
    /// Clears the window's buffer, draws the picture's pixels with their lower left corner at `x`,
    /// `y` (pixels from the window's lower left) and brings the buffer onto the screen. The
    /// context must be current.
    virtual void Show(const StepImage& picture, int x, int y) = 0;
};

/// A context of a window, which has to outlive it, in place of one that needs no window: current,
/// checked and prepared as with CreateOffscreenGlContext. Null with the reason in `error` if there
/// is none.
std::unique_ptr<WindowGlContext> CreateWindowGlContext(HWND window, std::string& error);

}  // namespace zelmo
