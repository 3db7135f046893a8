#include "render/picture_texts.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

TEST(PictureTexts, HeightsAreInTenthsOfANanometre) {
    EXPECT_EQ(HeightText(0.25f), "2,500");
    EXPECT_EQ(HeightText(-1.0f), "-10,000");
}

TEST(PictureTexts, WidthsAreInUmOrNm) {
    EXPECT_EQ(WidthText(12.5f), "W = 12.50 um");
    EXPECT_EQ(WidthText(0.2f), "W = 0.20 um");
    EXPECT_EQ(WidthText(0.19f), "W = 190.00 nm");
}

TEST(PictureTexts, AreShortenedOnlyWhereTheyDoNotFit) {
    EXPECT_EQ(ShortenedText("oxide", 5), "oxide");
    EXPECT_EQ(ShortenedText("oxides", 5), "ox...");
    EXPECT_EQ(ShortenedText("oxide", 1), "...");
    EXPECT_EQ(ShortenedText("", 0), "");
}

TEST(PictureTexts, ATitleHasTheStepsNumberAndName) {
    EXPECT_EQ(TitleText(3, 66, "Gate etching"), "3 of 66: Gate etching");
}

TEST(PictureTexts, LengthsAreInTheUnitThatNeedsFewDigits) {
    EXPECT_EQ(LengthText(2.0), "2 um");
    EXPECT_EQ(LengthText(0.5), "500 nm");
    EXPECT_EQ(LengthText(1000.0), "1000 um");
    EXPECT_EQ(LengthText(0.002), "2 nm");
}

TEST(PictureTexts, ThinFilmsAreToldOf) {
    EXPECT_EQ(ThickenedText(0.02f), "Films thinner than 20 nm are drawn 20 nm thick");
    EXPECT_EQ(ThickenedText(0.0015f), "Films thinner than 1.5 nm are drawn 1.5 nm thick");
}

}  // namespace
}  // namespace zelmo
