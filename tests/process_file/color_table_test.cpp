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
    void SetUp() override { GetColorTable().clear(); }
    void TearDown() override { GetColorTable().clear(); }

    int Load(std::string_view text) { return LoadColorTable(folder_.Write("colors.txt", text)); }
    /// Loads a file of one line that is expected to scan.
    ColorEntry LoadOne(std::string_view line) {
        GetColorTable().clear();
        EXPECT_EQ(Load(line), 0) << line;
        EXPECT_EQ(GetColorTable().size(), 1u) << line;
        return GetColorTable().empty() ? ColorEntry{} : GetColorTable().front();
    }
    void ExpectRefused(std::string_view line) {
        GetColorTable().clear();
        EXPECT_EQ(Load(line), 1) << line;
        EXPECT_TRUE(GetColorTable().empty()) << line;
    }

    TempFolder folder_;
};

TEST_F(ColorTableTest, ReadsNamesAndChannelsInFileOrder) {
    EXPECT_EQ(Load("beige #F5F5DC 245, 245, 220\nred #FF0000 255, 0, 0\n"), 0);
    EXPECT_EQ(GetColorTable(), (ColorTable{{"beige", 245, 245, 220}, {"red", 255, 0, 0}}));
}

TEST_F(ColorTableTest, AMissingFileFails) {
    EXPECT_EQ(LoadColorTable(folder_.Path() / "absent.txt"), 1);
}

TEST_F(ColorTableTest, AFolderInTheFilesPlaceFails) {
    EXPECT_EQ(LoadColorTable(folder_.Path()), 1);
}

TEST_F(ColorTableTest, AnEmptyFileGivesAnEmptyTable) {
    EXPECT_EQ(Load(""), 0);
    EXPECT_TRUE(GetColorTable().empty());
}

TEST_F(ColorTableTest, AFileOfCommentsGivesAnEmptyTable) {
    EXPECT_EQ(Load("# one\n#two\r\n#\n"), 0);
    EXPECT_TRUE(GetColorTable().empty());
    EXPECT_EQ(FindColor(GetColorTable(), "beige"), nullptr);
}

TEST_F(ColorTableTest, BlankLinesAreSkipped) {
    EXPECT_EQ(Load("\n \t \r\n\r\n\t\nred X 1, 2, 3\n\n"), 0);
    EXPECT_EQ(GetColorTable(), (ColorTable{{"red", 1, 2, 3}}));
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
    EXPECT_EQ(Load("red X 1, 2, 3\nnonsense\nblue X 4, 5, 6\n"), 1);
    EXPECT_EQ(GetColorTable(), (ColorTable{{"red", 1, 2, 3}}));
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
    EXPECT_EQ(Load(line + "blue X 4, 5, 6\n"), 0);
    EXPECT_EQ(GetColorTable(), (ColorTable{{"red", 1, 2, 3}, {"blue", 4, 5, 6}}));
}

TEST_F(ColorTableTest, AHashAtTheStartOfASecondPieceIsAComment) {
    std::string line = "red X 1, 2, 3";
    line.resize(1023, ' ');
    EXPECT_EQ(Load(line + "# rest of the line\n"), 0);
    EXPECT_EQ(GetColorTable(), (ColorTable{{"red", 1, 2, 3}}));
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
    EXPECT_EQ(Load("red X 1, 2, 3\0 junk\nblue X 4, 5, 6\n"s), 0);
    EXPECT_EQ(GetColorTable(), (ColorTable{{"red", 1, 2, 3}, {"blue", 4, 5, 6}}));
    EXPECT_EQ(Load("red X 1, 2\0, 3\n"s), 1);
}

TEST_F(ColorTableTest, LookupIsCaseSensitiveAndExact) {
    ASSERT_EQ(Load("beige X 1, 2, 3\n"), 0);
    EXPECT_EQ(FindColor(GetColorTable(), "Beige"), nullptr);
    EXPECT_EQ(FindColor(GetColorTable(), "beig"), nullptr);
    EXPECT_EQ(FindColor(GetColorTable(), "beige "), nullptr);
    ASSERT_NE(FindColor(GetColorTable(), "beige"), nullptr);
}

TEST_F(ColorTableTest, TheFirstOfTwoEntriesWithOneNameWins) {
    ASSERT_EQ(Load("red X 1, 2, 3\nred X 4, 5, 6\n"), 0);
    ASSERT_NE(FindColor(GetColorTable(), "red"), nullptr);
    EXPECT_EQ(*FindColor(GetColorTable(), "red"), (ColorEntry{"red", 1, 2, 3}));
    EXPECT_EQ(GetColorTable().size(), 2u);
}

}  // namespace
}  // namespace zelmo
