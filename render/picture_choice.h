#pragma once

#include <cstdint>
#include <optional>

namespace zelmo {

/// From where a stack is looked at, in degrees.
struct ViewDirection {
    double azimuth = 0.0;     ///< around the window: 0 from the front, 90 from the right
    double elevation = 0.0;   ///< above the horizon, -90 to 90
    bool isParallel = false;  ///< without perspective, so that lengths can be measured

    bool operator==(const ViewDirection&) const = default;
};

/// What a picture has to have room for, so that those of several steps can be of one size.
struct PictureRoom {
    float top = 0.0f;             ///< of the highest stack, in micrometres
    std::int32_t layerCount = 0;  ///< of the longest legend

    bool operator==(const PictureRoom&) const = default;
};

constexpr std::int32_t usualPictureWidth = 1920;

/// How a picture is drawn. As it stands here it is the usual one; anything else makes a picture for
/// a slide, with a margin around the legend and frames around its swatches.
struct PictureChoice {
    /// Pixels, before `crop` takes some away. Texts, markers and margins are in proportion to it.
    std::int32_t width = usualPictureWidth;
    bool smooth = false;                  ///< each pixel is the mean of 4 by 4
    bool title = false;                   ///< with the step's number and name
    bool scale = false;                   ///< with bars for x, y and height
    bool transparent = false;             ///< without a background
    bool crop = false;                    ///< cut to what is drawn, with a margin
    std::optional<ViewDirection> view{};  ///< none: the camera that the process file sets
    float thinnestFilm = 0.0f;  ///< films thinner than this, in micrometres, are drawn so thick
    std::optional<PictureRoom> room{};  ///< none: what the stack itself needs

    bool operator==(const PictureChoice&) const = default;
};

}  // namespace zelmo
