// What zelmo-layout says of what is wrong, and how it ends then.

#include <nlohmann/json.hpp>

#include "tests/layout_tool/layout_tool_fixture.h"

namespace zelmo {
namespace {

GdsWriter LayoutOf(const std::vector<std::pair<std::string, std::string>>& references) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (const auto& [name, child] : references) {
        writer.BeginCell(name);
        writer.Rectangle(1, 0, 0, 1000, 1000);
        if (!child.empty()) {
            writer.Reference(child, {0, 0});
        }
        writer.EndCell();
    }
    writer.EndLibrary();
    return writer;
}

TEST_F(LayoutToolTest, RefusesAWrongCommandLine) {
    ExpectError(Run({}), 1, {"LAYOUT.gds", "--help"});
    ExpectError(Run({"small.gds", "--nonsense"}), 1, {"--nonsense"});
    ExpectError(Run({"small.gds", "--picture", "x.svg"}), 1, {"2 cells on top", "LONE", "TOP"});
}

TEST_F(LayoutToolTest, NamesTheNearestCells) {
    ExpectError(Run({"small.gds", "top"}), 1, {"no cell \"top\"", "nearest is \"TOP\""});
    ExpectError(Run({"small.gds", "PRAT"}), 1, {"nearest is \"PART\""});
    ExpectError(Run({"small.gds", "something"}), 1, {"no cell \"something\" (without a CELL"});
}

TEST_F(LayoutToolTest, RefusesWhatIsNoLayoutAndSaysWhatItLooksLike) {
    ExpectError(Run({"none.gds"}), 2, {"none.gds did not load: there is no such file"});
    folder_.Write("picture.gds", "\x89PNG\r\n\x1A\n\1\2\3\4");
    const Ended picture = Run({"picture.gds"});
    EXPECT_EQ(picture.output + picture.errors == "", false);
    ExpectPieces(picture.output + picture.errors, {"a PNG picture, not a GDSII stream file"});
    const Ended swapped = Run({"flow.txt"});
    ExpectPieces(swapped.output + swapped.errors, {"the file is a process file"});
    folder_.Write("empty.gds", "");
    const Ended empty = Run({"empty.gds"});
    EXPECT_EQ(empty.status, 0);
    ExpectPieces(empty.output, {"look: the file is empty", "no-cells"});
}

TEST_F(LayoutToolTest, TellsWhatItCanOfALayoutThatIsRefusedForItsReferences) {
    const Ended missing = RunOn(LayoutOf({{"A", "GONE"}, {"B", "A"}}));
    ExpectError(missing, 2, {"other.gds did not load", "not in the file (error 29)"});
    ExpectPieces(missing.output, {"B     top       2",
                                  "cell-missing: cell \"GONE\" is not in the file, "
                                  "but 1 reference leads to it"});
    const Ended repaired = RunOn(LayoutOf({{"A", "GONE"}, {"B", "A"}}), {"--repair"});
    EXPECT_EQ(repaired.status, 0) << repaired.errors;
    ExpectPieces(repaired.output, {"repaired: 1 reference"});

    const Ended circle = RunOn(LayoutOf({{"A", "B"}, {"B", "A"}, {"C", ""}}), {"--json"});
    ExpectError(circle, 2, {"refers to itself"});
    const auto json = nlohmann::json::parse(circle.output);
    EXPECT_EQ(json["cells"][0]["name"], "C");
    EXPECT_EQ(json["cells"][1]["endless"], true);
    EXPECT_EQ(json["cells"][1]["shapes"], nlohmann::json());
    EXPECT_EQ(json["problems"].size(), 2u);
    EXPECT_EQ(json["problems"][0]["kind"], "cell-in-itself");
    ExpectError(RunOn(LayoutOf({{"A", "A"}}), {"A"}), 2, {"contains itself"});
}

TEST_F(LayoutToolTest, TellsProblemsOfALayoutThatLoads) {
    GdsWriter writer = LayoutOf({{"A", ""}, {"A", ""}});
    writer.Bytes().resize(writer.Bytes().size() - 4);
    const Ended ended = RunOn(writer);
    EXPECT_EQ(ended.status, 0) << ended.errors;
    ExpectPieces(ended.output, {"cut-off: the file ends at byte ", "without an ENDLIB",
                                "cell-twice: cell \"A\" is there 2 times", "again"});
}

TEST_F(LayoutToolTest, RefusesTheProcessAsARunWould) {
    ExpectError(Run({"small.gds", "--process", "none.txt"}), 3,
                {"the process file none.txt cannot be run: there is no such file"});
    folder_.Write("bad.txt", "settings -version 4 -N 200 -angle 30\nnonsense\n");
    ExpectError(Run({"small.gds", "--process", "bad.txt"}), 3, {"bad.txt", "line 2"});
    const Ended unknown = RunOn(LayoutOf({{"TOP2", ""}}), {"--process", "flow.txt"});
    ExpectError(unknown, 3, {"flow.txt", "no cell \"TOP\"", "\"TOP2\""});
    ExpectError(Run({"small.gds", "LONE", "--process", "flow.txt", "--window", "fit"}), 3,
                {"No window fits"});
}

TEST_F(LayoutToolTest, EndsOtherwiseForWhatIsNeitherLayoutNorProcess) {
    ExpectError(Run({"small.gds", "TOP", "--picture", "none/x.svg"}), 4, {"x.svg"});
    ExpectError(Run({"small.gds", "TOP", "--picture", "."}), 4, {"it is a folder"});
    ExpectError(Run({"small.gds", "--process", "flow.txt", "--assets", "none"}), 5, {"colors.txt"});
}

TEST_F(LayoutToolTest, WritesErrorsAsCompilersDoWhenAsked) {
    folder_.Write("bad.txt", "settings -version 4 -N 200 -angle 30\nnonsense\nmore\n");
    EXPECT_TRUE(Run({"small.gds", "--process", "bad.txt", "--diagnostics", "gcc"})
                    .errors.starts_with("bad.txt:2: error: Unknown command\n"
                                        "bad.txt:3: error: Unknown command\n"));
    EXPECT_EQ(Run({"none.gds", "--diagnostics", "gcc"}).errors,
              "none.gds: error: there is no such file (error 2)\n");
    folder_.Write("damaged.gds", "\x1F\x8B\x08 damaged");
    const Ended damaged = Run({"damaged.gds", "--diagnostics", "gcc"});
    EXPECT_EQ(damaged.status, 2);
    ExpectPieces(damaged.errors, {"damaged.gds: error: the gzip-compressed file is damaged",
                                  "\ndamaged.gds: note: the file is a gzip-compressed file"});
    ExpectError(Run({"small.gds", "--diagnostics", "xml"}), 1, {"--diagnostics", "\"xml\""});
}

}  // namespace
}  // namespace zelmo
