#include "desktop/picture_list.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <stdexcept>

#include "base/conversions.h"

namespace zelmo {

const StepImage& PictureList::Current() const {
    // A negative index is out of range as well: it turns into a huge one.
    const auto index = static_cast<std::size_t>(static_cast<std::int64_t>(currentImage));
    if (index >= images.size()) {
        throw std::out_of_range("invalid vector subscript");
    }
    return images[index];
}

void PictureList::GoLeft() {
    const auto count = static_cast<std::int32_t>(images.size());
    currentImage = (currentImage < 1 ? count : currentImage) - 1;
}

void PictureList::GoRight() {
    const auto position = static_cast<std::uint64_t>(static_cast<std::int64_t>(currentImage));
    if (position >= static_cast<std::uint64_t>(images.size()) - 1) {
        currentImage = 0;
    } else {
        ++currentImage;
    }
}

namespace {

/// For each of `count` pixels of the scaled picture, the pixel of the source.
std::vector<std::size_t> SourcePositions(std::int32_t count, float scale,
                                         std::int32_t sourceCount) {
    std::vector<std::size_t> positions(static_cast<std::size_t>(std::max(count, 0)));
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const std::int32_t position = TruncateToI32(static_cast<float>(i) / scale);
        positions[i] = static_cast<std::size_t>(std::clamp(position, 0, sourceCount - 1));
    }
    return positions;
}

StepImage Rescale(const StepImage& source, float scale) {
    StepImage scaled;
    scaled.width = std::max(0, TruncateToI32(static_cast<float>(source.width) * scale));
    scaled.height = std::max(0, TruncateToI32(static_cast<float>(source.height) * scale));
    scaled.pixels.resize(static_cast<std::size_t>(scaled.width) *
                         static_cast<std::size_t>(scaled.height) * 4);
    const auto columns = SourcePositions(scaled.width, scale, source.width);
    const auto rows = SourcePositions(scaled.height, scale, source.height);
    std::uint8_t* target = scaled.pixels.data();
    for (const std::size_t row : rows) {
        const std::uint8_t* sourceRow =
            source.pixels.data() + row * static_cast<std::size_t>(source.width) * 4;
        for (const std::size_t column : columns) {
            std::memcpy(target, sourceRow + column * 4, 4);
            target += 4;
        }
    }
    return scaled;
}

}  // namespace

FittedPicture FitPicture(const StepImage& source, std::int32_t width, std::int32_t height) {
    const float scale = std::min(static_cast<float>(height) / static_cast<float>(source.height),
                                 static_cast<float>(width) / static_cast<float>(source.width));
    FittedPicture fitted;
    if (!(scale > 0.0f)) {
        return fitted;
    }
    fitted.image = Rescale(source, scale);
    fitted.x = fitted.image.width < width ? (width - fitted.image.width) / 2 : 0;
    fitted.y = fitted.image.height < height ? (height - fitted.image.height) / 2 : 0;
    return fitted;
}

}  // namespace zelmo
