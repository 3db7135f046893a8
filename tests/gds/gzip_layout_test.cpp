#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/row_bands.h"
#include "gds/gds_reader.h"
#include "gds/library_reading.h"
#include "tests/gds/database_text.h"
#include "tests/gds/layout_file.h"
#include "tests/gds/random_layout.h"
#include "tests/gds/reading_in_pieces.h"
#include "tests/support/gzip_writer.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

// Layouts that are gzip-compressed, whatever their name.

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t shortestHead = 10;
constexpr std::size_t trailerSize = 8;  // the check sum and the size

Bytes Concatenated(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// A library of about so many bytes.
GdsWriter Library(std::size_t size) {
    std::mt19937 random(9);
    GdsWriter writer;
    writer.BeginLibrary();
    for (int cell = 0; writer.Bytes().size() < size; ++cell) {
        writer.BeginCell("CELL" + std::to_string(cell));
        for (int i = 0; i < 50; ++i) {
            const auto x = static_cast<std::int32_t>(random() % 1000000);
            writer.Rectangle(1, x, 0, x + 100, 1 + i);
        }
        if (cell > 0) {
            writer.Reference("CELL" + std::to_string(cell - 1), {7, 8});
        }
        writer.EndCell();
    }
    writer.EndLibrary();
    return writer;
}

/// All that reading gives, in words.
std::string TextOf(const LoadedLayout& loaded) {
    std::string text = std::to_string(loaded.result) + " " + TextOf(loaded.database);
    for (const std::string& line : loaded.lines) {
        text += "\n" + line;
    }
    return text;
}

/// Expects that a compressed file gives what the plain one does.
void ExpectSame(const Bytes& plain, const Bytes& packed) {
    const LoadedLayout expected = LoadBytes(plain);
    const LoadedLayout loaded = LoadBytes(packed);
    EXPECT_EQ(loaded.error, expected.error);
    EXPECT_EQ(TextOf(loaded), TextOf(expected));
}

void ExpectFault(const Bytes& packed, GzipFault fault, std::uint64_t byte) {
    const LoadedLayout loaded = LoadBytes(packed);
    EXPECT_EQ(loaded.error, (LayoutError{LayoutErrorKind::FileUnreadable, byte, {}, "", fault}));
    EXPECT_EQ(loaded.result, 2);
}

TEST(GzipLayout, GivesWhatThePlainFileGives) {
    for (const std::size_t size : {0, 3000, 500000}) {
        const Bytes plain = Library(size).Bytes();
        for (const int level : {0, 1, 6, 9}) {
            ExpectSame(plain, Gzipped(plain, {level, "", ""}));
        }
    }
}

TEST(GzipLayout, PassesWhateverStandsInTheHead) {
    const Bytes plain = Library(3000).Bytes();
    ExpectSame(plain, Gzipped(plain, {6, "chip.gds", ""}));
    ExpectSame(plain, Gzipped(plain, {6, std::string(70000, 'n'), "a comment"}));
}

TEST(GzipLayout, MayHaveManyMembers) {
    const Bytes plain = Library(20000).Bytes();
    for (const std::size_t size : {1, 7, 1000, 19999}) {
        ExpectSame(plain, GzippedInMembers(plain, size));
    }
}

TEST(GzipLayout, MayHaveMembersWithoutContent) {
    const Bytes plain = Library(3000).Bytes();
    const Bytes empty = Gzipped({});
    ExpectSame(plain, Concatenated(empty, Concatenated(Gzipped(plain), empty)));
}

TEST(GzipLayout, WithoutContentIsAnEmptyLibraryLikeAnEmptyFile) {
    ExpectSame({}, Gzipped({}));
    EXPECT_EQ(LoadBytes(Gzipped({})).result, 0);
}

TEST(GzipLayout, MayBePaddedWithZeros) {
    const Bytes plain = Library(3000).Bytes();
    for (const std::size_t zeros : {1, 2, 512, 200000}) {
        ExpectSame(plain, Concatenated(Gzipped(plain), Bytes(zeros)));
    }
    const Bytes first(plain.begin(), plain.begin() + 1000);
    const Bytes second(plain.begin() + 1000, plain.end());
    ExpectSame(plain, Concatenated(Concatenated(Gzipped(first), Bytes(300)), Gzipped(second)));
}

TEST(GzipLayout, MayHoldWhatFollowsTheEndOfTheLibrary) {
    Bytes plain = Library(3000).Bytes();
    plain.resize(plain.size() + 2000000, 0xAB);
    ExpectSame(plain, Gzipped(plain));
}

TEST(GzipLayout, IsRefusedForItsRecordsAsThePlainFileIs) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    const std::uint64_t reference = writer.Bytes().size();
    writer.Reference("NOWHERE", {0, 0});
    writer.EndCell();
    EXPECT_EQ(LoadBytes(Gzipped(writer.Bytes())).error,
              (LayoutError{LayoutErrorKind::CellMissing, reference, record::sref, "TOP"}));
    ExpectSame(writer.Bytes(), Gzipped(writer.Bytes()));
    writer.Record(record::endstr);
    EXPECT_EQ(LoadBytes(Gzipped(writer.Bytes())).result, 7);
    ExpectSame(writer.Bytes(), Gzipped(writer.Bytes()));
}

TEST(GzipLayout, TellsAnElementWithoutPointsAsThePlainFileDoes) {
    GdsWriter writer;
    writer.BeginCell("CELL");
    writer.Path(1, {}, 10);
    EXPECT_THROW(LoadBytes(Gzipped(writer.Bytes())), std::out_of_range);
}

TEST(GzipLayout, OtherMethodsAndShorterMarksAreNoGzip) {
    Bytes packed = Gzipped(Library(3000).Bytes());
    packed[2] = 7;
    EXPECT_EQ(LoadBytes(packed).error->unpacking, std::nullopt);
    EXPECT_EQ(LoadBytes({0x1F, 0x8B}).result, 0);
}

TEST(GzipLayout, CutAnywhereIsTold) {
    const Bytes whole = Gzipped(Library(3000).Bytes());
    for (std::size_t size = 3; size < whole.size(); ++size) {
        ExpectFault({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)},
                    GzipFault::EndsEarly, size);
    }
}

TEST(GzipLayout, CutInALaterMemberIsTold) {
    const Bytes first = Gzipped(Library(3000).Bytes());
    const Bytes second = Gzipped({1, 2, 3});
    for (std::size_t size = 1; size < second.size(); ++size) {
        const Bytes cut(second.begin(), second.begin() + static_cast<std::ptrdiff_t>(size));
        ExpectFault(Concatenated(first, cut), GzipFault::EndsEarly, first.size() + size);
    }
}

TEST(GzipLayout, AWrongCheckSumOrSizeIsTold) {
    const Bytes packed = Gzipped(Library(3000).Bytes());
    for (std::size_t i = 0; i < trailerSize; ++i) {
        Bytes damaged = packed;
        damaged[packed.size() - trailerSize + i] ^= 1;
        const std::uint64_t byte = packed.size() - (i < 4 ? 4 : 0);
        ExpectFault(damaged, GzipFault::WrongCheckSum, byte);
    }
}

TEST(GzipLayout, AChangedByteThatStillUnpacksIsToldByTheCheckSum) {
    Bytes packed = Gzipped(Library(3000).Bytes(), {0, "", ""});
    packed[packed.size() / 2] ^= 0x10;
    ExpectFault(packed, GzipFault::WrongCheckSum, packed.size() - 4);
}

TEST(GzipLayout, DamagedDataAreToldWhereTheyCameToLight) {
    Bytes packed = Gzipped(Library(3000).Bytes());
    packed[shortestHead] |= 6;  // a kind of block that there is not
    ExpectFault(packed, GzipFault::Damaged, shortestHead + 1);
    packed = Gzipped(Library(3000).Bytes());
    packed[3] = 0xE0;  // flags that there are not
    ExpectFault(packed, GzipFault::Damaged, 4);
}

TEST(GzipLayout, DamageComesBeforeWhatItDidToTheRecords) {
    Bytes plain = Library(3000).Bytes();
    plain[0] = 0;
    plain[1] = 2;  // too short
    Bytes packed = Gzipped(plain);
    packed.back() ^= 1;
    ExpectFault(packed, GzipFault::WrongCheckSum, packed.size());
}

TEST(GzipLayout, AnythingElseBehindTheDataIsTold) {
    const Bytes packed = Gzipped(Library(3000).Bytes());
    for (const Bytes& stray : {Bytes{1}, Bytes{0, 0, 0, 'x'}, Bytes{0x8B, 8}}) {
        const auto zeros = static_cast<std::uint64_t>(std::count(stray.begin(), stray.end(), 0));
        ExpectFault(Concatenated(packed, stray), GzipFault::StrayBytes, packed.size() + zeros);
    }
    ExpectFault(Concatenated(packed, {0x1F, 'x', 8, 0}), GzipFault::Damaged, packed.size() + 2);
}

TEST(GzipLayout, AGzipFileInAGzipFileIsTold) {
    const Bytes plain = Library(3000).Bytes();
    ExpectFault(Gzipped(Gzipped(plain)), GzipFault::PackedTwice, 0);
    ExpectFault(GzippedInMembers(Gzipped(plain), 1), GzipFault::PackedTwice, 0);
    // The mark of it is enough.
    const Bytes inside = Gzipped(plain);
    ExpectFault(Gzipped({inside.begin(), inside.begin() + 3}), GzipFault::PackedTwice, 0);
}

/// What reading a compressed file with a limit gives.
std::optional<LayoutError> ReadWithin(const Bytes& packed, std::uint64_t limit) {
    const TempFolder folder;
    GdsDatabase database;
    RecordingConsole console;
    return ReadGdsFile(database, folder.Write("a.gds", packed), &console, {.unpackedLimit = limit});
}

TEST(GzipLayout, MayUnpackToItsLimitAndNoByteMore) {
    const Bytes plain = Library(3000).Bytes();
    for (const Bytes& packed : {Gzipped(plain), GzippedInMembers(plain, 100)}) {
        EXPECT_EQ(ReadWithin(packed, plain.size()), std::nullopt);
        for (const std::uint64_t limit : {plain.size() - 1, plain.size() / 2, std::size_t{0}}) {
            const auto error = ReadWithin(packed, limit);
            ASSERT_TRUE(error);
            EXPECT_EQ(error->unpacking, GzipFault::TooLarge);
            EXPECT_LE(error->byte, packed.size());
        }
    }
}

TEST(GzipLayout, OfAThousandTimesItsSizeEndsAtTheLimit) {
    Bytes plain = Library(3000).Bytes();
    plain.resize(40000000);
    const Bytes packed = Gzipped(plain, {9, "", ""});
    ASSERT_LT(packed.size() * 500, plain.size());
    EXPECT_EQ(ReadWithin(packed, plain.size()), std::nullopt);
    const auto error = ReadWithin(packed, 1000000);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->unpacking, GzipFault::TooLarge);
    EXPECT_LT(error->byte, packed.size() / 10);
}

TEST(UnpackedLimit, IsAQuarterOfTheMemoryButNeverTooLittle) {
    EXPECT_EQ(UnpackedLimit(std::uint64_t{16} << 30), std::uint64_t{4} << 30);
    EXPECT_EQ(UnpackedLimit(std::uint64_t{1} << 30), std::uint64_t{1} << 28);
    EXPECT_EQ(UnpackedLimit(0), std::uint64_t{1} << 28);
}

/// Compressed files by several threads and in pieces, against the same in one go.
class GzipLayoutInPiecesTest : public ReadingInPiecesTest {
protected:
    /// What reading gave of the content, wherever in the file its bytes stand.
    static std::string ContentOf(const ReadingOutcome& outcome) {
        return outcome.end + " " + outcome.database;
    }
    std::string PlainContent(const Bytes& plain) { return ContentOf(ReadInOneGo(plain)); }
};

TEST_F(GzipLayoutInPiecesTest, GiveTheSame) {
    const Bytes plain = Library(100000).Bytes();
    EXPECT_EQ(ContentOf(ExpectTheSame(Gzipped(plain))), PlainContent(plain));
    EXPECT_EQ(ContentOf(ExpectTheSame(GzippedInMembers(plain, 999))), PlainContent(plain));
}

TEST_F(GzipLayoutInPiecesTest, GiveTheSameOfManyBlocks) {
    const Bytes plain = Library(5 * PieceSizes().block).Bytes();
    const Bytes packed = Gzipped(plain, {1, "", ""});
    EXPECT_EQ(Read(packed, 2, {}), ReadInOneGo(plain));
    EXPECT_EQ(ReadInOneGo(packed), ReadInOneGo(plain));
}

TEST_F(GzipLayoutInPiecesTest, GiveTheSameWhenCut) {
    const Bytes whole = Gzipped(Library(20000).Bytes());
    for (std::size_t size = 3; size < whole.size(); size += 311) {
        ExpectTheSame({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
    }
}

TEST_F(GzipLayoutInPiecesTest, GiveTheSameOfChangedBytesAndNeverAnotherLayout) {
    std::mt19937 random(31);
    const Bytes plain = Library(6000).Bytes();
    const std::string right = PlainContent(plain);
    int told = 0;
    for (int run = 0; run < 90; ++run) {
        Bytes packed = run % 3 == 0 ? GzippedInMembers(plain, 2000) : Gzipped(plain);
        for (std::uint32_t n = 1 + random() % 3; n > 0; --n) {
            // Neither the mark, without which it is no gzip, nor what a head says beside it.
            std::uint8_t& byte = packed[shortestHead + random() % (packed.size() - shortestHead)];
            byte ^= static_cast<std::uint8_t>(1u << (random() % 8));
        }
        const ReadingOutcome outcome = ExpectTheSame(packed);
        const bool isRight = ContentOf(outcome) == right;
        EXPECT_TRUE(isRight || (outcome.error && outcome.error->unpacking)) << run;
        told += isRight ? 0 : 1;
    }
    EXPECT_GT(told, 70);
}

}  // namespace
}  // namespace zelmo
