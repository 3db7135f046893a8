#include "tests/desktop/desktop.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "examples/gds_writer.h"

namespace zelmo {

namespace {

class TinyPictureMaker : public PictureMaker {
public:
    StepImage TakePicture(const ProcessModel&, const ProcessStep& step,
                          std::int32_t imageNumber) override {
        StepImage image;
        image.width = 2;
        image.height = 3;
        image.pixels.assign(24, static_cast<std::uint8_t>(imageNumber));
        image.name = WidenBytes(fmt::format("{:03d} {}", imageNumber, step.description));
        return image;
    }
};

}  // namespace

std::unique_ptr<PictureMaker> CreateTinyPictureMaker() {
    return std::make_unique<TinyPictureMaker>();
}

Desktop::Desktop() : window(platform) {
    platform.SetWindow(&window);
    window.FinishCreation(CreateTinyPictureMaker());
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 2000, 2000, 6000, 6000);
    writer.EndCell();
    writer.EndLibrary();
    layout_ = folder_.Path() / "layout.gds";
    writer.Save(layout_);
}

void Desktop::LoadLayout() {
    platform.AnswerNextFileQuestion(layout_);
    window.HandleLoadGds();
}

void Desktop::StartRun(const std::filesystem::path& processFile) {
    platform.AnswerNextFileQuestion(processFile);
    window.HandleRun();
}

void Desktop::FinishRun() {
    platform.RunLoopUntil([this] { return !window.Running(); });
}

void Desktop::DuringStep(const std::wstring& description, std::function<void()> action) {
    const std::wstring line = L"Executing " + description + L" ...";
    platform.ObserveLines([this, line, action = std::move(action)](const std::wstring& written) {
        if (written == line) {
            platform.Post(action);
        }
    });
}

std::filesystem::path Desktop::ProcessFile(int steps, const std::string& name) {
    std::string text =
        "settings -version 4 -N 200\n"
        "location -x 0 -y 0 -dx 8 -dy 2\n"
        "gds -cell TOP\n";
    for (int i = 1; i <= steps; ++i) {
        text += fmt::format(
            "deposition -name layer{} -type film -thickness 100 -color 10 20 30 100\n", i);
    }
    return folder_.Write(name, text);
}

bool Desktop::HasLine(const std::wstring& text) {
    const auto lines = Lines();
    return std::find(lines.begin(), lines.end(), text) != lines.end();
}

std::vector<std::wstring> Desktop::PictureNames() const {
    std::vector<std::wstring> names;
    for (const StepImage& image : window.Pictures().images) {
        names.push_back(image.name);
    }
    return names;
}

}  // namespace zelmo
