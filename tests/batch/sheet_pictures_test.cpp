#include <gtest/gtest.h>

#include "batch/listeners/overviews.h"
#include "batch/options.h"

namespace zelmo {
namespace {

StepImage ImageOf(std::int32_t width, std::int32_t height) {
    StepImage image;
    image.width = width;
    image.height = height;
    image.name = L"001 tower";
    image.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4,
                        0x40);
    return image;
}

/// What stands on a sheet for a picture, its caption left out.
StepImage OnSheet(const StepImage& image) {
    BatchOptions options;
    options.overview.sheet = "sheet.png";
    return MakeSheet(options, [](const std::string&, std::int32_t width,
                                 std::int32_t) { return ImageOf(width, 0); })
        .prepare(image);
}

TEST(SheetPictures, AreOfTheWidthThatTheSheetHas) {
    const StepImage picture = OnSheet(ImageOf(960, 600));
    EXPECT_EQ(picture.width, 480);
    EXPECT_EQ(picture.height, 300);
}

TEST(SheetPictures, OfATowerAreNarrower) {
    const StepImage picture = OnSheet(ImageOf(960, 19200));
    EXPECT_EQ(picture.width, 240);
    EXPECT_EQ(picture.height, 4800);
}

}  // namespace
}  // namespace zelmo
