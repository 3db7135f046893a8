#include "command_line/window_argument.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

WindowChoice Parse(std::string_view text) {
    const WindowArgument argument = ParseWindowArgument(text);
    EXPECT_EQ(argument.failure, "") << text;
    return argument.window;
}

TEST(ParseWindowArgument, ReadsACornerAndASize) {
    EXPECT_EQ(Parse("1,2,3,4"), WindowChoice(GivenWindow{1, 2, 3, 4}));
    EXPECT_EQ(Parse("-0.25,-1e-1,.5,2E1"), WindowChoice(GivenWindow{-0.25f, -0.1f, 0.5f, 20}));
}

TEST(ParseWindowArgument, ReadsFitWithAndWithoutAMargin) {
    EXPECT_EQ(Parse("fit"), WindowChoice(FittedWindow{}));
    EXPECT_EQ(Parse("fit:0"), WindowChoice(FittedWindow{}));
    EXPECT_EQ(Parse("fit:1.5"), WindowChoice(FittedWindow{1.5f}));
}

TEST(ParseWindowArgument, RefusesWhatIsNeither) {
    for (const char* const text :
         {"", ",", "1", "1,2,3", "1,2,3,4,5", "1,2,3,", ",2,3,4", "1,2,3,4um", "1 ,2,3,4",
          "1;2;3;4", "nan,0,1,1", "inf,0,1,1", "1e99,0,1,1", "fits", "FIT", "fit 1", "0x1,2,3,4"}) {
        EXPECT_EQ(ParseWindowArgument(text).failure,
                  "--window: \"" + std::string(text) +
                      "\" is neither X,Y,DX,DY, four numbers in um, nor fit or fit:MARGIN");
    }
}

TEST(ParseWindowArgument, RefusesSizesThatAreNotAboveZero) {
    for (const char* const text : {"1,2,0,4", "1,2,3,0", "1,2,-3,4", "1,2,3,-4"}) {
        EXPECT_EQ(ParseWindowArgument(text).failure,
                  "--window: \"" + std::string(text) + "\" has a DX or DY that is not above 0");
    }
}

TEST(ParseWindowArgument, RefusesMarginsThatAreNoNumberOrBelowZero) {
    for (const char* const text : {"fit:", "fit:-1", "fit:1um", "fit:nan", "fit:1,2"}) {
        EXPECT_EQ(ParseWindowArgument(text).failure,
                  "--window: \"" + std::string(text) +
                      "\" has no margin in um, 0 or more, behind its colon");
    }
}

}  // namespace
}  // namespace zelmo
