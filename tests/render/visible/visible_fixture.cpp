#include "tests/render/visible/visible_fixture.h"

#include <algorithm>

#include "render/highest_surface.h"

namespace zelmo {

namespace {

Camera CameraOf(const ProcessModel& model, float top) {
    return {static_cast<double>(model.settings.windowWidth),
            static_cast<double>(model.settings.windowHeight), static_cast<double>(top),
            static_cast<double>(model.settings.cameraAngle)};
}

}  // namespace

void VisibleTest::ExpectSamePicture(ProcessModel& model, int width) {
    ExpectSamePicture(model, width, rules_);
}

void VisibleTest::ExpectSamePicture(ProcessModel& model, int width, const HidingRules& rules) {
    const Camera camera = Prepare(model);
    const Pixels all = Draw(model, camera, width, std::nullopt);
    const Pixels chosen = Draw(model, camera, width, rules);
    EXPECT_EQ(chosen == all, true)
        << "different pixels in " << all.BoxOf([&, i = std::size_t{0}](const Pixel&) mutable {
               const bool differs = chosen.pixels[i] != all.pixels[i];
               ++i;
               return differs;
           });
}

std::size_t VisibleTest::CountDrawn(ProcessModel& model, int width) {
    return CountDrawn(model, width, rules_);
}

std::size_t VisibleTest::CountDrawn(ProcessModel& model, int width, const HidingRules& rules) {
    const Camera camera = Prepare(model);
    const PictureView view{
        camera.transform, 0, 0, width, static_cast<int>(width / camera.aspect), 8};
    const auto chosen = ChooseTriangles(model.stack, model.grid, view, rules);
    EXPECT_TRUE(chosen);
    std::size_t count = 0;
    BareVector<std::uint32_t> indices;
    for (std::size_t slot = 0; chosen && slot < model.stack.layers.size(); ++slot) {
        if (model.stack.layers[slot] != nullptr) {
            FindDrawnTriangles(*chosen, slot, indices);
            count += indices.size() / 3;
        }
    }
    return count;
}

std::size_t VisibleTest::CountAll(ProcessModel& model) {
    Prepare(model);
    std::size_t count = 0;
    for (const UploadedLayer& layer : uploads_.layers) {
        count += static_cast<std::size_t>(layer.mesh.IndexCount()) / 3;
    }
    return count;
}

Camera VisibleTest::Prepare(ProcessModel& model) {
    for (const auto& layer : model.stack.layers) {
        if (layer != nullptr) {
            MarkChanged(*layer);
        }
    }
    SettleStack(model.stack, model.grid);
    UpdateUploads(uploads_, model);
    return CameraOf(model, HighestSurface(model.stack.coverMap));
}

std::unique_ptr<ProcessModel> VisibleTest::MakeFilms(const std::vector<float>& thicknesses) {
    auto model = MakeEmptyModel(10.0f, 10.0f, 120);
    model->settings.cameraAngle = 40.0f;
    for (const float thickness : thicknesses) {
        const bool isFirst = model->stack.layers.empty();
        AddFilm(*model, thickness, {0.3f, 0.6f, isFirst ? 0.1f : 0.9f});
    }
    return model;
}

Pixels VisibleTest::Draw(const ProcessModel& model, const Camera& camera, int width,
                         const std::optional<HidingRules>& rules) {
    const int height = static_cast<int>(width / camera.aspect);
    const Canvas canvas(width, height);
    PictureTools tools = tools_.Tools();
    tools.hidingRules = rules;
    RenderFrame(model, uploads_, camera, tools, width, height);
    return canvas.Read();
}

}  // namespace zelmo
