#pragma once

#include <cstdint>
#include <vector>

#include "pictures/step_image.h"

namespace zelmo {

/// The pictures of a run in the order of their capture, and the one that is shown.
struct PictureList {
    std::vector<StepImage> images;
    std::int32_t currentImage = 0;

    /// The picture that is shown. Throws std::out_of_range "invalid vector subscript" if there is
    /// none.
    const StepImage& Current() const;
    /// Moves to the picture before; before the first comes the last.
    void GoLeft();
    /// Moves to the picture behind; behind the last comes the first.
    void GoRight();
};

/// A picture scaled to fit into `width` by `height` pixels, each pixel the nearest one of the
/// source by truncation, and where it stands: centred.
struct FittedPicture {
    StepImage image;
    std::int32_t x = 0;
    std::int32_t y = 0;  ///< from the bottom
};
FittedPicture FitPicture(const StepImage& source, std::int32_t width, std::int32_t height);

}  // namespace zelmo
