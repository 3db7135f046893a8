#include "process_file_fixture.h"

namespace zelmo {
namespace {

using StepCommandsTest = ProcessFileTest;
using Channels = std::array<float, 3>;

Lines InLine4(const Lines& errors) {
    Lines lines;
    for (const std::string& error : errors) {
        lines.push_back("Error in line 4: " + error);
    }
    return lines;
}

const std::string thicknessMessage = "Invalid -thickness argument: Thickness needs to be positive.";
const std::string coverageMessage =
    "Invalid -sc argument: step coverage need to be between 0.0 and 1.0";
const std::string isoMessage =
    "The value of the -iso argument needs to be between 0.0 (anisotropic) and 1.0 (full "
    "isotropic)";
const std::string photoMessage = "photo command not allowed if no preceding strip command";
const std::string stripMessage = "strip command not allowed if no prior photo process";

const std::string photoLine = "photo -name p -mask_id 1 -type 0 -res 0 -thickness 1\n";
TEST_F(StepCommandsTest, ADepositionIsRead) {
    EXPECT_EQ(ReadSteps("deposition -name Ox1 -type oxide -thickness 500 -sc 0.7 "
                        "-color 255 0 0 100 -alpha 0.25\n"),
              Lines{});
    const ProcessStep& step = Step(1);
    EXPECT_EQ(step.kind, StepKind::Deposition);
    EXPECT_EQ(step.material, "Ox1");
    EXPECT_EQ(step.label, "Ox1");
    EXPECT_EQ(step.materialType, "oxide");
    EXPECT_EQ(step.thickness, 0.5f);
    EXPECT_EQ(step.stepCoverage, 0.7f);
    EXPECT_EQ(step.color, (Channels{255.0f * (100.0f / 25500.0f), 0.0f, 0.0f}));
    EXPECT_EQ(step.alpha, 0.25f);
    EXPECT_EQ(step.description, "Ox1 deposition");
    EXPECT_EQ(step.dop, 0.0f);
    EXPECT_EQ(step.processName, "");
    EXPECT_EQ(step.photoName, "");
    EXPECT_TRUE(step.targets.empty());
}

TEST_F(StepCommandsTest, DefaultsOfADeposition) {
    EXPECT_EQ(ReadSteps(oxideLine), Lines{});
    EXPECT_EQ(Step(1).stepCoverage, 0.1f);
    EXPECT_EQ(Step(1).alpha, 1.0f);
}

TEST_F(StepCommandsTest, MessagesOfAnEmptyDepositionComeInTheirOrder) {
    EXPECT_EQ(ReadSteps("deposition\n"),
              InLine4({"Command has no argument", "Argument -name not found",
                       "Argument -type not found", "Argument -thickness not found",
                       thicknessMessage, "Missing -color or -scolor argument"}));
    EXPECT_EQ(Step(1).description, " deposition");
}

TEST_F(StepCommandsTest, MessagesOfAFaultyDepositionComeInTheirOrder) {
    EXPECT_EQ(
        ReadSteps(oxideLine + "deposition -bad -name Ox -type -t -thickness 0 -sc 2 "
                              "-color 256 0 0 0 -alpha 2\n"),
        (Lines{"Error in line 5: Invalid argument -bad", "Error in line 5: Invalid argument -t",
               "Error in line 5: Material Ox in -name argument already defined. Choose "
               "another name.",
               "Error in line 5: Invalid character '-' in argument",
               "Error in line 5: " + thicknessMessage, "Error in line 5: " + coverageMessage,
               "Error in line 5: Invalid value(s) in -color argument",
               "Error in line 5: Invalid -alpha argument"}));
}

TEST_F(StepCommandsTest, StepCoverageBelowATenthIsRaised) {
    for (const char* const value : {"0.05", "-3", "0", "-1e39"}) {
        EXPECT_EQ(ReadSteps(std::string("deposition -name a -type t -thickness 1 -color 1 2 3 4 "
                                        "-sc ") +
                            value + "\n"),
                  Lines{});
        EXPECT_EQ(Step(1).stepCoverage, 0.1f) << value;
    }
}

TEST_F(StepCommandsTest, StepCoverageAboveOneIsReported) {
    const std::string line = "deposition -name a -type t -thickness 1 -color 1 2 3 4 -sc ";
    EXPECT_EQ(ReadSteps(line + "1.5\n"), InLine4({coverageMessage}));
    EXPECT_EQ(Step(1).stepCoverage, 1.5f);
    EXPECT_EQ(ReadSteps(line + "1\n"), Lines{});
    EXPECT_EQ(Step(1).stepCoverage, 1.0f);
}

TEST_F(StepCommandsTest, StepCoverageIsFoundInsideScolor) {
    const Lines noNumber = InLine4({"No decimal number found reading -sc argument"});
    EXPECT_EQ(ReadSteps("deposition -name a -type t -thickness 1 -scolor navy\n"), noNumber);
    EXPECT_EQ(Step(1).stepCoverage, 0.1f);
    EXPECT_EQ(Step(1).color, (Channels{0.0f, 0.0f, 128.0f / 255.0f}));
    EXPECT_EQ(ReadSteps("deposition -name a -type t -thickness 1 -sc 0.5 -scolor navy\n"), Lines{});
    EXPECT_EQ(Step(1).stepCoverage, 0.5f);
    EXPECT_EQ(ReadSteps("deposition -name a -type t -thickness 1 -scolor navy -sc 0.5\n"),
              noNumber);
    EXPECT_EQ(Step(1).stepCoverage, 0.1f);
}

TEST_F(StepCommandsTest, UnknownColorNamesHaveATextForEachCommand) {
    EXPECT_EQ(ReadSteps("deposition -name a -type t -thickness 1 -sc 1 -scolor nosuchcolor\n"),
              InLine4({"Color name is not a recognized X11 color"}));
    EXPECT_EQ(ReadSteps("coating -name a -type t -thickness 1 -scolor nosuchcolor\n"),
              InLine4({"Color name is unrecognized"}));
    EXPECT_EQ(ReadSteps("coating -name a -type t -thickness 1 -scolor navy\n"), Lines{});
    EXPECT_EQ(Step(1).color, (Channels{0.0f, 0.0f, 128.0f / 255.0f}));
}

TEST_F(StepCommandsTest, ANumericColorHidesAnUnknownName) {
    EXPECT_EQ(ReadSteps("coating -name a -type t -thickness 1 -scolor nosuchcolor "
                        "-color 255 0 0 100\n"),
              Lines{});
    EXPECT_EQ(Step(1).color[0], 255.0f * (100.0f / 25500.0f));
}

TEST_F(StepCommandsTest, AlphaLiesBetween0And1) {
    const std::string line = "coating -name a -type t -thickness 1 -color 1 2 3 4 -alpha ";
    for (const char* const value : {"0", "0.5", "1"}) {
        EXPECT_EQ(ReadSteps(line + value + "\n"), Lines{}) << value;
    }
    EXPECT_EQ(ReadSteps(line + "-0.1\n"), InLine4({"Invalid -alpha argument"}));
    EXPECT_EQ(Step(1).alpha, -0.1f);
    EXPECT_EQ(ReadSteps(line + "1.1\n"), InLine4({"Invalid -alpha argument"}));
    EXPECT_EQ(ReadSteps(line + "x\n"),
              InLine4({"No decimal number found reading -alpha argument"}));
    EXPECT_EQ(Step(1).alpha, 0.0f);
}

TEST_F(StepCommandsTest, ACoatingIsRead) {
    EXPECT_EQ(ReadSteps("coating -name Sog -type glass -thickness 250 -dop 0.5 "
                        "-color 0 255 0 100 -alpha 0.75\n"),
              Lines{});
    const ProcessStep& step = Step(1);
    EXPECT_EQ(step.kind, StepKind::Coating);
    EXPECT_EQ(step.material, "Sog");
    EXPECT_EQ(step.label, "Sog");
    EXPECT_EQ(step.materialType, "glass");
    EXPECT_EQ(step.thickness, 0.25f);
    EXPECT_EQ(step.dop, 0.5f);
    EXPECT_EQ(step.alpha, 0.75f);
    EXPECT_EQ(step.stepCoverage, 0.0f);
    EXPECT_EQ(step.description, "Sog coating");
}

TEST_F(StepCommandsTest, PlanarisationLiesBetween0And1) {
    const std::string line = "coating -name a -type t -thickness 1 -color 1 2 3 4";
    EXPECT_EQ(ReadSteps(line + "\n"), Lines{});
    EXPECT_EQ(Step(1).dop, 1.0f);
    EXPECT_EQ(ReadSteps(line + " -dop 0\n"), Lines{});
    EXPECT_EQ(Step(1).dop, 0.0f);
    EXPECT_EQ(ReadSteps(line + " -dop 1.01\n"), InLine4({"Invalid -dop argument"}));
    EXPECT_EQ(ReadSteps(line + " -dop -1\n"), InLine4({"Invalid -dop argument"}));
    EXPECT_EQ(ReadSteps(line + " -dop x\n"),
              InLine4({"No decimal number found reading -dop argument"}));
    EXPECT_EQ(Step(1).dop, 0.0f);
}

TEST_F(StepCommandsTest, MessagesOfAnEmptyCoatingComeInTheirOrder) {
    EXPECT_EQ(ReadSteps("coating\n"),
              InLine4({"Command has no argument", "Argument -name not found",
                       "Argument -type not found", "Argument -thickness not found",
                       thicknessMessage, "Missing -color or -scolor argument"}));
}

TEST_F(StepCommandsTest, MessagesOfAFaultyCoatingComeInTheirOrder) {
    EXPECT_EQ(
        ReadSteps(oxideLine + "coating -name Ox -type t -thickness -5 -sc 1 -dop 2 "
                              "-scolor none -alpha 2\n"),
        (Lines{"Error in line 5: Invalid argument -sc",
               "Error in line 5: Material Ox in -name argument already defined. Choose "
               "another name.",
               "Error in line 5: " + thicknessMessage, "Error in line 5: Invalid -dop argument",
               "Error in line 5: Color name is unrecognized",
               "Error in line 5: Invalid -alpha argument",
               "Error in line 5: Invalid -thickness argument: Thickness cannot be "
               "negative."}));
}

TEST_F(StepCommandsTest, ANegativeThicknessGivesTwoMessagesInACoatingOnly) {
    const std::string negative = "Invalid -thickness argument: Thickness cannot be negative.";
    EXPECT_EQ(ReadSteps("coating -name a -type t -thickness -5 -color 1 2 3 4\n"),
              InLine4({thicknessMessage, negative}));
    EXPECT_EQ(ReadSteps("coating -name a -type t -thickness 0 -color 1 2 3 4\n"),
              InLine4({thicknessMessage}));
    EXPECT_EQ(ReadSteps("deposition -name a -type t -thickness -5 -color 1 2 3 4\n"),
              InLine4({thicknessMessage}));
    EXPECT_EQ(ReadSteps("photo -name p -mask_id 1 -type 0 -res 0 -thickness -5\n"),
              InLine4({thicknessMessage}));
    EXPECT_EQ(Step(1).thickness, -0.005f);
}

TEST_F(StepCommandsTest, AThicknessThatIsNoNumberGivesTwoMessages) {
    EXPECT_EQ(ReadSteps("coating -name a -type t -thickness abc -color 1 2 3 4\n"),
              InLine4({"No decimal number found reading -thickness argument", thicknessMessage}));
    EXPECT_EQ(ReadSteps("coating -name a -type t -thickness 12abc -color 1 2 3 4\n"), Lines{});
    EXPECT_EQ(Step(1).thickness, 12.0f / 1000.0f);
}

TEST_F(StepCommandsTest, MaterialNamesAreUniqueAmongDepositionsAndCoatings) {
    EXPECT_EQ(ReadSteps(oxideLine + "coating -name Ox -type other -thickness 1 -color 1 2 3 4\n"
                                    "release -name r -targets oxide other\n"),
              Lines{"Error in line 5: Material Ox in -name argument already defined. Choose "
                    "another name."});
    EXPECT_EQ(Step(3).targets, (Lines{"Ox", "Ox"}));
    EXPECT_EQ(ReadSteps(oxideLine + oxideLine + "release -name r -targets oxide\n"),
              Lines{"Error in line 5: Material Ox in -name argument already defined. Choose "
                    "another name."});
    EXPECT_EQ(Step(3).targets, (Lines{"Ox", "Ox"}));
}

TEST_F(StepCommandsTest, AFaultyMaterialEntersTheTableToo) {
    EXPECT_EQ(ReadSteps("deposition -name a -type t -thickness 0 -color 1 2 3 4\n"
                        "release -name r -targets t\n"),
              InLine4({thicknessMessage}));
    EXPECT_EQ(Step(2).targets, Lines{"a"});
}

TEST_F(StepCommandsTest, NamesAloneTellNothingApartButCase) {
    EXPECT_EQ(ReadSteps(oxideLine + "deposition -name ox -type oxide -thickness 1 "
                                    "-color 1 2 3 4\n"),
              Lines{});
}

TEST_F(StepCommandsTest, APhotoIsRead) {
    EXPECT_EQ(ReadSteps("photo -name Gate -mask_id 12 -type 1 -res 0.5 -thickness 1000 "
                        "-taper 75\n"),
              Lines{});
    const ProcessStep& step = Step(1);
    EXPECT_EQ(step.kind, StepKind::Photo);
    EXPECT_EQ(step.material, "PR");
    EXPECT_EQ(step.label, "PR");
    EXPECT_EQ(step.materialType, "");
    EXPECT_EQ(step.photoName, "Gate");
    EXPECT_EQ(step.processName, "");
    EXPECT_EQ(step.mask, (std::vector<MaskLayer>{{12, std::nullopt}}));
    EXPECT_TRUE(step.maskDark);
    EXPECT_EQ(step.res, 0.5f);
    EXPECT_EQ(step.thickness, 1.0f);
    EXPECT_EQ(step.taper, 75.0f);
    EXPECT_EQ(step.color, (Channels{0.8f, 0.8f, 0.9f}));
    EXPECT_EQ(step.alpha, 1.0f);
    EXPECT_EQ(step.description, "Gate photo");
}

TEST_F(StepCommandsTest, DefaultsOfAPhoto) {
    EXPECT_EQ(ReadSteps(photoLine), Lines{});
    EXPECT_EQ(Step(1).taper, 60.0f);
    EXPECT_FALSE(Step(1).maskDark);
    EXPECT_EQ(Step(1).res, 0.0f);
}

TEST_F(StepCommandsTest, MessagesOfAnEmptyPhotoComeInTheirOrder) {
    EXPECT_EQ(ReadSteps("photo\n"), InLine4({"Command has no argument", "Argument -name not found",
                                             "Argument -mask_id not found",
                                             "Argument -type not found", "Argument -res not found",
                                             "Argument -thickness not found", thicknessMessage}));
}

TEST_F(StepCommandsTest, MessagesOfAFaultyPhotoComeInTheirOrder) {
    EXPECT_EQ(ReadSteps(photoLine + "photo -color 1 -name -n -mask_id 65536 -type 2 -res -1 "
                                    "-thickness 0 -taper x\n"),
              (Lines{"Error in line 5: Invalid argument -color",
                     "Error in line 5: Invalid argument -n", "Error in line 5: " + photoMessage,
                     "Error in line 5: Invalid character '-' in argument",
                     "Error in line 5: Invalid -mask_id value",
                     "Error in line 5: Invalid -type argument: mask type needs to be  1 (dark "
                     "type) or 0 (clear type)",
                     "Error in line 5: Invalid -res argument: needs to be a positive decimal "
                     "number or 0.0",
                     "Error in line 5: " + thicknessMessage,
                     "Error in line 5: Non integer value or values found reading argument "
                     "-taper"}));
    EXPECT_TRUE(Step(2).maskDark);
    EXPECT_EQ(Step(2).mask, (std::vector<MaskLayer>{{65536, std::nullopt}}));
    EXPECT_EQ(Step(2).taper, 0.0f);
}

TEST_F(StepCommandsTest, MaskNumbersGoUpTo65535) {
    const auto withMask = [](const std::string& id) {
        return "photo -name p -mask_id " + id + " -type 0 -res 0 -thickness 1\n";
    };
    EXPECT_EQ(ReadSteps(withMask("65535")), Lines{});
    EXPECT_EQ(Step(1).mask, (std::vector<MaskLayer>{{65535, std::nullopt}}));
    EXPECT_EQ(ReadSteps(withMask("0")), Lines{});
    EXPECT_EQ(ReadSteps(withMask("65536")), InLine4({"Invalid -mask_id value"}));
    EXPECT_EQ(ReadSteps(withMask("-1")),
              InLine4({"Not enough integer values found reading argument -mask_id"}));
    EXPECT_TRUE(Step(1).mask.empty());
}

TEST_F(StepCommandsTest, ATaperOf120PassesTheReader) {
    EXPECT_EQ(ReadSteps("photo -name p -mask_id 1 -type 0 -res 0 -thickness 1 -taper 120\n"),
              Lines{});
    EXPECT_EQ(Step(1).taper, 120.0f);
}

TEST_F(StepCommandsTest, PhotoNamesNeedNotBeUnique) {
    EXPECT_EQ(ReadSteps(photoLine + "strip -name s\n" + photoLine), Lines{});
}

TEST_F(StepCommandsTest, PhotoAndStripAlternate) {
    EXPECT_EQ(ReadSteps(photoLine + photoLine), Lines{"Error in line 5: " + photoMessage});
    EXPECT_EQ(ReadSteps(photoLine + photoLine + photoLine),
              (Lines{"Error in line 5: " + photoMessage, "Error in line 6: " + photoMessage}));
    EXPECT_EQ(ReadSteps("strip -name s\n"), InLine4({stripMessage}));
    EXPECT_EQ(ReadSteps("strip -name s\n" + photoLine + oxideLine +
                        "strip -name t\n"
                        "strip -name u\n"),
              (Lines{"Error in line 4: " + stripMessage, "Error in line 8: " + stripMessage}));
    EXPECT_EQ(ReadSteps(photoLine + photoLine + "strip -name s\n"),
              Lines{"Error in line 5: " + photoMessage});
}

TEST_F(StepCommandsTest, AnEtchIsRead) {
    EXPECT_EQ(ReadSteps(oxideLine + "deposition -name M1 -type metal -thickness 1 -color 1 2 3 4\n"
                                    "coating -name Sog -type oxide -thickness 1 -color 1 2 3 4\n"
                                    "etch -name Open -targets metal oxide -depth 250 -iso 0.5\n"),
              Lines{});
    const ProcessStep& step = Step(4);
    EXPECT_EQ(step.kind, StepKind::Etch);
    EXPECT_EQ(step.processName, "Open");
    EXPECT_EQ(step.targets, (Lines{"M1", "Ox", "Sog"}));
    EXPECT_EQ(step.depth, 0.25f);
    EXPECT_EQ(step.iso, 0.5f);
    EXPECT_EQ(step.description, "Open etching");
    EXPECT_EQ(step.material, "");
    EXPECT_EQ(step.label, "");
    EXPECT_EQ(step.alpha, 0.0f);
}

TEST_F(StepCommandsTest, MessagesOfAnEmptyEtchComeInTheirOrder) {
    EXPECT_EQ(
        ReadSteps("etch\n"),
        InLine4({"Command has no argument", "Argument -name not found", "Argument -depth not found",
                 "Argument -targets not found", "Argument -iso not found"}));
}

TEST_F(StepCommandsTest, MessagesOfAFaultyEtchComeInTheirOrder) {
    EXPECT_EQ(ReadSteps(oxideLine + "etch -name A -targets oxide -depth 1 -iso 0\n"
                                    "etch -name A -targets foo -depth -1 -iso 6 -bad\n"),
              (Lines{"Error in line 6: Invalid argument -bad",
                     "Error in line 6: Invalid -depth argument: Depth cannot be negative.",
                     "Error in line 6: Step name of etch process A already exists",
                     "Error in line 6: Target etch type foo is undefined",
                     "Error in line 6: " + isoMessage}));
    EXPECT_EQ(Step(3).depth, -0.001f);
    EXPECT_EQ(Step(3).iso, 6.0f);
}

TEST_F(StepCommandsTest, IsotropyUpTo5Passes) {
    const std::string line = oxideLine + "etch -name A -targets oxide -depth 1 -iso ";
    for (const char* const value : {"0", "1", "3.0", "5"}) {
        EXPECT_EQ(ReadSteps(line + value + "\n"), Lines{}) << value;
    }
    EXPECT_EQ(ReadSteps(line + "5.5\n"), Lines{"Error in line 5: " + isoMessage});
    EXPECT_EQ(ReadSteps(line + "-0.1\n"), Lines{"Error in line 5: " + isoMessage});
}

TEST_F(StepCommandsTest, AnEtchDepthOfZeroPassesAndKeepsItsName) {
    EXPECT_EQ(ReadSteps(oxideLine + "etch -name A -targets oxide -depth 0 -iso 0\n"), Lines{});
    EXPECT_EQ(Step(2).depth, 0.0f);
    EXPECT_EQ(Step(2).processName, "A");
}

TEST_F(StepCommandsTest, TargetsMustBeDefinedOnAnEarlierLine) {
    EXPECT_EQ(ReadSteps("etch -name A -targets nitride -depth 1 -iso 0\n"
                        "deposition -name N -type nitride -thickness 1 -color 1 2 3 4\n"),
              InLine4({"Target etch type nitride is undefined"}));
    EXPECT_TRUE(Step(1).targets.empty());
}

TEST_F(StepCommandsTest, TargetsDirectlyBeforeAnotherArgumentAreNoneAndPass) {
    EXPECT_EQ(ReadSteps("etch -name A -targets -depth 100 -iso 0\n"), Lines{});
    EXPECT_TRUE(Step(1).targets.empty());
    EXPECT_EQ(Step(1).depth, 0.1f);
}

TEST_F(StepCommandsTest, ResistCannotBeATarget) {
    EXPECT_EQ(ReadSteps(photoLine + "etch -name A -targets PR -depth 1 -iso 0\n"),
              Lines{"Error in line 5: Target etch type PR is undefined"});
}

TEST_F(StepCommandsTest, AReleaseIsRead) {
    EXPECT_EQ(ReadSteps(oxideLine + "release -name Free -targets oxide\n"), Lines{});
    const ProcessStep& step = Step(2);
    EXPECT_EQ(step.kind, StepKind::Release);
    EXPECT_EQ(step.processName, "Free");
    EXPECT_EQ(step.targets, Lines{"Ox"});
    EXPECT_EQ(step.description, "Free release etch");
}

TEST_F(StepCommandsTest, MessagesOfAReleaseComeInTheirOrder) {
    EXPECT_EQ(ReadSteps("release\n"),
              InLine4({"Command has no argument", "Argument -name not found",
                       "Argument -targets not found"}));
    EXPECT_EQ(ReadSteps(oxideLine + "release -name A -targets oxide\n"
                                    "release -name A -targets -foo\n"
                                    "release -name A -targets\n"),
              (Lines{"Error in line 6: Invalid argument -foo",
                     "Error in line 6: Step name of release process A already exists",
                     "Error in line 7: Step name of release process A already exists",
                     "Error in line 7: No targets found reading -targets argument: provide at "
                     "least one target"}));
}

TEST_F(StepCommandsTest, AStripIsRead) {
    EXPECT_EQ(ReadSteps(photoLine + "strip -name Ash\n"), Lines{});
    const ProcessStep& step = Step(2);
    EXPECT_EQ(step.kind, StepKind::Strip);
    EXPECT_EQ(step.processName, "Ash");
    EXPECT_EQ(step.description, "Ash photoresist strip");
    EXPECT_EQ(step.material, "");
}

TEST_F(StepCommandsTest, AStripAloneOnItsLineMissesItsName) {
    EXPECT_EQ(ReadSteps(photoLine + "strip\n"),
              (Lines{"Error in line 5: Command has no argument",
                     "Error in line 5: Argument -name not found"}));
}

TEST_F(StepCommandsTest, MessagesOfAFaultyStripComeInTheirOrder) {
    EXPECT_EQ(ReadSteps(photoLine + "strip -name A\n"
                                    "strip -bad -name A\n"),
              (Lines{"Error in line 6: " + stripMessage, "Error in line 6: Invalid argument -bad",
                     "Error in line 6: Step name of strip process A already exists"}));
}

TEST_F(StepCommandsTest, OneNameServesOneStepOfEachCommand) {
    EXPECT_EQ(ReadSteps("deposition -name A -type t -thickness 1 -color 1 2 3 4\n"
                        "photo -name A -mask_id 1 -type 0 -res 0 -thickness 1\n"
                        "etch -name A -targets t -depth 1 -iso 0\n"
                        "release -name A -targets t\n"
                        "strip -name A\n"),
              Lines{});
    EXPECT_TRUE(Accepted());
}

}  // namespace
}  // namespace zelmo
