#pragma once

#include <webp/encode.h>

#include <cstdint>

#include "pictures/step_image.h"

namespace zelmo {

/// A picture as the WebP library takes it, top row first. Where nothing is said about its
/// background it is opaque. Throws std::bad_alloc.
class WebpPicture {
public:
    /// The image is `width` by `height` pixels, which WebP can hold, or smaller: then it stands in
    /// the middle, on white or, if it is transparent, on nothing.
    WebpPicture(const StepImage& image, std::int32_t width, std::int32_t height);
    ~WebpPicture() { WebPPictureFree(&picture_); }
    WebpPicture(const WebpPicture&) = delete;
    WebpPicture& operator=(const WebpPicture&) = delete;

    WebPPicture* Get() { return &picture_; }

private:
    WebPPicture picture_{};
};

/// Whether WebP can hold a picture of this size.
bool FitsWebp(std::int32_t width, std::int32_t height);

}  // namespace zelmo
