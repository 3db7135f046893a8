#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>

#include "tests/batch/batch_fixture.h"

// Models of the stack, as users ask for them.

namespace zelmo {
namespace {

/// A film with a square hole of 4 um in the middle of a window of 10 um.
class ModelsTest : public BatchTest {
protected:
    ModelsTest() {
        WriteProcess(
            "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100 -alpha 0.5\n"
            "photo -name Hole -mask_id 1 -type 0 -res 0.2 -thickness 800\n"
            "etch -name Hole -targets oxide -depth 500 -iso 0\n"
            "strip -name Hole\n");
    }

    Ended Ask(std::vector<std::string> arguments) const {
        const std::vector<std::string> always{"square.gds", "flow.txt", "--no-pictures", "--quiet"};
        arguments.insert(arguments.begin(), always.begin(), always.end());
        return Run(arguments);
    }
};

std::uint32_t NumberAt(const std::string& bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) {
        number = number << 8 | static_cast<std::uint8_t>(bytes.at(at + i));
    }
    return number;
}

/// Cubic micrometres within the surface of an STL file's triangles.
double VolumeOfStl(const std::string& bytes) {
    double sixfold = 0.0;
    for (std::size_t at = 84; at < bytes.size(); at += 50) {
        double place[9];
        for (std::size_t i = 0; i < 9; ++i) {
            place[i] = std::bit_cast<float>(NumberAt(bytes, at + 12 + 4 * i));
        }
        const auto& [ax, ay, az, bx, by, bz, cx, cy, cz] = place;
        sixfold += ax * (by * cz - bz * cy) + ay * (bz * cx - bx * cz) + az * (bx * cy - by * cx);
    }
    return sixfold / 6.0;
}

TEST_F(ModelsTest, AnStlFileHasTheTrianglesOfTheLastStep) {
    const Ended ended = Ask({"--export", "stack.stl"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.errors, "");
    const std::string stl = FileText("stack.stl");
    EXPECT_TRUE(stl.starts_with("binary STL, micrometres: 005 Hole photoresist strip"));
    EXPECT_EQ(stl.size(), 84 + 50 * std::size_t{NumberAt(stl, 80)});
    EXPECT_LT(NumberAt(stl, 80), 2500u) << "levels are merged";
    // A substrate of 500 nm and the film, less its hole
    EXPECT_NEAR(VolumeOfStl(stl), 0.5 * (100 + 100 - 16), 0.02 * 92);
}

TEST_F(ModelsTest, AGlbFileHasANamedAndColouredObjectForEachLayer) {
    ASSERT_EQ(Ask({"--export", "stack.GLB"}).status, 0);
    const std::string glb = FileText("stack.GLB");
    EXPECT_TRUE(glb.starts_with("glTF"));
    EXPECT_EQ(NumberAt(glb, 4), 2u);
    EXPECT_EQ(NumberAt(glb, 8), glb.size());
    const std::string json = glb.substr(20, NumberAt(glb, 12));
    for (const char* piece :
         {"\"name\":\"01 SUBSTRATE\"", "\"name\":\"02 Oxide\"", "\"scale\":[1e-06,1e-06,1e-06]",
          "\"alphaMode\":\"BLEND\"", "\"name\":\"005 Hole photoresist strip\""}) {
        EXPECT_NE(json.find(piece), std::string::npos) << piece << " in " << json;
    }
    EXPECT_EQ(json.find("\"name\":\"03"), std::string::npos) << json;
}

TEST_F(ModelsTest, OneChosenStepHasTheFilesNameAndSeveralHaveTheirOwn) {
    ASSERT_EQ(Ask({"--export", "one.stl", "--steps", "2"}).status, 0);
    EXPECT_NEAR(VolumeOfStl(FileText("one.stl")), 0.5 * 200, 2.0);
    std::filesystem::create_directory(InFolder("out"));
    ASSERT_EQ(Ask({"--export", "out/stack.stl", "--steps", "2,4-last"}).status, 0);
    EXPECT_EQ(FilesIn("out"), (std::vector<std::string>{"stack 002 Oxide deposition.stl",
                                                        "stack 004 Hole etching.stl",
                                                        "stack 005 Hole photoresist strip.stl"}));
    EXPECT_EQ(FileText("out/stack 002 Oxide deposition.stl"), FileText("one.stl"));
}

TEST_F(ModelsTest, NamesOfStepsAreThoseThatFilesCanBear) {
    WriteProcess("deposition -name a/b:c -type oxide -thickness 500 -color 200 100 50 100\n");
    std::filesystem::create_directory(InFolder("out"));
    ASSERT_EQ(Ask({"--export", "out/s.stl", "--steps", "1,2"}).status, 0);
    EXPECT_EQ(FilesIn("out"),
              (std::vector<std::string>{"s 001 Substrate.stl", "s 002 a_b_c deposition.stl"}));
}

TEST_F(ModelsTest, AModelThatIsThereIsKeptUnlessItMayBeReplaced) {
    folder_.Write("stack.stl", "mine");
    const Ended kept = Ask({"--export", "stack.stl"});
    ExpectRefusal(kept, 5, {"stack.stl exists already", "--overwrite"});
    EXPECT_EQ(FileText("stack.stl"), "mine");
    EXPECT_EQ(Ask({"--export", "stack.stl", "--overwrite"}).status, 0);
    EXPECT_TRUE(FileText("stack.stl").starts_with("binary STL"));
}

TEST_F(ModelsTest, FilesThatCannotBeWrittenEndBeforeTheRun) {
    const Ended ended =
        Run({"square.gds", "flow.txt", "--no-pictures", "--no-notes", "--export", "nowhere/s.glb"});
    ExpectRefusal(ended, 5, {"nowhere", "s.glb could not be written"});
    EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
}

TEST_F(ModelsTest, WrongUsageIsTold) {
    for (const char* name : {"stack", "stack.obj", "stack.glb.txt", "glb"}) {
        ExpectRefusal(Ask({"--export", name}), 1, {"--export", name, "end in .glb or .stl"});
    }
    ExpectRefusal(Ask({"--export", ""}), 1, {"--export: the file has no name"});
    ExpectRefusal(Ask({"--export-tolerance", "1"}), 1, {"--export-tolerance needs an --export"});
    for (const char* tolerance : {"x", "", "1e7", "nan", "1nm"}) {
        ExpectRefusal(Ask({"--export", "s.glb", "--export-tolerance", tolerance}), 1,
                      {"--export-tolerance", "is no number from 0 to 1000000"});
    }
    ExpectRefusal(Ask({"--export", "s.glb", "--export-tolerance=-1"}), 1, {"is no number from 0"});
}

TEST_F(ModelsTest, AGreaterToleranceHasFewerTriangles) {
    WriteProcess(
        "photo -name Post -mask_id 1 -type 1 -res 0.2 -thickness 800\n"
        "deposition -name Film -type oxide -thickness 700 -sc 1.0 -color 1 2 3 100\n");
    std::uint32_t before = UINT32_MAX;
    for (const char* tolerance : {"0", "0.1", "5"}) {
        ASSERT_EQ(Ask({"--export", "s.stl", "--export-tolerance", tolerance, "--overwrite"}).status,
                  0);
        const std::uint32_t count = NumberAt(FileText("s.stl"), 80);
        EXPECT_LT(count, before) << tolerance;
        before = count;
    }
}

}  // namespace
}  // namespace zelmo
