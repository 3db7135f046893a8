#include "desktop/picture_maker.h"
#include "render/camera.h"
#include "render/gl/shader_program.h"
#include "render/gl/text_font.h"
#include "render/stack_uploads.h"
#include "render/step_picture.h"

namespace zelmo {

namespace {

class GlPictureMaker : public PictureMaker {
public:
    GlPictureMaker(const std::filesystem::path& surfaceShaderPath,
                   const std::filesystem::path& pointShaderPath, LogConsole* console)
        : surfaceShader_(surfaceShaderPath, console), pointShader_(pointShaderPath, console) {}

    StepImage TakePicture(const ProcessModel& model, const ProcessStep& step,
                          std::int32_t imageNumber) override {
        const PictureTools tools{surfaceShader_, pointShader_, textFont_};
        return TakeStepPicture(model, step, uploads_, tools, imageNumber, camera_);
    }

private:
    StackUploads uploads_;
    TextFont textFont_;
    ShaderProgram surfaceShader_;
    ShaderProgram pointShader_;
    std::unique_ptr<Camera> camera_;
};

}  // namespace

std::unique_ptr<PictureMaker> CreateGlPictureMaker(const std::filesystem::path& surfaceShaderPath,
                                                   const std::filesystem::path& pointShaderPath,
                                                   LogConsole* console) {
    return std::make_unique<GlPictureMaker>(surfaceShaderPath, pointShaderPath, console);
}

}  // namespace zelmo
