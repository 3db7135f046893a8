#pragma once

#include <memory>
#include <string>

namespace zelmo {

/// The program's one OpenGL context, a compatibility profile, current on at most one thread.
class GlContext {
public:
    virtual ~GlContext() = default;
    virtual bool MakeCurrent() = 0;
    virtual void Release() = 0;
    virtual bool IsCurrent() const = 0;
};

/// A context that needs no window of the user's: EGL on Linux, a hidden window's on Windows.
/// Current on the calling thread when it returns, with entry points loaded and InitGlState done.
/// Null with the reason in `error` if there is none.
std::unique_ptr<GlContext> CreateOffscreenGlContext(std::string& error);

/// Program point size, blending by source alpha, depth test: set once for a context's life.
void InitGlState();

}  // namespace zelmo
