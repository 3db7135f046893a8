// What zelmo-layout tells of chosen layers.

#include <nlohmann/json.hpp>

#include "tests/layout_tool/layout_tool_fixture.h"

namespace zelmo {
namespace {

using Json = nlohmann::json;

TEST_F(LayoutToolTest, TellsOfChosenLayersAlone) {
    const Ended ended = Run({"small.gds", "TOP", "--layers", "2,5/0", "--texts", "2"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.output,
              "small.gds: 3 cells, 2 on top; database unit 0.001 um, user unit 1 um\n"
              "\n"
              "cell TOP: 4 shapes, 1 of its own; 4 texts\n"
              "box: -1.000 to 6.000 by -0.500 to 2.000 um\n"
              "contains: PART x 3\n"
              "used in: no other cell\n"
              "layers: only 2,5/0\n"
              "\n"
              "layer  shapes  area um2   x um    y um  dx um  dy um  texts\n"
              "  2/3       3     1.500  0.000  -0.500  6.000  1.000      0\n"
              "  5/0       0         0      -       -      -      -      4\n"
              "\n"
              "layer   x um    y um  text\n"
              "  5/0  0.000   0.000  name\n"
              "  5/0  0.100  -0.200  pin\n"
              "2 of 4 texts (--texts lists more)\n"
              "\n"
              "problems: none\n");
    EXPECT_EQ(Run({"small.gds", "TOP", "--layers", "1"}).output.find("pin"), std::string::npos);
    const Json json = Json::parse(Run({"small.gds", "TOP", "--layers", "2/3", "--json"}).output);
    EXPECT_EQ(json["onlyLayers"], "2/3");
    ASSERT_EQ(json["layers"].size(), 1u);
    EXPECT_EQ(json["layers"][0]["layer"], 2);
    EXPECT_EQ(json["texts"], Json::array());
}

TEST_F(LayoutToolTest, TellsOfTheMasksOfChosenLayersAlone) {
    const Ended ended =
        Run({"small.gds", "--process", "flow.txt", "--layers", "2", "--picture", "top.svg"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    ExpectPieces(ended.output,
                 {"mask   rows  in window  area um2  of window  photo steps\n"
                  "2/3,9     1          1     0.500      4.2 %  Line (dark, line 8)\n"});
    EXPECT_EQ(ended.output.find("Hole"), std::string::npos);
    EXPECT_EQ(ended.output.find("missing"), std::string::npos);
    const std::string svg = FileText("top.svg");
    ExpectPieces(svg, {"2/3,9 Line"});
    EXPECT_EQ(svg.find("Hole"), std::string::npos);
    ExpectPieces(Run({"small.gds", "--process", "flow.txt", "--layers", "5"}).output,
                 {"none: no mask of the process has these layers\n"});
    ExpectPieces(
        Run({"small.gds", "--process", "flow.txt", "--layers", "2", "--window", "9,9,1,1"}).output,
        {"nothing of it on these layers lies in the window"});
}

TEST_F(LayoutToolTest, RefusesLayersThatTheCellDoesNotHave) {
    ExpectError(Run({"small.gds", "TOP", "--layers", "1,2/4,9"}), 1,
                {"cell \"TOP\" of the layout small.gds has nothing on 2/4,9; "
                 "it has 1/0, 2/3, 5/0"});
    ExpectError(Run({"small.gds", "--layers", "1"}), 1, {"2 cells on top"});
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("EMPTY");
    writer.EndCell();
    writer.EndLibrary();
    ExpectError(RunOn(writer, {"--layers", "1"}), 1, {"has nothing on 1; it has no layers"});
}

}  // namespace
}  // namespace zelmo
