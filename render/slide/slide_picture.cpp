#include "render/slide/slide_picture.h"

#include <GL/glew.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "base/conversions.h"
#include "base/row_bands.h"
#include "model/process_model.h"
#include "render/camera.h"
#include "render/gl/gl_problem.h"
#include "render/gl/offscreen_buffer.h"
#include "render/highest_surface.h"
#include "render/layer_renderer.h"
#include "render/picture_camera.h"
#include "render/picture_texts.h"
#include "render/slide/picture_pixels.h"
#include "render/slide/slide_canvas.h"
#include "render/slide/slide_overlays.h"
#include "render/stack_uploads.h"
#include "render/thin_films.h"

namespace zelmo {

namespace {

constexpr std::int32_t samplesAcross = 4;  // of a pixel of a smooth picture
constexpr double cropMargin = 24.0;        // in a picture that is 1920 pixels wide

PictureCamera MakeCamera(const ProcessSettings& settings, const PictureChoice& choice, float top) {
    if (choice.view) {
        return CameraFrom(*choice.view, settings, top);
    }
    const Camera camera(static_cast<double>(settings.windowWidth),
                        static_cast<double>(settings.windowHeight), static_cast<double>(top),
                        static_cast<double>(settings.cameraAngle));
    return FrontalCamera(camera, settings);
}

/// The view as the choice of triangles takes it.
PictureView ViewOf(const PictureCamera& camera, const SlideLayout& layout) {
    GLint subpixelBits = 0;
    glGetIntegerv(GL_SUBPIXEL_BITS, &subpixelBits);
    return {camera.transform,  layout.view.left,   layout.view.bottom,
            layout.view.width, layout.view.height, subpixelBits};
}

/// The viewport for a part of the picture: all of it, or as much around the part as OpenGL can
/// address. OpenGL cuts triangles off at its edge and may give the cut ones wrong colours there
/// (Mesa does), so it should be far from the part.
PixelRect FindViewport(const SlideLayout& layout, const PixelRect& part,
                       const PictureTools& tools) {
    std::array<GLint, 2> most{};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, most.data());
    const auto fit = [&](std::int32_t whole, std::int32_t start, std::int32_t length, GLint limit,
                         std::int32_t& viewStart, std::int32_t& viewLength) {
        viewLength = std::min({whole, limit, tools.largestViewport});
        viewLength = std::max(viewLength, length);
        viewStart = std::clamp(start - (viewLength - length) / 2, 0, whole - viewLength);
    };
    PixelRect viewport;
    fit(layout.width, part.left, part.width, most[0], viewport.left, viewport.width);
    fit(layout.height, part.bottom, part.height, most[1], viewport.bottom, viewport.height);
    return viewport;
}

/// The transform for a viewport that is this part of the picture.
Matrix4 TransformForPart(const Matrix4& transform, const PixelRect& view, const PixelRect& part) {
    Matrix4 m = transform;
    const auto fit = [&](std::size_t row, double viewStart, double viewLength, double partStart,
                         double partLength) {
        const double scale = viewLength / partLength;
        const double shift = (viewLength + 2.0 * (viewStart - partStart)) / partLength - 1.0;
        for (std::size_t column = 0; column < 4; ++column) {
            const std::size_t i = 4 * column + row;
            m[i] = static_cast<float>(scale * static_cast<double>(transform[i]) +
                                      shift * static_cast<double>(transform[4 * column + 3]));
        }
    };
    fit(0, view.left, view.width, part.left, part.width);
    fit(1, view.bottom, view.height, part.bottom, part.height);
    return m;
}

/// Adds the opacity as a picture without a background needs it.
class OpacityBlending {
public:
    OpacityBlending() {
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    }
    ~OpacityBlending() { glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); }
    OpacityBlending(const OpacityBlending&) = delete;
    OpacityBlending& operator=(const OpacityBlending&) = delete;
};

/// Draws one part of a picture into the framebuffer that is bound.
void DrawPart(const PixelRect& part, const SlideLayout& layout, const SlideContents& contents,
              const PictureTools& tools, LayerRenderer& layers, bool isLast) {
    const OpacityBlending blending;
    const PixelRect viewport = FindViewport(layout, part, tools);
    glViewport(viewport.left - part.left, viewport.bottom - part.bottom, viewport.width,
               viewport.height);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    UseSurfaceShader(tools.surfaceShader,
                     TransformForPart(contents.camera.transform, layout.view, viewport),
                     contents.model.settings.windowWidth, contents.camera.right);
    layers.Draw(isLast);
    glUseProgram(0);
    glViewport(0, 0, part.width, part.height);
    SlideCanvas canvas(part, layout.unit, tools.textFont);
    if (contents.model.settings.showHeights) {
        DrawSlideMarks(canvas, layout, contents);
    }
    glDisable(GL_DEPTH_TEST);
    DrawSlideOverlays(canvas, layout, contents);
    glEnable(GL_DEPTH_TEST);
}

/// Reads what was drawn into its place on the picture, `factor` by `factor` pixels as one.
void ReadPart(const PixelRect& part, std::int32_t factor, StepImage& image) {
    constexpr std::int32_t rowsAtOnce = 32;
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    const std::int32_t rows = part.height / factor;
    const std::size_t partBytes = static_cast<std::size_t>(part.width) * bytesPerPixel;
    const std::size_t imageBytes = static_cast<std::size_t>(image.width) * bytesPerPixel;
    std::uint8_t* const start = image.pixels.data() +
                                static_cast<std::size_t>(part.bottom / factor) * imageBytes +
                                static_cast<std::size_t>(part.left / factor) * bytesPerPixel;
    std::vector<std::uint8_t> samples(partBytes * static_cast<std::size_t>(rowsAtOnce * factor));
    for (std::int32_t done = 0; done < rows; done += rowsAtOnce) {
        const std::int32_t count = std::min(rowsAtOnce, rows - done);
        glReadPixels(0, done * factor, part.width, count * factor, GL_BGRA, GL_UNSIGNED_BYTE,
                     samples.data());
        ForRowBands(count, 8, [&](std::int32_t first, std::int32_t end) {
            for (std::int32_t row = first; row < end; ++row) {
                const std::size_t rowSamples = partBytes * static_cast<std::size_t>(factor);
                AverageSquares(std::span(samples).subspan(
                                   static_cast<std::size_t>(row) * rowSamples, rowSamples),
                               factor, static_cast<std::size_t>(part.width / factor),
                               start + static_cast<std::size_t>(done + row) * imageBytes);
            }
        });
    }
}

/// In pixels of the finished picture: what OpenGL can draw at once, and what memory there should
/// be for.
std::vector<PixelRect> FindParts(const SlideLayout& layout, std::int32_t factor,
                                 const PictureTools& tools) {
    std::array<GLint, 2> viewport{};
    GLint buffer = 0;
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, viewport.data());
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &buffer);
    constexpr std::int32_t least = 64;  // where OpenGL does not work
    const auto limit = [&](GLint most) {
        return std::max(std::min({most, buffer, tools.largestPart}), least) / factor;
    };
    const std::int64_t mostPixels = std::int64_t{tools.largestPart} * tools.largestPart / 2;
    return DivideIntoParts(layout.width, layout.height, limit(viewport[0]), limit(viewport[1]),
                           mostPixels / factor / factor);
}

PixelRect Magnified(const PixelRect& rect, std::int32_t factor) {
    return {rect.left * factor, rect.bottom * factor, rect.width * factor, rect.height * factor};
}

/// Draws the picture part by part. Its colours are multiplied by their opacity.
void DrawPicture(const SlideLayout& layout, const SlideContents& contents,
                 const StackUploads& uploads, const PictureTools& tools, std::int32_t factor,
                 StepImage& image, std::string* problem) {
    const SlideLayout fine = Magnify(layout, factor);
    LayerRenderer layers(contents.stack, contents.model.grid, uploads, tools.surfaceShader,
                         ViewOf(contents.camera, fine), tools.hidingRules);
    const std::vector<PixelRect> parts = FindParts(layout, factor, tools);
    for (const PixelRect& part : parts) {
        const PixelRect samples = Magnified(part, factor);
        const OffscreenBuffer buffer(samples.width, samples.height);
        DrawPart(samples, fine, contents, tools, layers, part == parts.back());
        ReadPart(samples, factor, image);
        if (problem != nullptr && problem->empty()) {
            *problem = DrawingProblem(buffer);
        }
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

/// What remains of a picture that is cut to what is drawn on it. Pictures that are to be of one
/// size are all cut in the same way.
PixelRect CroppedPart(const StepImage& image, const SlideLayout& layout,
                      const PictureChoice& choice, const SlideContents& contents) {
    const PixelRect drawn =
        choice.room ? FindContents(layout, choice, contents.model.settings,
                                   {contents.camera.transform, layout.view}, contents.box)
                    : FindDrawn(image);
    const auto margin = TruncateToI32(std::round(cropMargin * layout.unit));
    return {drawn.left - margin, drawn.bottom - margin, drawn.width + 2 * margin,
            drawn.height + 2 * margin};
}

StepImage MakeImage(const SlideLayout& layout) {
    StepImage image;
    image.width = layout.width;
    image.height = layout.height;
    image.pixels.resize(static_cast<std::size_t>(image.width) *
                        static_cast<std::size_t>(image.height) * bytesPerPixel);
    return image;
}

/// The stack as it is drawn, where that is another one.
std::optional<Stack> DrawnStack(const ProcessModel& model, const PictureChoice& choice) {
    return choice.thinnestFilm > 0.0f ? ThickenThinFilms(model.stack, choice.thinnestFilm)
                                      : std::nullopt;
}

}  // namespace

PictureRoom RoomOf(const ProcessModel& model, const PictureChoice& choice) {
    const std::optional<Stack> drawn = DrawnStack(model, choice);
    return {HighestSurface(drawn ? drawn->coverMap : model.stack.coverMap), model.stack.layerCount};
}

StepImage TakeSlidePicture(const ProcessModel& model, const ProcessStep& step,
                           StackUploads& uploads, const PictureTools& tools,
                           std::int32_t imageNumber, const PictureChoice& choice,
                           std::string* problem) {
    if (problem != nullptr) {
        problem->clear();
        ForgetGlErrors();
    }
    const std::optional<Stack> thickened = DrawnStack(model, choice);
    const Stack& stack = thickened ? *thickened : model.stack;
    PictureRoom room{HighestSurface(stack.coverMap), stack.layerCount};
    if (choice.room) {
        room = {std::max(room.top, choice.room->top),
                std::max(room.layerCount, choice.room->layerCount)};
    }
    const PictureCamera camera = MakeCamera(model.settings, choice, room.top);
    UpdateUploads(uploads, stack, model.grid, camera.seen);
    const SlideLayout layout = LayOutSlide(choice, model.settings, camera.aspect, room.layerCount);
    const HeightMarkers measured = SampleHeightMarkers(model.grid, model.stack.coverMap);
    const SlideContents contents{
        model,
        stack,
        uploads.markers,
        measured,
        camera,
        {model.settings.windowWidth, model.settings.windowHeight, room.top},
        choice.title ? TitleText(imageNumber, model.steps.size(), step.description) : std::string(),
        thickened ? ThickenedText(choice.thinnestFilm) : std::string(),
        choice.scale};
    StepImage image = MakeImage(layout);
    image.name = StepImageName(imageNumber, step.description);
    DrawPicture(layout, contents, uploads, tools, choice.smooth ? samplesAcross : 1, image,
                problem);
    if (choice.crop) {
        Crop(image, CroppedPart(image, layout, choice, contents));
    }
    FinishPixels(image, choice.transparent);
    return image;
}

}  // namespace zelmo
