#include "results/notes/consumed_resist.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zelmo {
namespace {

/// Resist of a map: "#" is left, "x" was used up, "." never was.
ConsumedResist ResistOf(const std::vector<std::string>& rows) {
    ConsumedResist resist{static_cast<std::int32_t>(rows[0].size()), {}, {}};
    for (const std::string& row : rows) {
        for (const char cell : row) {
            resist.before.push_back(cell != '.' ? 1 : 0);
            resist.consumed.push_back(cell == 'x' ? 1 : 0);
        }
    }
    return resist;
}

TEST(ConsumedResist, IsNoMoreThanSlopesAlongAnEdge) {
    const ConsumedResist resist = ResistOf({"..xx##########",  //
                                            "..xx##########",  //
                                            "..xx##########",  //
                                            "..xx##########",  //
                                            "..xx##########"});
    EXPECT_FALSE(IsMoreThanSlopes(resist, 1));
    EXPECT_TRUE(IsMoreThanSlopes(resist, 0));
}

TEST(ConsumedResist, IsMoreWhereItIsWiderThanTheSlopesOfBothSides) {
    const ConsumedResist resist = ResistOf({"##########",  //
                                            "##xxxxx###",  //
                                            "##xxxxx###",  //
                                            "##xxxxx###",  //
                                            "##xxxxx###",  //
                                            "##xxxxx###",  //
                                            "##########"});
    EXPECT_TRUE(IsMoreThanSlopes(resist, 2));
    EXPECT_FALSE(IsMoreThanSlopes(resist, 3));
}

TEST(ConsumedResist, IsMoreWhereAWholePieceIsGone) {
    EXPECT_TRUE(IsMoreThanSlopes(ResistOf({"............",  //
                                           ".xxx...###..",  //
                                           ".xxx...###..",  //
                                           ".xxx...###..",  //
                                           "............"}),
                                 5));
}

TEST(ConsumedResist, IsNotWhereAPieceMayGoOnOutside) {
    EXPECT_FALSE(IsMoreThanSlopes(ResistOf({"............",  //
                                            "xxx.........",  //
                                            "xxx.........",  //
                                            "xxx.........",  //
                                            "............"}),
                                  5));
}

TEST(ConsumedResist, IsNotWhereSomeOfThePieceIsLeft) {
    EXPECT_FALSE(IsMoreThanSlopes(ResistOf({"............",  //
                                            ".xxxxxxxx...",  //
                                            ".x##xxxxx...",  //
                                            ".xxxxxxxx...",  //
                                            "............"}),
                                  5));
}

TEST(ConsumedResist, IsNotWhereAFewCellsAreGone) {
    EXPECT_FALSE(IsMoreThanSlopes(ResistOf({".....", ".xx..", ".xx..", "....."}), 5));
}

}  // namespace
}  // namespace zelmo
