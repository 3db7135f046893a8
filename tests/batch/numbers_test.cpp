#include <algorithm>
#include <filesystem>

#include "tests/batch/batch_fixture.h"

// Probes, cuts and the summary, as users ask for them.

namespace zelmo {
namespace {

/// A mask with a square of 4 um in the middle of a window of 10 um, and a hole etched there.
class NumbersTest : public BatchTest {
protected:
    NumbersTest() {
        WriteProcess(
            "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
            "photo -name Hole -mask_id 1 -type 0 -res 0.2 -thickness 800\n"
            "etch -name Hole -targets oxide -depth 500 -iso 0\n"
            "strip -name Hole\n");
    }

    Ended Ask(std::vector<std::string> arguments) const {
        const std::vector<std::string> files{"square.gds", "flow.txt"};
        arguments.insert(arguments.begin(), files.begin(), files.end());
        return Run(arguments);
    }
};

constexpr const char* lastTables =
    "\nSTACK AT (1 um, 1 um), heights above the substrate's upper side\n"
    "005 Hole photoresist strip\n"
    "  material  label       from nm    to nm  thickness nm\n"
    "  Oxide     Oxide         0.000  500.000       500.000\n"
    "  _SUB_     SUBSTRATE  -500.000    0.000       500.000\n"
    "\nSTACK AT (5 um, 5 um), heights above the substrate's upper side\n"
    "005 Hole photoresist strip\n"
    "  material  label       from nm  to nm  thickness nm\n"
    "  _SUB_     SUBSTRATE  -500.000  0.000       500.000\n";

TEST_F(NumbersTest, ProbesAreTablesBeforeTheLastLinesOfTheRun) {
    const Ended plain = Ask({"--no-pictures"});
    const Ended asked =
        Ask({"--no-pictures", "--probe", "1,1", "--probe", "5,5", "--steps", "last"});
    EXPECT_EQ(asked.status, 0) << asked.errors;
    std::string expected = MaskTimes(plain.output);
    expected.insert(expected.find("All process steps completed"), lastTables);
    EXPECT_EQ(MaskTimes(asked.output), expected);
}

TEST_F(NumbersTest, QuietTablesAreAllOfStandardOutput) {
    const Ended ended =
        Ask({"--quiet", "--no-pictures", "--probe", "1,1", "--probe", "5,5", "--steps", "last"});
    EXPECT_EQ(ended.output, lastTables);
    const Ended toFiles = Ask({"--quiet", "--no-pictures", "--probe", "1,1", "--csv", "p.csv"});
    EXPECT_EQ(toFiles.output, "");
    EXPECT_TRUE(FileText("p.csv").starts_with("probe,x_um,y_um,step,"));
}

TEST_F(NumbersTest, PlacesAreInTheUnitOfTheProcessFile) {
    ASSERT_EQ(Ask({"--quiet", "--no-pictures", "--probe", "5,5", "--csv", "um.csv"}).status, 0);
    folder_.Write("flow.txt",
                  "settings -version 4 -N 200 -angle 30 -use_nm\n"
                  "location -x 0 -y 0 -dx 10000 -dy 10000\ngds -cell TOP\n"
                  "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
                  "photo -name Hole -mask_id 1 -type 0 -res 200 -thickness 800\n"
                  "etch -name Hole -targets oxide -depth 500 -iso 0\n"
                  "strip -name Hole\n");
    ASSERT_EQ(Ask({"--quiet", "--no-pictures", "--probe", "5000,5000", "--csv", "nm.csv"}).status,
              0);
    std::string expected = FileText("um.csv");
    for (const auto& [from, to] : {std::pair("x_um,y_um", "x_nm,y_nm"), {",5,5,", ",5000,5000,"}}) {
        for (std::size_t at = 0; (at = expected.find(from, at)) != std::string::npos;) {
            expected.replace(at, std::string(from).size(), to);
            at += std::string(to).size();
        }
    }
    EXPECT_EQ(FileText("nm.csv"), expected);
    ExpectRefusal(Ask({"--no-pictures", "--probe", "5000,10001"}), 1,
                  {"(5000, 10001) nm lies outside the window", "to (10000, 10000)"});
}

TEST_F(NumbersTest, PlacesOutsideTheWindowEndBeforeTheRun) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--probe", "10.01,5"}, {"--cut", "1,1,5,-1"}, {"--cut=-1,0,5,5"}}) {
        std::vector<std::string> all{"--no-pictures", "-o", "out"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const Ended ended = Ask(all);
        ExpectRefusal(ended, 1, {"lies outside the window, which goes from (0, 0) to (10, 10)"});
        EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
    }
    EXPECT_EQ(Ask({"--no-pictures", "--probe", "0,10", "--probe", "10,0"}).status, 0) << "edges";
    ExpectRefusal(Ask({"--no-pictures", "--cut", "1,1,1,1"}), 1, {"ends where it begins"});
}

TEST_F(NumbersTest, ArgumentsThatAreNoPlacesAreWrongUsage) {
    for (const char* text : {"", "1", "1,2,3", "1,x", "1, 2", "1,2 ", "nan,1", "1e999,1"}) {
        ExpectRefusal(Ask({"--probe", text}), 1, {"--probe", "is not X,Y"});
    }
    ExpectRefusal(Ask({"--cut", "1,2,3"}), 1, {"--cut", "is not X0,Y0,X1,Y1"});
    ExpectRefusal(Ask({"--csv", "a"}), 1, {"--csv needs a --probe"});
    ExpectRefusal(Ask({"--cuts", "a"}), 1, {"--cuts needs a --cut"});
    for (const char* factor : {"0", "-1", "x", "1e7"}) {
        ExpectRefusal(Ask({"--cut", "0,0,1,1", std::string("--stretch=") + factor}), 1,
                      {"--stretch"});
    }
}

TEST_F(NumbersTest, CutsLieBesideThePicturesUnderTheirNames) {
    const Ended ended =
        Ask({"-o", "out", "--cut", "1,5,9,5", "--cut", "5,0,5,10", "--steps", "4-last"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(
        FilesIn("out"),
        (std::vector<std::string>{
            "004 004 Hole etching cut 1.csv", "004 004 Hole etching cut 1.svg",
            "004 004 Hole etching cut 2.csv", "004 004 Hole etching cut 2.svg",
            "004 004 Hole etching.png", "005 005 Hole photoresist strip cut 1.csv",
            "005 005 Hole photoresist strip cut 1.svg", "005 005 Hole photoresist strip cut 2.csv",
            "005 005 Hole photoresist strip cut 2.svg", "005 005 Hole photoresist strip.png"}));
    const std::string csv = FileText("out/005 005 Hole photoresist strip cut 1.csv");
    EXPECT_TRUE(
        csv.starts_with("along_um,x_um,y_um,1 SUBSTRATE bottom_nm,1 SUBSTRATE top_nm,"
                        "2 Oxide bottom_nm,2 Oxide top_nm\n"
                        "0.000000,1.000000,5.000000,-500.000,0.000,0.000,500.000\n"))
        << csv.substr(0, 200);
    EXPECT_TRUE(csv.ends_with("8.000000,9.000000,5.000000,-500.000,0.000,0.000,500.000\n"));
}

TEST_F(NumbersTest, CutsThatAreThereAreKeptUnlessTheyMayBeReplaced) {
    const std::vector<std::string> cut{"--no-pictures", "--cut",   "1,5,9,5", "--cuts",
                                       "cuts",          "--steps", "last"};
    ASSERT_EQ(Ask(cut).status, 0);
    ExpectRefusal(Ask(cut), 4, {"strip cut 1.svg exists already"});
    folder_.Write("cuts/mine.txt", "mine");
    const std::string svg = FileText("cuts/005 005 Hole photoresist strip cut 1.svg");
    folder_.Write("cuts/005 005 Hole photoresist strip cut 1.svg", "old");
    std::vector<std::string> again = cut;
    again.push_back("--overwrite");
    EXPECT_EQ(Ask(again).status, 0);
    EXPECT_EQ(FileText("cuts/005 005 Hole photoresist strip cut 1.svg"), svg);
    EXPECT_EQ(FileText("cuts/mine.txt"), "mine");
    EXPECT_EQ(FilesIn("cuts").size(), 4u);  // with the list
}

TEST_F(NumbersTest, StepsWithNamesThatNoFileCanBearHaveCutsAllTheSame) {
    WriteProcess("deposition -name a/b:c -type oxide -thickness 500 -color 200 100 50 100\n");
    EXPECT_EQ(Ask({"--no-pictures", "--cut", "1,5,9,5", "-o", "out", "--steps", "2"}).status, 0);
    EXPECT_EQ(FilesIn("out"), (std::vector<std::string>{"002 002 a_b_c deposition cut 1.csv",
                                                        "002 002 a_b_c deposition cut 1.svg"}));
}

TEST_F(NumbersTest, FilesThatCannotBeWrittenEndBeforeTheRun) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--probe", "1,1", "--json", "nowhere/p.json"}, {"--summary", "nowhere/s.json"}}) {
        std::vector<std::string> all{"--no-pictures"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const Ended ended = Ask(all);
        ExpectRefusal(ended, 5, {"could not be written"});
        EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
    }
}

TEST_F(NumbersTest, TheSummaryHasWhatEachLayerMeasures) {
    ASSERT_EQ(Ask({"--no-pictures", "--quiet", "--summary", "s.json", "--steps", "2,last"}).status,
              0);
    const std::string json = FileText("s.json");
    // A film of 500 nm over 100 square micrometres, then a hole of 4 by 4 in it: less the rounding
    // of its corners and of its edges to cells.
    EXPECT_NE(json.find("\"area_um2\": 100.0"), std::string::npos) << json;
    EXPECT_NE(json.find("\"volume_um3\": 50.0"), std::string::npos) << json;
    const std::size_t last = json.find("\"name\": \"Hole photoresist strip\"");
    const std::size_t oxide = json.find("\"label\": \"Oxide\"", last);
    ASSERT_NE(oxide, std::string::npos);
    const std::size_t area = json.find("\"area_um2\": ", oxide) + 12;
    EXPECT_NEAR(std::stod(json.substr(area)), 84.0, 1.0);
    EXPECT_EQ(std::count(json.begin(), json.end(), '\t'), 0);
    std::size_t layers = 0;
    for (std::size_t at = 0; (at = json.find("\"layers\":", at)) != std::string::npos; ++at) {
        ++layers;
    }
    EXPECT_EQ(layers, 2u) << "of the chosen steps only";
}

TEST_F(NumbersTest, OverwriteReplacesPicturesAndNothingElse) {
    ASSERT_EQ(Ask({"-o", "out", "--steps", "1,2"}).status, 0);
    const std::string picture = FileText("out/002 002 Oxide deposition.png");
    folder_.Write("out/002 002 Oxide deposition.png", "old");
    folder_.Write("out/mine.png", "mine");
    folder_.Write("out/009 009 Other deposition.png", "other");
    ExpectRefusal(Ask({"-o", "out", "--steps", "1,2"}), 4, {"exists already"});
    EXPECT_EQ(Ask({"-o", "out", "--overwrite"}).status, 0);
    EXPECT_TRUE(FileText("out/002 002 Oxide deposition.png") == picture);
    EXPECT_EQ(FileText("out/mine.png"), "mine");
    EXPECT_EQ(FileText("out/009 009 Other deposition.png"), "other");
    EXPECT_EQ(FilesIn("out").size(), 8u);  // with the list
    WriteProcess("deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n");
    EXPECT_EQ(Ask({"-o", "out", "--overwrite"}).status, 0);
    EXPECT_EQ(FilesIn("out"),
              (std::vector<std::string>{"001 001 Substrate.png", "002 002 Oxide deposition.png",
                                        "009 009 Other deposition.png", "mine.png",
                                        "zelmo-pictures.txt"}));
}

}  // namespace
}  // namespace zelmo
