#include "base/nearest_name.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace zelmo {
namespace {

using Names = std::vector<std::string_view>;

TEST(NearestName, IsTheOneWithTheFewestSlips) {
    const Names types = {"oxide", "nitride", "poly", "metal"};
    EXPECT_EQ(NearestName("oxid", types), "oxide");
    EXPECT_EQ(NearestName("oxidee", types), "oxide");
    EXPECT_EQ(NearestName("nitrode", types), "nitride");
    EXPECT_EQ(NearestName("ploy", types), "poly");
    EXPECT_EQ(NearestName("meatl", types), "metal");
}

TEST(NearestName, IsNoneWhereNothingIsNear) {
    const Names types = {"oxide", "nitride", "ti"};
    EXPECT_EQ(NearestName("tungsten", types), "");
    EXPECT_EQ(NearestName("poly", types), "");
    EXPECT_EQ(NearestName("w", types), "");
    EXPECT_EQ(NearestName("oxide", {}), "");
}

TEST(NearestName, TakesTheOtherCaseForNextToNothing) {
    const Names cells = {"INVERTED", "INVERTER"};
    EXPECT_EQ(NearestName("inverter", cells), "INVERTER");
    EXPECT_EQ(NearestName("invertor", cells), "INVERTER");
    EXPECT_EQ(NearestName("w", Names{"W"}), "W");
}

TEST(NearestName, CountsAnExchangeOfNeighboursAsOneSlip) {
    EXPECT_EQ(NearestName("abc", Names{"xyz", "acb"}), "acb");
}

TEST(NearestName, IsTheFirstOfEquals) {
    EXPECT_EQ(NearestName("layer3", Names{"layer1", "layer2"}), "layer1");
}

TEST(NearestName, LooksForNoSlipsInVeryLongNames) {
    const std::string longName(65, 'a');
    const std::string other = longName.substr(1) + "b";
    EXPECT_EQ(NearestName(longName, Names{other}), "");
    EXPECT_EQ(NearestName(longName.substr(1), Names{other.substr(1)}), other.substr(1));
}

}  // namespace
}  // namespace zelmo
