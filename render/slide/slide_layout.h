#pragma once

#include <cstdint>
#include <optional>

#include "render/mesh/matrix.h"

namespace zelmo {

struct PictureChoice;
struct ProcessSettings;

// Of the legend, in a picture that is 1920 pixels wide: from row to row, and around it
inline constexpr double slideLegendPitch = 36.0;
inline constexpr double slideLegendMargin = 24.0;

/// A place on a picture in pixels from its lower left corner.
struct PixelPoint {
    double x = 0.0;
    double y = 0.0;
};

/// A part of a picture in pixels.
struct PixelRect {
    std::int32_t left = 0;
    std::int32_t bottom = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const PixelRect&) const = default;
};

/// Where what stands on a picture for a slide. Lengths are pixels.
struct SlideLayout {
    double unit = 1.0;  ///< of a picture that is 1920 pixels wide, one pixel
    std::int32_t width = 0;
    std::int32_t height = 0;
    PixelRect view;                      ///< where the camera's view goes
    std::int32_t legendWidth = 0;        ///< 0 without one
    std::int32_t legendHeight = 0;       ///< of the longest one that there is room for
    std::optional<double> titleBase{};   ///< base line of the title
    std::optional<double> remarkBase{};  ///< of what is said about thin films
};

/// For a view of this aspect and a legend of so many layers. Throws where the aspect asks for a
/// picture of no height.
SlideLayout LayOutSlide(const PictureChoice& choice, const ProcessSettings& settings, double aspect,
                        std::int32_t layerCount);

/// The same with so many pixels in place of each, across and upwards.
SlideLayout Magnify(const SlideLayout& layout, std::int32_t factor);

/// Takes points of the world to the picture.
struct Projector {
    Matrix4 transform{};
    PixelRect view;

    PixelPoint At(const Vector3& position) const;
};

/// The part of a picture that its contents may take, whatever stack in this box is drawn: legend,
/// box, labels and texts. `box` is the size of the window and the height that there is room for.
PixelRect FindContents(const SlideLayout& layout, const PictureChoice& choice,
                       const ProcessSettings& settings, const Projector& projector,
                       const Vector3& box);

}  // namespace zelmo
