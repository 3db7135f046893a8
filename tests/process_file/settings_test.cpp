#include "process_file_fixture.h"

namespace zelmo {
namespace {

/// The three commands that make no step.
class SettingsTest : public ProcessFileTest {
protected:
    Lines ReadSettingsLine(const std::string& arguments) {
        return Read("settings " + arguments +
                    "\nlocation -x 0 -y 0 -dx 10 -dy 10\ngds -cell TOP\n");
    }
    Lines ReadLocationLine(const std::string& arguments, const std::string& flags = "") {
        return Read("settings -version 4 " + flags + "\nlocation " + arguments +
                    "\ngds -cell TOP\n");
    }
};

const std::string wrongVersion =
    "This version of Zelmo is only compatible with process files with version 4.";
const std::string wrongColumns = "Value of -N argument needs to be between 200 and 2000";
const std::string wrongAngle = "Camera angle should be between 0 and 40 degrees";

TEST_F(SettingsTest, DefaultsOfAllSettings) {
    EXPECT_EQ(ReadSettingsLine("-version 4"), Lines{});
    EXPECT_TRUE(Accepted());
    EXPECT_EQ(file.settings.gridColumns, 1000);
    EXPECT_EQ(file.settings.cameraAngle, 30.0f);
    EXPECT_FALSE(file.settings.showHeights);
    EXPECT_FALSE(file.settings.showLegend);
}

TEST_F(SettingsTest, AllSettingsAreRead) {
    EXPECT_EQ(ReadSettingsLine("-legend -N 250 -heights -angle 12 -use_nm -version 4"), Lines{});
    EXPECT_EQ(file.settings.gridColumns, 250);
    EXPECT_EQ(file.settings.cameraAngle, 12.0f);
    EXPECT_TRUE(file.settings.showHeights);
    EXPECT_TRUE(file.settings.showLegend);
    EXPECT_EQ(file.settings.windowWidth, 0.01f);
}

TEST_F(SettingsTest, AFlagCountsWhereverItsTextStands) {
    EXPECT_EQ(ReadSettingsLine("-version 4 x-heights-legend"), Lines{});
    EXPECT_TRUE(file.settings.showHeights);
    EXPECT_TRUE(file.settings.showLegend);
    EXPECT_EQ(ReadSettingsLine("-version 4 a-use_nm"), Lines{});
    EXPECT_EQ(file.settings.windowWidth, 0.01f);
    EXPECT_EQ(ReadSettingsLine("-version 4 -Legend -use_n"),
              (Lines{"Error in line 1: Invalid argument -Legend",
                     "Error in line 1: Invalid argument -use_n"}));
    EXPECT_FALSE(file.settings.showLegend);
    EXPECT_EQ(file.settings.windowWidth, 10.0f);
}

TEST_F(SettingsTest, AMissingVersionIsRefusedWithItsText) {
    EXPECT_EQ(ReadSettingsLine("-N 300"),
              Lines{"Error in line 1: No -version argument given. This version of Zelmo is only "
                    "compatible with process files with version 3."});
    EXPECT_FALSE(Accepted());
    EXPECT_EQ(file.settings.gridColumns, 300);
}

TEST_F(SettingsTest, OnlyVersion4Passes) {
    EXPECT_EQ(ReadSettingsLine("-version 3 -N 300"), Lines{"Error in line 1: " + wrongVersion});
    EXPECT_EQ(file.settings.gridColumns, 300);
    EXPECT_EQ(ReadSettingsLine("-version 5"), Lines{"Error in line 1: " + wrongVersion});
    EXPECT_EQ(ReadSettingsLine("-version 004"), Lines{});
    EXPECT_EQ(ReadSettingsLine("-version"),
              (Lines{"Error in line 1: No integer value or values found reading argument -version",
                     "Error in line 1: " + wrongVersion}));
    EXPECT_EQ(ReadSettingsLine("-version 4.0"),
              (Lines{"Error in line 1: Non integer value or values found reading argument -version",
                     "Error in line 1: " + wrongVersion}));
}

TEST_F(SettingsTest, GridColumnsLieBetween200And2000) {
    EXPECT_EQ(ReadSettingsLine("-version 4 -N 200"), Lines{});
    EXPECT_EQ(file.settings.gridColumns, 200);
    EXPECT_EQ(ReadSettingsLine("-version 4 -N 2000"), Lines{});
    EXPECT_EQ(file.settings.gridColumns, 2000);
    EXPECT_EQ(ReadSettingsLine("-version 4 -N 199"), Lines{"Error in line 1: " + wrongColumns});
    EXPECT_EQ(file.settings.gridColumns, 199);
    EXPECT_EQ(ReadSettingsLine("-version 4 -N 2001"), Lines{"Error in line 1: " + wrongColumns});
    EXPECT_EQ(file.settings.gridColumns, 2001);
}

TEST_F(SettingsTest, GridColumnsThatAreNoIntegerGiveTwoMessages) {
    EXPECT_EQ(ReadSettingsLine("-version 4 -N 12.5"),
              (Lines{"Error in line 1: Non integer value or values found reading argument -N",
                     "Error in line 1: " + wrongColumns}));
    EXPECT_EQ(file.settings.gridColumns, 0);
}

TEST_F(SettingsTest, OfTwoGridColumnsTheFirstCounts) {
    EXPECT_EQ(ReadSettingsLine("-version 4 -N 1000 -N 2000"), Lines{});
    EXPECT_EQ(file.settings.gridColumns, 1000);
}

TEST_F(SettingsTest, IntegersOfTooManyDigitsSaturate) {
    EXPECT_EQ(ReadSettingsLine("-version 4 -N 99999999999999999999"),
              Lines{"Error in line 1: " + wrongColumns});
    EXPECT_EQ(file.settings.gridColumns, 2147483647);
    EXPECT_EQ(ReadSettingsLine("-version 4 -N 2147483648"),
              Lines{"Error in line 1: " + wrongColumns});
    EXPECT_EQ(file.settings.gridColumns, 2147483647);
    EXPECT_EQ(ReadSettingsLine("-version 4294967300"), Lines{"Error in line 1: " + wrongVersion});
}

TEST_F(SettingsTest, AnglesUpTo90PassAndEndAt89) {
    EXPECT_EQ(ReadSettingsLine("-version 4 -angle 0"), Lines{});
    EXPECT_EQ(file.settings.cameraAngle, 0.0f);
    EXPECT_EQ(ReadSettingsLine("-version 4 -angle 45"), Lines{});
    EXPECT_EQ(file.settings.cameraAngle, 45.0f);
    EXPECT_EQ(ReadSettingsLine("-version 4 -angle 89"), Lines{});
    EXPECT_EQ(file.settings.cameraAngle, 89.0f);
    EXPECT_EQ(ReadSettingsLine("-version 4 -angle 90"), Lines{});
    EXPECT_EQ(file.settings.cameraAngle, 89.0f);
}

TEST_F(SettingsTest, AnglesAbove90AreReportedAndEndAt89) {
    EXPECT_EQ(ReadSettingsLine("-version 4 -angle 91"), Lines{"Error in line 1: " + wrongAngle});
    EXPECT_EQ(file.settings.cameraAngle, 89.0f);
    EXPECT_FALSE(Accepted());
}

TEST_F(SettingsTest, AnAngleThatIsNoIntegerIsZero) {
    EXPECT_EQ(ReadSettingsLine("-version 4 -angle 40.5"),
              Lines{"Error in line 1: Non integer value or values found reading argument -angle"});
    EXPECT_EQ(file.settings.cameraAngle, 0.0f);
    EXPECT_EQ(ReadSettingsLine("-version 4 -angle -5"),
              Lines{"Error in line 1: Not enough integer values found reading argument -angle"});
    EXPECT_EQ(file.settings.cameraAngle, 0.0f);
}

TEST_F(SettingsTest, MessagesOfSettingsComeInTheirOrder) {
    EXPECT_EQ(ReadSettingsLine("-legend -bad -N 1 -angle 100 -version 1"),
              (Lines{"Error in line 1: Invalid argument -bad", "Error in line 1: " + wrongVersion,
                     "Error in line 1: " + wrongColumns, "Error in line 1: " + wrongAngle}));
    EXPECT_TRUE(file.settings.showLegend);
}

TEST_F(SettingsTest, ALocationIsRead) {
    EXPECT_EQ(ReadLocationLine("-x -12.5 -y 250 -dx 40 -dy 20.25"), Lines{});
    EXPECT_EQ(file.settings.windowX, -12.5f);
    EXPECT_EQ(file.settings.windowY, 250.0f);
    EXPECT_EQ(file.settings.windowWidth, 40.0f);
    EXPECT_EQ(file.settings.windowHeight, 20.25f);
}

TEST_F(SettingsTest, TheWindowIsNeverHigherThanWide) {
    EXPECT_EQ(ReadLocationLine("-x 0 -y 0 -dx 10 -dy 11"), Lines{});
    EXPECT_TRUE(Accepted());
    EXPECT_EQ(file.settings.windowWidth, 10.0f);
    EXPECT_EQ(file.settings.windowHeight, 10.0f);
}

TEST_F(SettingsTest, AFlatWindowKeepsItsHeight) {
    EXPECT_EQ(ReadLocationLine("-x 0 -y 0 -dx 10 -dy 0.001"), Lines{});
    EXPECT_EQ(file.settings.windowHeight, 0.001f);
}

TEST_F(SettingsTest, AWindowWithoutWidthIsRefused) {
    EXPECT_EQ(ReadLocationLine("-x 0 -y 0 -dx 0 -dy 5"),
              Lines{"Error in line 2: Invalid -dx argument"});
    EXPECT_EQ(file.settings.windowHeight, 0.0f);
    EXPECT_EQ(ReadLocationLine("-x 0 -y 0 -dy 5"),
              (Lines{"Error in line 2: Argument -dx not found",
                     "Error in line 2: Invalid -dx argument"}));
    EXPECT_FALSE(Accepted());
}

TEST_F(SettingsTest, AWindowWithoutHeightIsRefused) {
    EXPECT_EQ(ReadLocationLine("-x 0 -y 0 -dx 5 -dy 0"),
              Lines{"Error in line 2: Invalid -dy argument"});
    EXPECT_EQ(ReadLocationLine("-x 0 -y 0 -dx 5"),
              (Lines{"Error in line 2: Argument -dy not found",
                     "Error in line 2: Invalid -dy argument"}));
}

TEST_F(SettingsTest, ANegativeHeightIsReportedAndBecomesAQuarterOfTheWidth) {
    EXPECT_EQ(ReadLocationLine("-x 0 -y 0 -dx 8 -dy -1"),
              Lines{"Error in line 2: Invalid -dy argument"});
    EXPECT_EQ(file.settings.windowHeight, 2.0f);
    EXPECT_EQ(ReadLocationLine("-x 0 -y 0 -dx -8 -dy 1"),
              Lines{"Error in line 2: Invalid -dx argument"});
    EXPECT_EQ(file.settings.windowHeight, -2.0f);
}

TEST_F(SettingsTest, NanometresApplyToTheWindowAndTheResolutionOnly) {
    const std::string steps =
        "photo -name p -mask_id 1 -type 0 -res 250 -thickness 1000\n"
        "deposition -name a -type t -thickness 1000 -color 1 2 3 4\n"
        "etch -name e -targets t -depth 1000 -iso 0\n";
    const std::string window = "location -x 500 -y -250 -dx 1000 -dy 750\ngds -cell TOP\n";
    EXPECT_EQ(Read("settings -version 4 -use_nm\n" + window + steps), Lines{});
    EXPECT_EQ(file.settings.windowX, 0.5f);
    EXPECT_EQ(file.settings.windowY, -0.25f);
    EXPECT_EQ(file.settings.windowWidth, 1.0f);
    EXPECT_EQ(file.settings.windowHeight, 0.75f);
    EXPECT_EQ(Step(1).res, 0.25f);
    EXPECT_EQ(Step(1).thickness, 1.0f);
    EXPECT_EQ(Step(2).thickness, 1.0f);
    EXPECT_EQ(Step(3).depth, 1.0f);
    EXPECT_EQ(Read("settings -version 4\n" + window + steps), Lines{});
    EXPECT_EQ(file.settings.windowX, 500.0f);
    EXPECT_EQ(file.settings.windowY, -250.0f);
    EXPECT_EQ(file.settings.windowWidth, 1000.0f);
    EXPECT_EQ(file.settings.windowHeight, 750.0f);
    EXPECT_EQ(Step(1).res, 250.0f);
    EXPECT_EQ(Step(1).thickness, 1.0f);
    EXPECT_EQ(Step(2).thickness, 1.0f);
    EXPECT_EQ(Step(3).depth, 1.0f);
}

TEST_F(SettingsTest, TheUnitIsThatOfTheLastSettingsLine) {
    Read(
        "settings -version 4 -use_nm\nsettings -version 4\n"
        "location -x 0 -y 0 -dx 1000 -dy 1000\ngds -cell TOP\n");
    EXPECT_EQ(file.settings.windowWidth, 1000.0f);
}

TEST_F(SettingsTest, MessagesOfALocationComeInTheirOrder) {
    EXPECT_EQ(
        ReadLocationLine("-y a -dx -2 -foo"),
        (Lines{"Error in line 2: Invalid argument -foo", "Error in line 2: Argument -x not found",
               "Error in line 2: No decimal number found reading -y argument",
               "Error in line 2: Argument -dy not found", "Error in line 2: Invalid -dx argument",
               "Error in line 2: Invalid -dy argument"}));
}

TEST_F(SettingsTest, GdsTakesACellNameAndPassesOtherWordsBy) {
    EXPECT_EQ(Read("settings -version 4\nlocation -x 0 -y 0 -dx 1 -dy 1\n"
                   "gds -foo -cell Top_1 -bar baz\n"),
              Lines{});
    EXPECT_TRUE(Accepted());
    EXPECT_EQ(file.settings.cellName, "Top_1");
}

TEST_F(SettingsTest, GdsWithoutACellNameIsReported) {
    const std::string others = "settings -version 4\nlocation -x 0 -y 0 -dx 1 -dy 1\n";
    EXPECT_EQ(Read(others + "gds\n"), Lines{"Error in line 3: Argument -cell not found"});
    EXPECT_EQ(Read(others + "gds -cell\n"),
              Lines{"Error in line 3: No string found reading -cell argument"});
    EXPECT_EQ(Read(others + "gds -cell -x\n"),
              Lines{"Error in line 3: Invalid character '-' in argument"});
    EXPECT_EQ(file.settings.cellName, "-x");
}

}  // namespace
}  // namespace zelmo
