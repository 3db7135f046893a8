#include "process_file_fixture.h"

namespace zelmo {
namespace {

using PolishCommandTest = ProcessFileTest;
using ImplantCommandTest = ProcessFileTest;
using Channels = std::array<float, 3>;

const std::string nitrideLine = "coating -name Nit -type nitride -thickness 1 -color 1 2 3 4\n";

TEST_F(PolishCommandTest, APolishToAStopIsRead) {
    EXPECT_EQ(ReadSteps(oxideLine + nitrideLine + "polish -name CMP -stop nitride oxide\n"),
              Lines{});
    const ProcessStep& step = Step(3);
    EXPECT_EQ(step.kind, StepKind::Polish);
    EXPECT_EQ(step.processName, "CMP");
    EXPECT_TRUE(step.polishesToStop);
    EXPECT_EQ(step.targets, (Lines{"Nit", "Ox"}));
    EXPECT_EQ(step.level, 0.0f);
    EXPECT_EQ(step.description, "CMP polishing");
    EXPECT_EQ(step.material, "");
}

TEST_F(PolishCommandTest, ItsPlaneCanLieBelowOrAboveTheStop) {
    EXPECT_EQ(ReadSteps(oxideLine + "polish -name A -stop oxide -over 20\n"
                                    "polish -over 20.5 -stop oxide -name B\n"
                                    "polish -name C -stop oxide -above 300\n"),
              Lines{});
    EXPECT_EQ(Step(2).level, -0.02f);
    EXPECT_EQ(Step(3).level, -0.0205f);
    EXPECT_EQ(Step(4).level, 0.3f);
    EXPECT_EQ(Step(4).targets, Lines{"Ox"});
}

TEST_F(PolishCommandTest, APolishToALevelIsRead) {
    EXPECT_EQ(ReadSteps("polish -name CMP -level 640\n"), Lines{});
    EXPECT_EQ(Step(1).kind, StepKind::Polish);
    EXPECT_FALSE(Step(1).polishesToStop);
    EXPECT_EQ(Step(1).level, 0.64f);
    EXPECT_TRUE(Step(1).targets.empty());
    EXPECT_EQ(ReadSteps("polish -name CMP -level 0\n"), Lines{});
}

TEST_F(PolishCommandTest, UnitsOfTheWindowDoNotTouchIt) {
    EXPECT_EQ(Read("settings -version 4 -use_nm\nlocation -x 0 -y 0 -dx 10 -dy 10\n"
                   "gds -cell TOP\npolish -name CMP -level 640\n"),
              Lines{});
    EXPECT_EQ(Step(1).level, 0.64f);
}

TEST_F(PolishCommandTest, MessagesOfAnEmptyOneComeInTheirOrder) {
    EXPECT_EQ(ReadSteps("polish\n"),
              InLine(4, {"Command has no argument", "Argument -name not found",
                         "Missing -stop or -level argument"}));
    EXPECT_EQ(Step(1).kind, StepKind::Polish);
}

TEST_F(PolishCommandTest, OneOfStopAndLevelIsNeeded) {
    EXPECT_EQ(ReadSteps("polish -name A\n"), InLine(4, {"Missing -stop or -level argument"}));
    EXPECT_EQ(ReadSteps("polish -name A -over 5\n"),
              InLine(4, {"Invalid argument -over", "Missing -stop or -level argument"}));
    EXPECT_EQ(ReadSteps("polish -name A -above 5\n"),
              InLine(4, {"Invalid argument -above", "Missing -stop or -level argument"}));
}

TEST_F(PolishCommandTest, ArgumentsOfTwoWaysDoNotGoTogether) {
    EXPECT_EQ(ReadSteps(oxideLine + "polish -name A -stop oxide -level 5\n"),
              InLine(5, {"Invalid argument -level"}));
    EXPECT_EQ(ReadSteps(oxideLine + "polish -name A -stop oxide -over 5 -above 5\n"),
              InLine(5, {"Invalid argument -above"}));
    EXPECT_EQ(ReadSteps("polish -name A -level 5 -over 5\n"),
              InLine(4, {"Invalid argument -over"}));
    EXPECT_EQ(ReadSteps("polish -name A -level 5 -above 5\n"),
              InLine(4, {"Invalid argument -above"}));
    EXPECT_EQ(ReadSteps("polish -name A -level 5 -targets oxide -depth 3\n"),
              InLine(4, {"Invalid argument -targets", "Invalid argument -depth"}));
}

TEST_F(PolishCommandTest, MessagesOfAFaultyOneComeInTheirOrder) {
    EXPECT_EQ(ReadSteps(oxideLine + "polish -name A -stop oxide\n"
                                    "polish -bad -name A -stop foo -over -1\n"),
              InLine(6, {"Invalid argument -bad", "Step name of polish process A already exists",
                         "Target etch type foo is undefined",
                         "Invalid -over argument: Depth cannot be negative."}));
    EXPECT_EQ(Step(3).level, 0.001f);
}

TEST_F(PolishCommandTest, HeightsMustBeNumbersThatAreNotNegative) {
    EXPECT_EQ(ReadSteps(oxideLine + "polish -name A -stop oxide -above -1\n"),
              InLine(5, {"Invalid -above argument: Height cannot be negative."}));
    EXPECT_EQ(ReadSteps("polish -name A -level -0.5\n"),
              InLine(4, {"Invalid -level argument: Height cannot be negative."}));
    EXPECT_EQ(ReadSteps("polish -name A -level much\n"),
              InLine(4, {"No decimal number found reading -level argument"}));
    EXPECT_EQ(ReadSteps(oxideLine + "polish -name A -stop oxide -over\n"),
              InLine(5, {"No decimal number found reading -over argument"}));
}

TEST_F(PolishCommandTest, AStopIsReadAsTargetsAre) {
    EXPECT_EQ(ReadSteps("polish -name A -stop nitride\n" + nitrideLine),
              InLine(4, {"Target etch type nitride is undefined"}));
    EXPECT_EQ(ReadSteps("polish -name A -stop\n"),
              InLine(4, {"No targets found reading -stop argument: provide at least one target"}));
    EXPECT_EQ(ReadSteps("polish -name A -stop -over 5\n"), Lines{});
    EXPECT_TRUE(Step(1).polishesToStop);
    EXPECT_TRUE(Step(1).targets.empty());
}

TEST_F(PolishCommandTest, MayStandBetweenPhotoAndStrip) {
    EXPECT_EQ(ReadSteps("photo -name p -mask_id 1 -type 0 -res 0 -thickness 1\n"
                        "polish -name p -level 1\nstrip -name p\n"),
              Lines{});
}

TEST_F(ImplantCommandTest, AnImplantIsRead) {
    EXPECT_EQ(ReadSteps(oxideLine + nitrideLine +
                        "implant -name NWell -type nsilicon -targets oxide nitride -depth 600 "
                        "-color 255 0 0 100 -alpha 0.25\n"),
              Lines{});
    const ProcessStep& step = Step(3);
    EXPECT_EQ(step.kind, StepKind::Implant);
    EXPECT_EQ(step.material, "NWell");
    EXPECT_EQ(step.label, "NWell");
    EXPECT_EQ(step.materialType, "nsilicon");
    EXPECT_EQ(step.targets, (Lines{"Ox", "Nit"}));
    EXPECT_EQ(step.depth, 0.6f);
    EXPECT_EQ(step.color, (Channels{255.0f * (100.0f / 25500.0f), 0.0f, 0.0f}));
    EXPECT_EQ(step.alpha, 0.25f);
    EXPECT_EQ(step.description, "NWell implant");
    EXPECT_EQ(step.processName, "");
    EXPECT_EQ(step.thickness, 0.0f);
}

TEST_F(ImplantCommandTest, NamesOfColoursAreTakenAndOpacityHasADefault) {
    EXPECT_EQ(
        ReadSteps(oxideLine + "implant -name N -type n -targets oxide -depth 1 -scolor navy\n"),
        Lines{});
    EXPECT_EQ(Step(2).color, (Channels{0.0f, 0.0f, 128.0f / 255.0f}));
    EXPECT_EQ(Step(2).alpha, 1.0f);
}

TEST_F(ImplantCommandTest, MessagesOfAnEmptyOneComeInTheirOrder) {
    EXPECT_EQ(ReadSteps("implant\n"),
              InLine(4, {"Command has no argument", "Argument -name not found",
                         "Argument -type not found", "Argument -targets not found",
                         "Argument -depth not found", "Missing -color or -scolor argument"}));
    EXPECT_EQ(Step(1).kind, StepKind::Implant);
    EXPECT_EQ(Step(1).description, " implant");
}

TEST_F(ImplantCommandTest, MessagesOfAFaultyOneComeInTheirOrder) {
    EXPECT_EQ(ReadSteps(oxideLine + "implant -name Ox -type n -targets foo -depth -1 -scolor none "
                                    "-alpha 2 -thickness 3\n"),
              InLine(5, {"Invalid argument -thickness",
                         "Material Ox in -name argument already defined. Choose another name.",
                         "Target etch type foo is undefined",
                         "Invalid -depth argument: Depth cannot be negative.",
                         "Color name is unrecognized", "Invalid -alpha argument"}));
}

TEST_F(ImplantCommandTest, ItsNameIsThatOfAMaterial) {
    const std::string implant = "implant -name W -type w -targets oxide -depth 1 -color 1 2 3 4\n";
    const std::string message =
        "Material W in -name argument already defined. Choose another name.";
    EXPECT_EQ(ReadSteps(oxideLine + implant + implant), InLine(6, {message}));
    EXPECT_EQ(ReadSteps(oxideLine + implant +
                        "coating -name W -type w -thickness 1 -color 1 2 3 4\n"
                        "deposition -name W -type w -thickness 1 -color 1 2 3 4\n"),
              (Lines{"Error in line 6: " + message, "Error in line 7: " + message}));
}

TEST_F(ImplantCommandTest, ItsTypeCanBeATargetOnLaterLines) {
    EXPECT_EQ(ReadSteps(oxideLine +
                        "implant -name W -type well -targets oxide well -depth 1 -color 1 2 3 4\n"),
              InLine(5, {"Target etch type well is undefined"}));
    EXPECT_EQ(ReadSteps(oxideLine +
                        "implant -name W -type well -targets oxide -depth 1 -color 1 2 3 4\n"
                        "implant -name D -type well -targets oxide well -depth 1 -color 1 2 3 4\n"
                        "etch -name E -targets well -depth 1 -iso 0\n"
                        "polish -name P -stop well\n"
                        "release -name R -targets well\n"),
              Lines{});
    EXPECT_EQ(Step(3).targets, (Lines{"Ox", "W"}));
    EXPECT_EQ(Step(4).targets, (Lines{"W", "D"}));
    EXPECT_EQ(Step(5).targets, (Lines{"W", "D"}));
}

TEST_F(ImplantCommandTest, ADepthOfZeroPasses) {
    EXPECT_EQ(
        ReadSteps(oxideLine + "implant -name W -type w -targets oxide -depth 0 -color 1 2 3 4\n"),
        Lines{});
}

TEST_F(ImplantCommandTest, OneNameServesAMaterialAndOneStepOfEachCommand) {
    EXPECT_EQ(
        ReadSteps(oxideLine + "implant -name A -type w -targets oxide -depth 0 -color 1 2 3 4\n"
                              "etch -name A -targets w -depth 1 -iso 0\n"
                              "polish -name A -level 3\n"),
        Lines{});
}

TEST_F(ImplantCommandTest, WordsThatAreNearlyTheseStayUnknown) {
    for (const char* const word : {"Polish", "polishing", "implants", "IMPLANT", "-polish"}) {
        EXPECT_EQ(ReadSteps(std::string(word) + " -name A -level 3\n"),
                  InLine(4, {"Unknown command"}));
    }
}

}  // namespace
}  // namespace zelmo
