#include "process_file/color_table.h"

#include <gtest/gtest.h>

#include <clocale>

#include "tests/support/temp_folder.h"

namespace zelmo {

bool operator==(const ColorEntry& a, const ColorEntry& b) {
    return a.name == b.name && a.red == b.red && a.green == b.green && a.blue == b.blue;
}

void PrintTo(const ColorEntry& entry, std::ostream* out) {
    *out << entry.name << " " << entry.red << " " << entry.green << " " << entry.blue;
}

namespace {

class ColorTableTest : public testing::Test {
protected:
    bool Load(std::string_view text) {
        return LoadColorTable(table, folder_.Write("colors.txt", text));
    }
    /// Loads a file of one line that is expected to scan.
    ColorEntry LoadOne(std::string_view line) {
        table.clear();
        EXPECT_TRUE(Load(line)) << line;
        EXPECT_EQ(table.size(), 1u) << line;
        return table.empty() ? ColorEntry{} : table.front();
    }
    void ExpectRefused(std::string_view line) {
        table.clear();
        EXPECT_FALSE(Load(line)) << line;
        EXPECT_TRUE(table.empty()) << line;
    }

    ColorTable table;
    TempFolder folder_;
};

TEST_F(ColorTableTest, ReadsNamesAndChannelsInFileOrder) {
    EXPECT_TRUE(Load("beige #F5F5DC 245, 245, 220\nred #FF0000 255, 0, 0\n"));
    EXPECT_EQ(table, (ColorTable{{"beige", 245, 245, 220}, {"red", 255, 0, 0}}));
}

TEST_F(ColorTableTest, AMissingFileFails) {
    EXPECT_FALSE(LoadColorTable(table, folder_.Path() / "absent.txt"));
}

TEST_F(ColorTableTest, AFolderInTheFilesPlaceFails) {
    EXPECT_FALSE(LoadColorTable(table, folder_.Path()));
}

TEST_F(ColorTableTest, AnEmptyFileGivesAnEmptyTable) {
    EXPECT_TRUE(Load(""));
    EXPECT_TRUE(table.empty());
}

TEST_F(ColorTableTest, AFileOfCommentsGivesAnEmptyTable) {
    EXPECT_TRUE(Load("# one\n#two\r\n#\n"));
    EXPECT_TRUE(table.empty());
    EXPECT_EQ(FindColor(table, "beige"), nullptr);
}

TEST_F(ColorTableTest, BlankLinesAreSkipped) {
    EXPECT_TRUE(Load("\n \t \r\n\r\n\t\nred X 1, 2, 3\n\n"));
    EXPECT_EQ(table, (ColorTable{{"red", 1, 2, 3}}));
}

TEST_F(ColorTableTest, AHashBehindABlankIsNoComment) {
    ExpectRefused("  # text\n");
    ExpectRefused(" # 1, 2, 3\n");
    EXPECT_EQ(LoadOne("  # text 1, 2, 3\n"), (ColorEntry{"#", 1, 2, 3}));
}

TEST_F(ColorTableTest, BlanksBehindCommasAreOptionalAndTrailingWordsIgnored) {
    EXPECT_EQ(LoadOne("red X 255,0,0\n"), (ColorEntry{"red", 255, 0, 0}));
    EXPECT_EQ(LoadOne("red X 255, 0, 0 trailing words\n"), (ColorEntry{"red", 255, 0, 0}));
    EXPECT_EQ(LoadOne("red X 255,  \t0,0trailing\n"), (ColorEntry{"red", 255, 0, 0}));
    EXPECT_EQ(LoadOne("\t red\tX\t\t255,0,0,9"), (ColorEntry{"red", 255, 0, 0}));
}

TEST_F(ColorTableTest, ABlankBeforeACommaFails) {
    ExpectRefused("red X 255 , 0, 0\n");
    ExpectRefused("red X 255, 0 , 0\n");
}

TEST_F(ColorTableTest, MissingPiecesFail) {
    for (const char* line : {"red\n", "red X\n", "red X 1\n", "red X 1,\n", "red X 1, 2\n",
                             "red X 1, 2,\n", "red X 1 2 3\n", "red 255, 0, 0\n", "red X a, 2, 3\n",
                             "red X 1, -, 3\n", "red X 1, + 2, 3\n", "red X 0x10, 2, 3\n"}) {
        ExpectRefused(line);
    }
}

TEST_F(ColorTableTest, TheSecondWordCanBeAnything) {
    EXPECT_EQ(LoadOne("red , 1, 2, 3\n"), (ColorEntry{"red", 1, 2, 3}));
    EXPECT_EQ(LoadOne("red 9, 1, 2, 3\n"), (ColorEntry{"red", 1, 2, 3}));
}

TEST_F(ColorTableTest, NumbersMayHaveASignAndAnySize) {
    EXPECT_EQ(LoadOne("c X -1, +2, 300\n"), (ColorEntry{"c", -1, 2, 300}));
    EXPECT_EQ(LoadOne("c X 2147483647, -2147483648, 007\n"),
              (ColorEntry{"c", 2147483647, -2147483647 - 1, 7}));
    EXPECT_EQ(LoadOne("c X 2147483648, -2147483649, 99999999999999999999999\n"),
              (ColorEntry{"c", 2147483647, -2147483647 - 1, 2147483647}));
}

TEST_F(ColorTableTest, NumbersDoNotDependOnTheLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "");
    EXPECT_EQ(LoadOne("c X 1, 2, 3\n"), (ColorEntry{"c", 1, 2, 3}));
    std::setlocale(LC_ALL, before.c_str());
}

TEST_F(ColorTableTest, EntriesBeforeAFaultyLineStay) {
    EXPECT_FALSE(Load("red X 1, 2, 3\nnonsense\nblue X 4, 5, 6\n"));
    EXPECT_EQ(table, (ColorTable{{"red", 1, 2, 3}}));
}

TEST_F(ColorTableTest, CarriageReturnsEndLinesToo) {
    EXPECT_EQ(LoadOne("red X 1, 2, 3\r\n"), (ColorEntry{"red", 1, 2, 3}));
    EXPECT_EQ(LoadOne("red X 1, 2, 3\rblue X 4, 5, 6\n"), (ColorEntry{"red", 1, 2, 3}));
    ExpectRefused("red X 1, 2,\r 3\n");
}

TEST_F(ColorTableTest, ALongLineIsReadInPieces) {
    // The first piece is the 1023 bytes "red X 1, 2, 3   ...", the second the rest.
    std::string line = "red X 1, 2, 3";
    line.resize(1023, ' ');
    EXPECT_TRUE(Load(line + "blue X 4, 5, 6\n"));
    EXPECT_EQ(table, (ColorTable{{"red", 1, 2, 3}, {"blue", 4, 5, 6}}));
}

TEST_F(ColorTableTest, AHashAtTheStartOfASecondPieceIsAComment) {
    std::string line = "red X 1, 2, 3";
    line.resize(1023, ' ');
    EXPECT_TRUE(Load(line + "# rest of the line\n"));
    EXPECT_EQ(table, (ColorTable{{"red", 1, 2, 3}}));
}

TEST_F(ColorTableTest, AByteOf0x1AIsAnOrdinaryCharacter) {
    EXPECT_EQ(LoadOne("re\x1A"
                      "d X 1, 2, 3\n"),
              (ColorEntry{"re\x1A"
                          "d",
                          1, 2, 3}));
}

TEST_F(ColorTableTest, ANulByteEndsTheTextOfItsLine) {
    using namespace std::string_literals;
    EXPECT_TRUE(Load("red X 1, 2, 3\0 junk\nblue X 4, 5, 6\n"s));
    EXPECT_EQ(table, (ColorTable{{"red", 1, 2, 3}, {"blue", 4, 5, 6}}));
    EXPECT_FALSE(Load("red X 1, 2\0, 3\n"s));
}

TEST_F(ColorTableTest, LookupIsCaseSensitiveAndExact) {
    ASSERT_TRUE(Load("beige X 1, 2, 3\n"));
    EXPECT_EQ(FindColor(table, "Beige"), nullptr);
    EXPECT_EQ(FindColor(table, "beig"), nullptr);
    EXPECT_EQ(FindColor(table, "beige "), nullptr);
    ASSERT_NE(FindColor(table, "beige"), nullptr);
}

TEST_F(ColorTableTest, TheFirstOfTwoEntriesWithOneNameWins) {
    ASSERT_TRUE(Load("red X 1, 2, 3\nred X 4, 5, 6\n"));
    ASSERT_NE(FindColor(table, "red"), nullptr);
    EXPECT_EQ(*FindColor(table, "red"), (ColorEntry{"red", 1, 2, 3}));
    EXPECT_EQ(table.size(), 2u);
}

}  // namespace
}  // namespace zelmo
