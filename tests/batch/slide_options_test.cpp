#include <gtest/gtest.h>

#include "batch/options.h"

namespace zelmo {
namespace {

BatchOptions ParseWithFiles(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"a.gds", "b.txt"});
    const CommandLine line = ParseCommandLine(arguments);
    EXPECT_TRUE(line.options) << line.end.text;
    return line.options.value_or(BatchOptions{});
}

void ExpectUsageErrorWithFiles(std::vector<std::string> arguments, const std::string& text) {
    arguments.insert(arguments.begin(), {"a.gds", "b.txt"});
    const CommandLine line = ParseCommandLine(arguments);
    EXPECT_FALSE(line.options);
    EXPECT_EQ(line.end.status, ExitStatus::Usage);
    EXPECT_EQ(line.end.text, text + " (--help lists the options)");
}

TEST(SlideOptions, WithoutThemPicturesAreTheUsualOnes) {
    EXPECT_EQ(ParseWithFiles({}).picture, PictureChoice{});
    EXPECT_FALSE(ParseWithFiles({}).sameSize);
    EXPECT_EQ(ParseWithFiles({"--width", "1920"}).picture, PictureChoice{});
}

TEST(SlideOptions, MayBeCombined) {
    const BatchOptions options =
        ParseWithFiles({"--width", "3840", "--smooth", "--same-size", "--view", "-30.5,20,parallel",
                        "--title", "--scale", "--transparent", "--crop", "--thin", "2.5"});
    const PictureChoice& picture = options.picture;
    EXPECT_EQ(picture.width, 3840);
    EXPECT_TRUE(picture.smooth);
    EXPECT_TRUE(options.sameSize);
    EXPECT_EQ(picture.view, (ViewDirection{-30.5, 20.0, true}));
    EXPECT_TRUE(picture.title);
    EXPECT_TRUE(picture.scale);
    EXPECT_TRUE(picture.transparent);
    EXPECT_TRUE(picture.crop);
    EXPECT_EQ(picture.thinnestFilm, 0.0025f);
}

TEST(SlideOptions, AViewIsInPerspectiveUnlessItIsSaidOtherwise) {
    EXPECT_EQ(ParseWithFiles({"--view", "90,45"}).picture.view, (ViewDirection{90.0, 45.0, false}));
    EXPECT_EQ(ParseWithFiles({"--view=360,-90"}).picture.view,
              (ViewDirection{360.0, -90.0, false}));
}

TEST(SlideOptions, AWidthOutOfRangeIsRefused) {
    for (const char* width : {"319", "16385", "-1", "1e3", "", "wide", "99999999999"}) {
        ExpectUsageErrorWithFiles({"--width", width},
                                  "--width: \"" + std::string(width) +
                                      "\" is no whole number of pixels from 320 to "
                                      "16384");
    }
    EXPECT_EQ(ParseWithFiles({"--width", "320"}).picture.width, 320);
    EXPECT_EQ(ParseWithFiles({"--width", "16384"}).picture.width, 16384);
}

TEST(SlideOptions, AViewThatIsNoneIsRefused) {
    for (const char* view : {"30", "30,", "30,20,", "30,20,flat", "361,0", "0,90.5", "0,-91",
                             "nan,0", "30, 20", "parallel", "30,20,parallel,", ""}) {
        ExpectUsageErrorWithFiles(
            {"--view", view},
            "--view: \"" + std::string(view) +
                "\" is not AZIMUTH,ELEVATION[,parallel]: degrees from -360 to 360 and "
                "from -90 to 90, with commas and no blanks in between");
    }
}

TEST(SlideOptions, AThicknessThatIsNoneIsRefused) {
    for (const char* thin : {"0", "-3", "1000001", "inf", "3nm", ""}) {
        ExpectUsageErrorWithFiles({"--thin", thin},
                                  "--thin: \"" + std::string(thin) +
                                      "\" is no number of nanometres above 0, up to "
                                      "1000000");
    }
}

TEST(SlideOptions, TwoAnswersToOneQuestionAreRefused) {
    ExpectUsageErrorWithFiles(
        {"--view", "0,30", "--angle", "30"},
        "--angle and --view exclude each other: both say how high the camera stands");
    ExpectUsageErrorWithFiles(
        {"--transparent", "--format", "bmp"},
        "--transparent needs pictures of the format png, the only one with opacity");
}

}  // namespace
}  // namespace zelmo
