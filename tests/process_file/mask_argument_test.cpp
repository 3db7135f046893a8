#include "process_file_fixture.h"

// What stands behind the -mask_id of a photo.

namespace zelmo {
namespace {

using Mask = std::vector<MaskLayer>;

constexpr std::nullopt_t all = std::nullopt;

class MaskArgumentTest : public ProcessFileTest {
protected:
    Lines ReadMask(const std::string& mask) {
        return ReadSteps("photo -name P -mask_id " + mask + " -type 1 -res 0 -thickness 1\n");
    }

    /// The one error of a photo of that mask.
    std::string Refusal(const std::string& mask) {
        const Lines lines = ReadMask(mask);
        EXPECT_EQ(lines.size(), 1u) << mask;
        const std::string start = "Error in line 4: ";
        EXPECT_EQ(lines.at(0).substr(0, start.size()), start);
        return lines.at(0).substr(start.size());
    }
};

const std::string nonInteger = "Non integer value or values found reading argument -mask_id";

TEST_F(MaskArgumentTest, ANumberStandsForAllDatatypesOfALayer) {
    EXPECT_EQ(ReadMask("66"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{66, all}}));
    EXPECT_EQ(ReadMask("0"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{0, all}}));
    EXPECT_EQ(ReadMask("000066"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{66, all}}));
}

TEST_F(MaskArgumentTest, APairIsALayerAndADatatype) {
    EXPECT_EQ(ReadMask("66/20"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{66, 20}}));
    EXPECT_EQ(ReadMask("0/0"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{0, 0}}));
    EXPECT_EQ(ReadMask("65535/65535"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{65535, 65535}}));
    EXPECT_EQ(ReadMask("066/020"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{66, 20}}));
}

TEST_F(MaskArgumentTest, CommasJoinNumbersAndPairs) {
    EXPECT_EQ(ReadMask("65/20,65/44"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{65, 20}, {65, 44}}));
    EXPECT_EQ(ReadMask("65,66/20,67"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{65, all}, {66, 20}, {67, all}}));
    EXPECT_EQ(ReadMask("5,5"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{5, all}, {5, all}}));
}

TEST_F(MaskArgumentTest, AListAsLongAsALineIsRead) {
    std::string list = "1/0";
    for (int layer = 2; layer <= 150; ++layer) {
        list += ',';
        list += std::to_string(layer);
        list += "/0";
    }
    EXPECT_EQ(ReadMask(list), Lines{});
    ASSERT_EQ(Step(1).mask.size(), 150u);
    EXPECT_EQ(Step(1).mask.back(), (MaskLayer{150, 0}));
}

TEST_F(MaskArgumentTest, MayStandAnywhereInTheLine) {
    EXPECT_EQ(ReadSteps("photo -mask_id 66/20,65/44 -name P -type 1 -res 0 -thickness 1\n"),
              Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{66, 20}, {65, 44}}));
    EXPECT_EQ(ReadSteps("photo -name P -type 1 -res 0 -thickness 1 -mask_id   66/20\n"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{66, 20}}));
}

TEST_F(MaskArgumentTest, WhatIsNoListHasTheMessageOfWhatIsNoNumber) {
    for (const char* mask :
         {"66/",     "/20",          "/",     "66//20",       "66/20/1", "66/-1",
          "66/20,",  ",66/20",       ",",     "66/20,,65/44", "66/a",    "a/20",
          "66/20,b", "66.5",         "66:20", "66/20;65",     "66/+20",  "0x42/20",
          "66/2e1",  "66/20,65/44,", "66\t",  "66/20\t"}) {
        EXPECT_EQ(Refusal(mask), nonInteger) << mask;
        EXPECT_TRUE(Step(1).mask.empty()) << mask;
    }
}

TEST_F(MaskArgumentTest, AListEndsAtABlank) {
    EXPECT_EQ(Refusal("66/20, 65/44"), nonInteger);
    EXPECT_EQ(ReadMask("66/20 ,65/44"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{66, 20}}));
    EXPECT_EQ(ReadMask("66 /20"), Lines{});
    EXPECT_EQ(Step(1).mask, (Mask{{66, all}}));
}

TEST_F(MaskArgumentTest, ASignOrAMissingListHasTheMessagesOfNumbers) {
    EXPECT_EQ(Refusal("-66/20"), "Not enough integer values found reading argument -mask_id");
    EXPECT_EQ(ReadSteps("photo -name P -type 1 -res 0 -thickness 1 -mask_id\n"),
              Lines{"Error in line 4: No integer value or values found reading argument -mask_id"});
    EXPECT_EQ(ReadSteps("photo -name P -type 1 -res 0 -thickness 1\n"),
              Lines{"Error in line 4: Argument -mask_id not found"});
}

TEST_F(MaskArgumentTest, NumbersAbove65535AreInvalidAndToldOnce) {
    for (const char* mask :
         {"65536", "65536/0", "0/65536", "66/20,65536", "66/20,1/65536,65536/1", "65536/65536",
          "99999999999", "1/99999999999999999999999", "4294967296/20", "66/4294967316"}) {
        EXPECT_EQ(Refusal(mask), "Invalid -mask_id value") << mask;
    }
}

}  // namespace
}  // namespace zelmo
