#include "process_file_fixture.h"

// The arguments of photos and etches that came later than the others: -bias, -shift and -resist.

namespace zelmo {
namespace {

class AddedArgumentsTest : public ProcessFileTest {
protected:
    /// Reads a photo and an etch with these words behind their other arguments.
    Lines ReadWith(const std::string& photo, const std::string& etch = "") {
        return ReadSteps("photo -name P -mask_id 1 -type 1 -res 0 -thickness 1 " + photo +
                         "\netch -name E -targets -depth 100 -iso 0 " + etch + "\n");
    }
    const MaskAdjustment& Adjustment() const { return Step(1).adjustment; }
};

TEST_F(AddedArgumentsTest, ChangeNothingWhereTheyAreMissing) {
    EXPECT_EQ(ReadWith(""), Lines{});
    EXPECT_EQ(Adjustment(), MaskAdjustment());
    EXPECT_EQ(Step(2).resistRate, 1.0f);
}

TEST_F(AddedArgumentsTest, BiasAndShiftAreMicrometres) {
    EXPECT_EQ(ReadWith("-bias 0.025 -shift -0.5 1.5e-2"), Lines{});
    EXPECT_EQ(Adjustment(), (MaskAdjustment{0.025f, -0.5f, 0.015f}));
    EXPECT_EQ(ReadWith("-shift 1 -2"), Lines{});
    EXPECT_EQ(Adjustment(), (MaskAdjustment{0.0f, 1.0f, -2.0f}));
    EXPECT_EQ(ReadWith("-bias -.5"), Lines{});
    EXPECT_EQ(Adjustment(), (MaskAdjustment{-0.5f, 0.0f, 0.0f}));
    EXPECT_EQ(ReadWith("-bias 0 -shift 0 -0.0"), Lines{});
    EXPECT_EQ(Adjustment(), MaskAdjustment());
}

TEST_F(AddedArgumentsTest, BiasAndShiftFollowTheUnitOfTheWindow) {
    EXPECT_EQ(Read("settings -version 4 -use_nm\nlocation -x 0 -y 0 -dx 10 -dy 10\n"
                   "gds -cell TOP\nphoto -shift 50 -30 -name P -mask_id 1 -type 1 -bias 20 "
                   "-res 10 -thickness 1\n"),
              Lines{});
    EXPECT_EQ(Adjustment(), (MaskAdjustment{20.0f / 1000.0f, 50.0f / 1000.0f, -30.0f / 1000.0f}));
    EXPECT_EQ(Step(1).res, 10.0f / 1000.0f);
}

TEST_F(AddedArgumentsTest, NumbersOfBiasAndShiftAreReadAsOtherDecimals) {
    EXPECT_EQ(ReadWith("-bias 20nm -shift 1um 2um"), Lines{});
    EXPECT_EQ(Adjustment(), (MaskAdjustment{20.0f, 1.0f, 2.0f}));
    const std::string noBias = "No decimal number found reading -bias argument";
    const std::string noShift = "No decimal number found reading -shift argument";
    EXPECT_EQ(ReadWith("-bias"), InLine(4, {noBias}));
    EXPECT_EQ(ReadWith("-bias x"), InLine(4, {noBias}));
    EXPECT_EQ(ReadWith("-bias -shift 1 2"), InLine(4, {noBias}));
    EXPECT_EQ(ReadWith("-shift"), InLine(4, {noShift}));
    EXPECT_EQ(ReadWith("-shift 1"), InLine(4, {noShift}));
    EXPECT_EQ(ReadWith("-shift 1 -bias 2"), InLine(4, {noShift}));
    EXPECT_EQ(ReadWith("-shift x 1"), InLine(4, {noShift}));
    EXPECT_EQ(Adjustment(), MaskAdjustment());
}

TEST_F(AddedArgumentsTest, TheFirstOfTwoCounts) {
    EXPECT_EQ(ReadWith("-bias 1 -bias 2 -shift 3 4 -shift 5 6", "-resist 0.5 -resist 2"), Lines{});
    EXPECT_EQ(Adjustment(), (MaskAdjustment{1.0f, 3.0f, 4.0f}));
    EXPECT_EQ(Step(2).resistRate, 0.5f);
}

TEST_F(AddedArgumentsTest, ResistIsAShare) {
    for (const char* rate : {"0", "0.0", "0.25", "1.0", "1"}) {
        EXPECT_EQ(ReadWith("", std::string("-resist ") + rate), Lines{}) << rate;
        EXPECT_EQ(Step(2).resistRate, std::stof(rate)) << rate;
    }
    for (const char* rate : {"-0.01", "1.001", "2", "1e39", "-1e39"}) {
        EXPECT_EQ(ReadWith("", std::string("-resist ") + rate),
                  InLine(5, {"Invalid -resist argument: rate needs to be between 0.0 and 1.0"}))
            << rate;
    }
    EXPECT_EQ(ReadWith("", "-resist"),
              InLine(5, {"No decimal number found reading -resist argument"}));
    EXPECT_EQ(ReadWith("", "-resist x"),
              InLine(5, {"No decimal number found reading -resist argument"}));
}

TEST_F(AddedArgumentsTest, TheResistsRateIsToldAfterTheOthers) {
    EXPECT_EQ(ReadSteps("photo -name P -mask_id 1 -type 1 -res 0 -thickness 1\n"
                        "etch -resist 7 -name E -targets -depth -1 -iso 9\n"),
              (Lines{"Error in line 5: Invalid -depth argument: Depth cannot be negative.",
                     "Error in line 5: The value of the -iso argument needs to be between 0.0 "
                     "(anisotropic) and 1.0 (full isotropic)",
                     "Error in line 5: Invalid -resist argument: rate needs to be between 0.0 and "
                     "1.0"}));
}

TEST_F(AddedArgumentsTest, ANameThatHoldsTheirTextIsNoneOfThem) {
    EXPECT_EQ(ReadSteps("photo -name N-bias -mask_id 1 -type 1 -res 0 -thickness 1\n"
                        "strip -name S\n"
                        "photo -name N-shift -mask_id 1 -type 1 -res 0 -thickness 1 -bias 2\n"
                        "etch -name Photo-resist -targets -depth 100 -iso 0\n"
                        "etch -name x-resist -resist 0.5 -targets -depth 100 -iso 0\n"),
              Lines{});
    EXPECT_EQ(Step(1).adjustment, MaskAdjustment());
    EXPECT_EQ(Step(3).adjustment, (MaskAdjustment{2.0f, 0.0f, 0.0f}));
    EXPECT_EQ(Step(4).resistRate, 1.0f);
    EXPECT_EQ(Step(5).resistRate, 0.5f);
}

TEST_F(AddedArgumentsTest, BelongToTheirCommandsOnly) {
    EXPECT_EQ(ReadWith("-resist 0.5"), InLine(4, {"Invalid argument -resist"}));
    EXPECT_EQ(ReadWith("", "-bias 1"), InLine(5, {"Invalid argument -bias"}));
    EXPECT_EQ(ReadSteps("release -name R -targets -resist 1\n"),
              InLine(4, {"Invalid argument -resist"}));
    EXPECT_EQ(ReadSteps("deposition -name D -type t -thickness 1 -color 1 2 3 4 -shift 1 1\n"),
              InLine(4, {"Invalid argument -shift"}));
}

}  // namespace
}  // namespace zelmo
