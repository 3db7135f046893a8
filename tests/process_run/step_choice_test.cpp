#include "process_run/step_choice.h"

#include <gtest/gtest.h>

#include "model/process.h"

namespace zelmo {
namespace {

ProcessStep MakeStep(StepKind kind, const std::string& name, const std::string& description) {
    ProcessStep step;
    step.kind = kind;
    const bool isFilm =
        kind == StepKind::Deposition || kind == StepKind::Coating || kind == StepKind::Implant;
    (isFilm ? step.material : kind == StepKind::Photo ? step.photoName : step.processName) = name;
    step.description = description;
    return step;
}

std::vector<ProcessStep> MakeSteps() {
    return {MakeStep(StepKind::Substrate, "", "Substrate"),
            MakeStep(StepKind::Deposition, "Oxide", "Oxide deposition"),
            MakeStep(StepKind::Coating, "Glass", "Glass coating"),
            MakeStep(StepKind::Photo, "m1-5", "m1-5 photo"),
            MakeStep(StepKind::Etch, "Hole", "Hole etching"),
            MakeStep(StepKind::Strip, "Hole", "Hole photoresist strip"),
            MakeStep(StepKind::Deposition, "Oxide", "Oxide deposition"),
            MakeStep(StepKind::Implant, "N", "N implant")};
}

/// The numbers of the chosen steps, or the failure.
std::string Chosen(std::string_view list) {
    const StepChoice choice = ChooseSteps(list, MakeSteps());
    if (!choice.failure.empty()) {
        return choice.failure;
    }
    std::string numbers;
    for (std::size_t i = 0; i < choice.chosen.size(); ++i) {
        if (choice.chosen[i]) {
            numbers += std::to_string(i + 1);
        }
    }
    return numbers;
}

TEST(ChooseSteps, AnEmptyListChoosesAll) {
    EXPECT_EQ(Chosen(""), "12345678");
}

TEST(ChooseSteps, NumbersAndRangesCountTheSubstrateAsOne) {
    EXPECT_EQ(Chosen("1"), "1");
    EXPECT_EQ(Chosen("3-5"), "345");
    EXPECT_EQ(Chosen("8, 003 ,2 - 2"), "238");
    EXPECT_EQ(Chosen("1-8"), "12345678");
}

TEST(ChooseSteps, FirstAndLastAreNumbers) {
    EXPECT_EQ(Chosen("last"), "8");
    EXPECT_EQ(Chosen("first,7-last"), "178");
    EXPECT_EQ(Chosen("first-2"), "12");
}

TEST(ChooseSteps, CommandsChooseAllTheirSteps) {
    EXPECT_EQ(Chosen("deposition"), "27");
    EXPECT_EQ(Chosen("photo,etch"), "45");
    EXPECT_EQ(Chosen("substrate"), "1");
    EXPECT_EQ(Chosen("coating,strip,implant"), "368");
}

TEST(ChooseSteps, NamesAndDescriptionsChooseAllThatBearThem) {
    EXPECT_EQ(Chosen("Oxide"), "27");
    EXPECT_EQ(Chosen("Hole"), "56");
    EXPECT_EQ(Chosen("Hole etching"), "5");
    EXPECT_EQ(Chosen("m1-5"), "4");
}

TEST(ChooseSteps, WhatFitsNothingIsToldWithTheNearestName) {
    EXPECT_EQ(Chosen("Oxyde"),
              "\"Oxyde\" fits no step of the process; the nearest name is "
              "\"Oxide\"");
    EXPECT_EQ(Chosen("2,depositoin"),
              "\"depositoin\" fits no step of the process; the nearest "
              "name is \"deposition\"");
    EXPECT_EQ(Chosen("Last"),
              "\"Last\" fits no step of the process; the nearest name is "
              "\"last\"");
    EXPECT_EQ(Chosen("qqqqqqqqqq"),
              "\"qqqqqqqqqq\" fits no step of the process; it takes numbers (1 to 8), ranges, "
              "first, last, commands such as deposition, and the names of the process file");
}

TEST(ChooseSteps, ACommandWithoutAStepFitsNothing) {
    EXPECT_NE(Chosen("release").find("\"release\" fits no step"), std::string::npos);
}

TEST(ChooseSteps, NumbersWithoutAStepAreTold) {
    const std::string tail = ": they are numbered from 1, the substrate, to 8";
    EXPECT_EQ(Chosen("0"), "there is no step 0" + tail);
    EXPECT_EQ(Chosen("9"), "there is no step 9" + tail);
    EXPECT_EQ(Chosen("2-9"), "there is no step 2-9" + tail);
    EXPECT_EQ(Chosen("99999999999999999999"), "there is no step 99999999999999999999" + tail);
    EXPECT_EQ(Chosen("5-3"), "the range 5-3 ends before it begins");
}

TEST(ChooseSteps, EmptyItemsAreTold) {
    for (const char* list : {",", "1,", ",1", "1,,2", " "}) {
        EXPECT_EQ(Chosen(list), "an item of the list is empty") << list;
    }
}

}  // namespace
}  // namespace zelmo
