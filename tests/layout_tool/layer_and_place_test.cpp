// What zelmo-layout tells of chosen layers, and where it says that cells are placed.

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tests/layout_tool/layout_tool_fixture.h"

namespace zelmo {
namespace {

using Json = nlohmann::json;

TEST_F(LayoutToolTest, TellsOfChosenLayersAlone) {
    const Ended ended = Run({"small.gds", "TOP", "--layers", "2,5/0", "--texts", "2"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.output, SmallTopHead() +
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

TEST_F(LayoutToolTest, TellsWhereACellIsPlaced) {
    const Ended ended = Run({"small.gds", "TOP", "--places", "PART"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    ExpectPieces(ended.output, {"used in: no other cell\n"
                                "\n"
                                "places of PART in TOP: 3\n"
                                " x um    y um  dx um  dy um\n"
                                "0.000  -0.500  1.000  0.500\n"
                                "3.000   0.000  1.000  0.500\n"
                                "5.000   0.000  1.000  0.500\n"
                                "\n"
                                "layer  shapes"});
    const Json json = Json::parse(Run({"small.gds", "TOP", "--places", "PART", "--json"}).output);
    EXPECT_EQ(json["places"]["cell"], "PART");
    EXPECT_EQ(json["places"]["count"], 3);
    ASSERT_EQ(json["places"]["boxes"].size(), 3u);
    EXPECT_EQ(json["places"]["boxes"][1], Json({{"x", 3.0}, {"y", 0.0}, {"dx", 1.0}, {"dy", 0.5}}));
}

/// Arrays of arrays of a cell, and of one without shapes.
GdsWriter ManyPlaces() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Array("ROWS", 30000, 30000, {0, 0}, {600000, 0}, {0, 900000});
    writer.EndCell();
    writer.BeginCell("ROWS");
    writer.Array("RING", 30000, 30000, {0, 0}, {600000, 0}, {0, 900000});
    writer.Reference("HOLLOW", {0, 0});
    writer.EndCell();
    writer.BeginCell("RING");
    writer.Rectangle(1, 0, 0, 10, 10);
    writer.EndCell();
    writer.BeginCell("HOLLOW");
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}

TEST_F(LayoutToolTest, ShowsTheFirstOfManyPlacesAndCountsTheOthers) {
    const Ended ended = RunOn(ManyPlaces(), {"--places", "RING"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    const std::uint64_t all = 810000000000000000u;
    ExpectPieces(ended.output, {fmt::format("places of RING in TOP: {}\n", all),
                                "\n0.000  0.000  0.010  0.010\n0.020  0.000  0.010  0.010\n"
                                "0.020  0.000  0.010  0.010\n0.040  0.000  0.010  0.010\n",
                                fmt::format("\nand {} more\n", all - 100)});
    const Json json = Json::parse(RunOn(ManyPlaces(), {"--places", "RING", "--json"}).output);
    EXPECT_EQ(json["places"]["count"], all);
    EXPECT_EQ(json["places"]["boxes"].size(), 10000u);
    ExpectPieces(RunOn(ManyPlaces(), {"--places", "HOLLOW"}).output,
                 {"places of HOLLOW in TOP: 900000000\n"
                  "they have no boxes: the cell has no shapes\n"});
}

TEST_F(LayoutToolTest, NamesTheNearestOfTheCellsThatAreContained) {
    ExpectError(Run({"small.gds", "TOP", "--places", "PRAT"}), 1,
                {"--places: cell \"TOP\" of the layout small.gds does not contain a cell "
                 "\"PRAT\"; the nearest is \"PART\""});
    ExpectError(Run({"small.gds", "TOP", "--places", "TOP"}), 1, {"does not contain a cell"});
    ExpectError(Run({"small.gds", "LONE", "--places", "PART"}), 1,
                {"does not contain a cell \"PART\"; it contains no other cell"});
    ExpectError(Run({"small.gds", "--places", "PART"}), 1, {"2 cells on top"});
}

}  // namespace
}  // namespace zelmo
