#include "render/lone_picture.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <new>

#include "model/process_model.h"
#include "render/gl/gl_context.h"
#include "render/studio.h"

namespace zelmo {

namespace {

/// The entry points of OpenGL that a context brings stand in one table for the whole process.
std::mutex& EntryPointsLock() {
    static std::mutex lock;
    return lock;
}

}  // namespace

LonePicture TakeLonePicture(const std::filesystem::path& surfaceShader,
                            const std::filesystem::path& pointShader, const ProcessModel& model,
                            std::size_t index, const PictureChoice& choice) {
    const std::lock_guard lock(EntryPointsLock());
    LonePicture picture;
    const std::unique_ptr<GlContext> context = CreateOffscreenGlContext(picture.problem);
    if (context == nullptr) {
        return picture;
    }
    Studio studio(surfaceShader, pointShader);
    picture.problem = WhyUnusable(studio);
    if (!picture.problem.empty()) {
        return picture;
    }
    try {
        picture.image =
            studio.TakePicture(model, model.steps.at(index), static_cast<std::int32_t>(index) + 1,
                               choice, &picture.problem);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        picture.problem = error.what();
    }
    if (!studio.FontProblem().empty()) {
        picture.problem = studio.FontProblem();
    }
    return picture;
}

}  // namespace zelmo
