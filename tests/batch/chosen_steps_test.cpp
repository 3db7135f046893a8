#include <filesystem>

#include "tests/batch/batch_fixture.h"

// Pictures of some steps only.

namespace zelmo {
namespace {

class ChosenStepsTest : public BatchTest {
protected:
    ChosenStepsTest() {
        WriteProcess(
            "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
            "photo -name Hole -mask_id 1 -type 0 -res 0.2 -thickness 800\n"
            "etch -name Hole -targets oxide -depth 500 -iso 0.1\n");
    }
};

TEST_F(ChosenStepsTest, TheirPicturesAreThoseOfAWholeRun) {
    const Ended whole = Run({"square.gds", "flow.txt", "-o", "all"});
    const Ended some = Run({"square.gds", "flow.txt", "-o", "some", "--steps", "photo,last"});
    EXPECT_EQ(some.status, 0) << some.errors;
    EXPECT_EQ(MaskTimes(some.output), MaskTimes(whole.output)) << "all steps are executed";
    EXPECT_EQ(FilesIn("some"),
              (std::vector<std::string>{"003 003 Hole photo.png", "004 004 Hole etching.png"}));
    for (const std::string& name : FilesIn("some")) {
        EXPECT_TRUE(FileText("some/" + name) == FileText("all/" + name)) << name;
    }
}

TEST_F(ChosenStepsTest, OnlyTheirPicturesMustNotBeThereYet) {
    ASSERT_EQ(Run({"square.gds", "flow.txt", "-o", "out", "--steps", "1"}).status, 0);
    EXPECT_EQ(Run({"square.gds", "flow.txt", "-o", "out", "--steps", "2-last"}).status, 0);
    EXPECT_EQ(FilesIn("out").size(), 4u);
    ExpectRefusal(Run({"square.gds", "flow.txt", "-o", "out", "--steps", "2"}), 4,
                  {"002 002 Oxide deposition.png", "exists already"});
}

TEST_F(ChosenStepsTest, AListThatFitsNothingEndsBeforeTheRun) {
    const Ended ended = Run({"square.gds", "flow.txt", "-o", "out", "--steps", "Oxyde"});
    ExpectRefusal(ended, 1, {"--steps: \"Oxyde\"", "\"Oxide\""});
    EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
    ExpectRefusal(Run({"square.gds", "flow.txt", "--check", "--steps", "9"}), 1, {"1", "to 4"});
    ExpectRefusal(Run({"square.gds", "flow.txt", "--steps", ""}), 1, {"--steps"});
}

TEST_F(ChosenStepsTest, ARunUntilAStepIsThatOfAFileThatEndsThere) {
    ASSERT_EQ(Run({"square.gds", "flow.txt", "-o", "all"}).status, 0);
    const Ended some = Run({"square.gds", "flow.txt", "-o", "some", "--until", "Hole photo",
                            "--steps", "last", "--probe", "1,1"});
    EXPECT_EQ(some.status, 0) << some.errors;
    EXPECT_EQ(some.output.find("Hole etching"), std::string::npos);
    EXPECT_NE(some.output.find("003 Hole photo"), std::string::npos) << some.output;
    EXPECT_EQ(FilesIn("some"), std::vector<std::string>{"003 003 Hole photo.png"});
    EXPECT_TRUE(FileText("some/003 003 Hole photo.png") == FileText("all/003 003 Hole photo.png"));
}

TEST_F(ChosenStepsTest, ARunGoesUntilTheLastOfTheStepsThatAWordFits) {
    const Ended ended = Run({"square.gds", "flow.txt", "--no-pictures", "--until", "Hole"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_NE(ended.output.find("Executing Hole etching"), std::string::npos);
    ExpectRefusal(Run({"square.gds", "flow.txt", "--until", "Hoel"}), 1,
                  {"--until: \"Hoel\"", "\"Hole\""});
    ExpectRefusal(Run({"square.gds", "flow.txt", "--until", ""}), 1, {"--until"});
    ExpectRefusal(Run({"square.gds", "flow.txt", "--until", "photo", "--steps", "4"}), 1,
                  {"--steps", "to 3"});
}

TEST_F(ChosenStepsTest, AListOfTheStepsIsAllThatStandardOutputGets) {
    const Ended ended = Run({"square.gds", "flow.txt", "--list-steps"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.output,
              "   1  Substrate\n   2  Oxide deposition (line 4)\n   3  Hole photo (line 5)\n"
              "   4  Hole etching (line 6)\n");
    EXPECT_EQ(Run({"square.gds", "flow.txt", "--list-steps", "--until", "3"}).output,
              "   1  Substrate\n   2  Oxide deposition (line 4)\n   3  Hole photo (line 5)\n");
    ExpectRefusal(Run({"square.gds", "flow.txt", "--list-steps", "--check"}), 1,
                  {"--list-steps", "--check"});
}

}  // namespace
}  // namespace zelmo
