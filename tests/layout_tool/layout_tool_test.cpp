// zelmo-layout as its users run it.

#include <nlohmann/json.hpp>

#include "tests/layout_tool/layout_tool_fixture.h"
#include "tests/support/gzip_writer.h"

namespace zelmo {
namespace {

using Json = nlohmann::json;

TEST_F(LayoutToolTest, ListsTheCellsWithTheTopsFirst) {
    const Ended ended = Run({"small.gds"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.errors, "");
    EXPECT_EQ(ended.output,
              "small.gds: 3 cells, 2 on top; database unit 0.001 um, user unit 1 um\n"
              "\n"
              "cell       shapes  own  texts  cells    x um    y um  dx um  dy um  contains\n"
              "LONE  top       1    1      0      0   0.000   0.000  0.010  0.010\n"
              "TOP   top       4    1      4      3  -1.000  -0.500  7.000  2.500  PART x 3\n"
              "PART            1    1      1      0   0.000   0.000  1.000  0.500\n"
              "\n"
              "problems: none\n");
}

TEST_F(LayoutToolTest, TellsLayersAndTextsOfACell) {
    const Ended ended = Run({"small.gds", "TOP"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.output, SmallTopHead() +
                                "\n"
                                "layer  shapes  area um2    x um    y um  dx um  dy um  texts\n"
                                "  1/0       1     6.000  -1.000   0.000  3.000  2.000      0\n"
                                "  2/3       3     1.500   0.000  -0.500  6.000  1.000      0\n"
                                "  5/0       0         0       -       -      -      -      4\n"
                                "\n"
                                "layer   x um    y um  text\n"
                                "  5/0  0.000   0.000  name\n"
                                "  5/0  0.100  -0.200  pin\n"
                                "  5/0  3.100   0.200  pin\n"
                                "  5/0  5.100   0.200  pin\n"
                                "\n"
                                "problems: none\n");
    ExpectPieces(Run({"small.gds", "--cell", "PART"}).output, {"used in: TOP x 3"});
    ExpectPieces(Run({"small.gds", "TOP", "--texts", "2"}).output,
                 {"2 of 4 texts (--texts lists more)"});
}

TEST_F(LayoutToolTest, WritesTheSameAsData) {
    const Json list = Json::parse(Run({"small.gds", "--json"}).output);
    EXPECT_EQ(list["databaseUnit"], 0.001);
    ASSERT_EQ(list["cells"].size(), 3u);
    EXPECT_EQ(list["cells"][1]["name"], "TOP");
    EXPECT_EQ(list["cells"][1]["top"], true);
    EXPECT_EQ(list["cells"][1]["shapes"], 4);
    EXPECT_EQ(list["cells"][1]["texts"], 4);
    EXPECT_EQ(list["cells"][1]["box"],
              Json({{"x0", -1.0}, {"y0", -0.5}, {"x1", 6.0}, {"y1", 2.0}}));
    EXPECT_EQ(list["cells"][1]["contains"], Json::array({{{"name", "PART"}, {"times", 3}}}));
    EXPECT_EQ(list["problems"], Json::array());

    const Json cell = Json::parse(Run({"small.gds", "TOP", "--json"}).output);
    EXPECT_EQ(cell["cell"]["name"], "TOP");
    ASSERT_EQ(cell["layers"].size(), 3u);
    EXPECT_EQ(cell["layers"][1]["layer"], 2);
    EXPECT_EQ(cell["layers"][1]["datatype"], 3);
    EXPECT_EQ(cell["layers"][1]["shapes"], 3);
    EXPECT_EQ(cell["layers"][1]["area"], 1.5);
    EXPECT_EQ(cell["layers"][2]["box"], Json());
    EXPECT_EQ(cell["layers"][2]["texts"], 4);
    EXPECT_EQ(cell["texts"].size(), 4u);
    EXPECT_EQ(cell["texts"][2],
              Json({{"text", "pin"}, {"layer", 5}, {"texttype", 0}, {"x", 3.1}, {"y", 0.2}}));
    EXPECT_FALSE(cell.contains("window"));
}

TEST_F(LayoutToolTest, MarksTheMasksOfAProcess) {
    const Ended ended = Run({"small.gds", "--process", "flow.txt"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    ExpectPieces(
        ended.output,
        {"window: 0 to 4 by 0 to 3 um\n",
         "  1/0       1     6.000  -1.000   0.000  3.000  2.000      0          1     4.000  "
         "1: Hole (clear, line 5)\n",
         "  2/3       3     1.500   0.000  -0.500  6.000  1.000      0          1     0.500  "
         "2/3,9: Line (dark, line 8)\n",
         "mask   rows  in window  area um2  of window  photo steps\n"
         "1         1          1     4.000     33.3 %  Hole (clear, line 5)\n"
         "2/3,9     1          1     0.500      4.2 %  Line (dark, line 8)\n"});
    EXPECT_EQ(ended.output.find("missing"), std::string::npos);

    const Json json = Json::parse(Run({"small.gds", "--process", "flow.txt", "--json"}).output);
    EXPECT_EQ(json["window"], Json({{"x", 0.0}, {"y", 0.0}, {"dx", 4.0}, {"dy", 3.0}}));
    EXPECT_EQ(json["process"]["file"], "flow.txt");
    EXPECT_EQ(json["process"]["masks"][1]["mask"], "2/3,9");
    EXPECT_EQ(json["process"]["masks"][1]["steps"],
              Json::array({{{"photo", "Line"}, {"line", 8}, {"type", 1}}}));
    EXPECT_EQ(json["process"]["masks"][1]["inWindow"], Json({{"shapes", 1}, {"area", 0.5}}));
    EXPECT_EQ(json["process"]["missing"], Json::array());
    EXPECT_EQ(json["layers"][0]["inWindow"], Json({{"shapes", 1}, {"area", 4.0}}));
}

TEST_F(LayoutToolTest, TellsMasksThatAreMissing) {
    ExpectPieces(Run({"small.gds", "LONE", "--process", "flow.txt"}).output,
                 {"missing: mask 1 of Hole (clear, line 5): cell LONE draws nothing on it\n",
                  "missing: mask 2/3,9 of Line (dark, line 8): cell LONE draws nothing on it\n"});
    const std::vector<std::string> far{"small.gds", "--process", "flow.txt", "--window",
                                       "100,100,5,5"};
    ExpectPieces(Run(far).output,
                 {"missing: mask 1 of Hole (clear, line 5): nothing of it lies in the window\n",
                  "window: 100 to 105 by 100 to 105 um\n"});
}

TEST_F(LayoutToolTest, LooksAtOtherWindows) {
    ExpectPieces(Run({"small.gds", "--process", "flow.txt", "--window", "fit:1"}).output,
                 {"window: -2 to 7 by -1.5 to 3 um\n"});
    ExpectPieces(Run({"small.gds", "TOP", "--window", "0,0,1,5"}).output,
                 {"window: 0 to 1 by 0 to 1 um\n", "in window"});
}

TEST_F(LayoutToolTest, DrawsTheMasksAndReplacesAnOlderPicture) {
    folder_.Write("top.svg", "older");
    const Ended ended = Run({"small.gds", "--process", "flow.txt", "--picture", "top.svg"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    const std::string svg = FileText("top.svg");
    EXPECT_TRUE(svg.starts_with("<?xml"));
    ExpectPieces(svg, {"TOP of small.gds, masks of flow.txt", "<title>window</title>", "2/3,9 Line",
                       "fill=\"#C86432\""});
    EXPECT_EQ(FilesInFolder(), (std::vector<std::string>{"flow.txt", "small.gds", "top.svg"}));
}

TEST_F(LayoutToolTest, ReadsCompressedLayouts) {
    folder_.Write("packed.gds", Gzipped(SmallLayout().Bytes()));
    Ended packed = Run({"packed.gds", "TOP"});
    EXPECT_EQ(packed.status, 0) << packed.errors;
    packed.output.replace(0, std::string("packed").size(), "small");
    EXPECT_EQ(packed.output, Run({"small.gds", "TOP"}).output);
}

TEST_F(LayoutToolTest, SaysWhatItIs) {
    const Ended help = Run({"--help"});
    EXPECT_EQ(help.status, 0);
    ExpectPieces(help.output, {"zelmo-layout", "--process", "--picture", "Exit status"});
    const Ended version = Run({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(version.output.starts_with("zelmo-layout ")) << version.output;
}

}  // namespace
}  // namespace zelmo
