#include <string>

#include "base/log_console.h"
#include "base/text.h"
#include "desktop/picture_maker.h"
#include "render/studio.h"

namespace zelmo {

namespace {

class GlPictureMaker : public PictureMaker {
public:
    GlPictureMaker(const std::filesystem::path& surfaceShaderPath,
                   const std::filesystem::path& pointShaderPath, LogConsole* console)
        : studio_(surfaceShaderPath, pointShaderPath), console_(console) {
        for (const FaultyShader& shader : studio_.FaultyShaders()) {
            for (const std::wstring& reason : shader.reasons) {
                console_->Write(reason);
            }
        }
    }

    StepImage TakePicture(const ProcessModel& model, const ProcessStep& step,
                          std::int32_t imageNumber) override {
        StepImage image = studio_.TakePicture(model, step, imageNumber);
        if (!studio_.FontProblem().empty() && !toldOfFont_) {
            console_->Write(WidenBytes(studio_.FontProblem()) + L": pictures come without text");
            toldOfFont_ = true;
        }
        return image;
    }

private:
    Studio studio_;
    LogConsole* console_;
    bool toldOfFont_ = false;
};

}  // namespace

std::unique_ptr<PictureMaker> CreateGlPictureMaker(const std::filesystem::path& surfaceShaderPath,
                                                   const std::filesystem::path& pointShaderPath,
                                                   LogConsole* console) {
    return std::make_unique<GlPictureMaker>(surfaceShaderPath, pointShaderPath, console);
}

}  // namespace zelmo
