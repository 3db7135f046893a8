#include "report/argument_meanings.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace zelmo {
namespace {

using Row = std::tuple<std::string, std::string, std::string>;

std::vector<Row> RowsOf(const std::string& line) {
    std::vector<Row> rows;
    for (const PageArgument& argument : ArgumentsOf(line)) {
        rows.emplace_back(argument.name, argument.value, argument.meaning);
    }
    return rows;
}

TEST(ArgumentsOf, HaveTheirMeaningWithItsUnit) {
    EXPECT_EQ(
        RowsOf("etch -name Gate -targets poly oxide -depth 500"),
        (std::vector<Row>{{"-name", "Gate", "name of the etch, unique among etches"},
                          {"-targets", "poly oxide", "types of the materials that are etched"},
                          {"-depth", "500", "depth below the present surface, nm"}}));
    EXPECT_EQ(RowsOf("settings -legend"), (std::vector<Row>{{"-legend", "", "draw the legend"}}));
    EXPECT_EQ(RowsOf("gds -cell TOP"),
              (std::vector<Row>{{"-cell", "TOP", "name of the cell of the layout"}}));
}

TEST(ArgumentsOf, TheSameNameMeansWhatItsCommandSays) {
    const std::string material = std::get<2>(RowsOf("deposition -type oxide").at(0));
    const std::string mask = std::get<2>(RowsOf("photo -type 1").at(0));
    EXPECT_NE(material, mask);
}

TEST(ArgumentsOf, LinesThatAreNoneHaveNone) {
    EXPECT_TRUE(RowsOf("").empty());
    EXPECT_TRUE(RowsOf("paint -name A").empty());
    EXPECT_TRUE(RowsOf("dump -name A").empty());
    EXPECT_EQ(RowsOf("strip -nme A"), (std::vector<Row>{{"-nme", "A", ""}}));
}

TEST(ArgumentsOf, BytesThatAreNoTextAreReadable) {
    EXPECT_EQ(std::get<1>(RowsOf("strip -name \xE9t\xE9").at(0)), "\xEF\xBF\xA9t\xEF\xBF\xA9");
}

}  // namespace
}  // namespace zelmo
