#include "layout_tool/options.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

TEST(LayoutOptions, TakesWhatIsAskedFor) {
    const LayoutCommandLine line =
        ParseLayoutCommandLine({"a.gds", "TOP", "--process", "p.txt", "--window", "1,2,3,4",
                                "--json", "--repair", "--picture", "x.svg", "--texts", "5",
                                "--assets", "d", "--layers", "22,30,33/0", "--places", "ring"});
    ASSERT_TRUE(line.options) << line.end.text;
    EXPECT_EQ(line.options->layout, "a.gds");
    EXPECT_EQ(line.options->cell, "TOP");
    EXPECT_EQ(line.options->process, "p.txt");
    EXPECT_EQ(std::get<GivenWindow>(line.options->window), (GivenWindow{1, 2, 3, 4}));
    EXPECT_EQ(line.options->picture, "x.svg");
    EXPECT_EQ(line.options->assets, "d");
    EXPECT_EQ(line.options->texts, 5u);
    EXPECT_TRUE(line.options->json);
    EXPECT_TRUE(line.options->repair);
    EXPECT_EQ(line.options->layers,
              (std::vector<MaskLayer>{{22, std::nullopt}, {30, std::nullopt}, {33, 0}}));
    EXPECT_EQ(line.options->places, "ring");
}

TEST(LayoutOptions, AreOffAtFirst) {
    const LayoutCommandLine line = ParseLayoutCommandLine({"a.gds"});
    ASSERT_TRUE(line.options) << line.end.text;
    EXPECT_FALSE(line.options->cell);
    EXPECT_FALSE(line.options->process);
    EXPECT_FALSE(line.options->picture);
    EXPECT_EQ(line.options->window.index(), 0u);
    EXPECT_EQ(line.options->texts, 1000u);
    EXPECT_FALSE(line.options->json);
    EXPECT_TRUE(line.options->layers.empty());
    EXPECT_FALSE(line.options->places);
    EXPECT_EQ(ParseLayoutCommandLine({"a.gds", "--cell", "B"}).options->cell, "B");
}

TEST(LayoutOptions, AreRefusedWithTheReason) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, "LAYOUT.gds"},
        {{"a.gds", "B", "c"}, "c"},
        {{"a.gds", "--nonsense"}, "--nonsense"},
        {{"a.gds", "B", "--cell", "C"}, "--cell"},
        {{"a.gds", "--cell", ""}, "--cell: the cell has no name"},
        {{"a.gds", "--window", "1,2,3"}, "--window"},
        {{"a.gds", "--window", "fit"}, "--process"},
        {{"a.gds", "--picture", ""}, "--picture: the file has no name"},
        {{"a.gds", "--texts", "x"}, "--texts"},
        {{"a.gds", "--texts", "-1"}, "--texts"},
        {{"a.gds", "--layers", ""}, "--layers: \"\" is neither"},
        {{"a.gds", "--layers", "22, 30"}, "--layers: \" 30\" is neither"},
        {{"a.gds", "--layers", "22,"}, "--layers: \"\" is neither"},
        {{"a.gds", "--layers", "22/"}, "--layers: \"22/\" is neither"},
        {{"a.gds", "--layers", "-1"}, "--layers"},
        {{"a.gds", "--layers", "65536"}, "--layers: \"65536\" is neither"},
        {{"a.gds", "--places", ""}, "--places: the cell has no name"}};
    for (const auto& [arguments, piece] : cases) {
        const LayoutCommandLine line = ParseLayoutCommandLine(arguments);
        EXPECT_FALSE(line.options) << piece;
        EXPECT_EQ(line.end.status, ExitStatus::Usage);
        EXPECT_NE(line.end.text.find(piece), std::string::npos) << line.end.text;
    }
}

}  // namespace
}  // namespace zelmo
