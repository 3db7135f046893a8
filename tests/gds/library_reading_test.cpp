#include "gds/library_reading.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "base/log_console.h"
#include "base/row_bands.h"
#include "gds/gds_database.h"
#include "tests/gds/layout_file.h"
#include "tests/gds/reading_in_pieces.h"

// Libraries that are read in pieces, by several threads, against the same read in one go.

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;

class LibraryReadingTest : public ReadingInPiecesTest {
protected:
    LibraryReadingTest() : ReadingInPiecesTest({.texts = true}) {}
};

void WriteText(GdsWriter& writer, std::int32_t width) {
    writer.Record(record::text);
    writer.RecordU16(record::layer, {2});
    writer.RecordI32(record::width, {width});
    writer.RecordI32(record::xy, {1, 2});
    writer.RecordText(record::string, "text");
    writer.Record(record::endel);
}

void WriteRandomElement(GdsWriter& writer, std::mt19937& random) {
    const auto coordinate = [&] { return static_cast<std::int32_t>(random() % 20000) - 10000; };
    const std::string child = "CELL" + std::to_string(random() % 12);
    const std::int32_t x = coordinate();
    const std::int32_t y = coordinate();
    switch (random() % 8) {
        case 0:
        case 1:
            writer.Rectangle(
                {static_cast<std::uint16_t>(random() % 70), static_cast<std::uint16_t>(x & 63)}, x,
                y, x + 100, y + 200);
            break;
        case 2:
            writer.Path({7, static_cast<std::uint16_t>(x & 3)},
                        {{x, y}, {x + 500, y}, {x + 500, y + 300}}, 50,
                        static_cast<std::uint16_t>(random() % 5));
            break;
        case 3:
            writer.Reference(child, {x, y}, {random() % 2 == 0, 1.5, 30.0});
            break;
        case 4:
            writer.Array(child, 3, 2, {x, y}, {x + 300, y}, {x, y + 100});
            break;
        case 5:
            writer.Boundary(9, std::vector<GdsPoint>(1 + random() % 60, {x, y}));
            break;
        case 6:
            WriteText(writer, 6);
            break;
        default:
            writer.Record(record::box);
            writer.RecordI32(record::xy, {0, 0, 1, 1});
            writer.Record(record::endel);
            break;
    }
}

/// Cells of no elements up to hundreds.
Bytes RandomLibrary(std::mt19937& random, std::size_t cells, std::size_t mostElements) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (std::size_t cell = 0; cell < cells; ++cell) {
        writer.BeginCell("CELL" + std::to_string(random() % cells));
        for (std::size_t n = random() % (mostElements + 1); n > 0; --n) {
            WriteRandomElement(writer, random);
        }
        writer.EndCell();
    }
    writer.EndLibrary();
    return writer.Bytes();
}

TEST_F(LibraryReadingTest, GivesTheSameHoweverManyThreadsAndPieces) {
    std::mt19937 random(71);
    for (const std::size_t mostElements : {0, 3, 40, 400}) {
        const ReadingOutcome outcome = ExpectTheSame(RandomLibrary(random, 12, mostElements));
        EXPECT_EQ(outcome.end.substr(0, 1), "0");
    }
}

TEST_F(LibraryReadingTest, GivesTheSameOfALibraryOfManyBlocks) {
    std::mt19937 random(72);
    const Bytes bytes = RandomLibrary(random, 30, 6000);
    ASSERT_GT(bytes.size(), std::size_t{2} * PieceSizes().block);
    const ReadingOutcome expected = ReadInOneGo(bytes);
    EXPECT_EQ(Read(bytes, 2, {}), expected);
    EXPECT_EQ(Read(bytes, 3, {100000, 10000}), expected);
}

TEST_F(LibraryReadingTest, GivesTheSameOfChangedBytes) {
    std::mt19937 random(73);
    const Bytes whole = RandomLibrary(random, 5, 12);
    for (int run = 0; run < 300; ++run) {
        Bytes bytes = whole;
        for (std::uint32_t n = 1 + random() % 3; n > 0; --n) {
            std::uint8_t& byte = bytes[random() % bytes.size()];
            const std::uint32_t bits = random();
            byte = static_cast<std::uint8_t>(run % 2 == 0 ? bits : byte ^ (1u << (bits % 8)));
        }
        ASSERT_EQ(ReadInPieces(bytes), ReadInOneGo(bytes)) << run;
    }
}

TEST_F(LibraryReadingTest, GivesTheSameOfALibraryCutAnywhere) {
    std::mt19937 random(74);
    const Bytes whole = RandomLibrary(random, 3, 6);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        ASSERT_EQ(ReadInPieces(bytes), ReadInOneGo(bytes)) << size;
    }
}

TEST_F(LibraryReadingTest, GivesTheSameOfRecordsInRandomOrder) {
    constexpr std::uint16_t codes[] = {
        record::boundary, record::path,   record::sref,   record::aref,  record::text,
        record::layer,    record::width,  record::xy,     record::sname, record::strans,
        record::endel,    record::endel,  record::endel,  record::layer, record::xy,
        record::endstr,   record::bgnstr, record::strname};
    std::mt19937 random(75);
    for (int run = 0; run < 300; ++run) {
        GdsWriter writer;
        writer.BeginCell("A");
        for (int n = 0; n < 30; ++n) {
            writer.Record(codes[random() % std::size(codes)], Bytes(8 * (random() % 4), 1));
        }
        ASSERT_EQ(ReadInPieces(writer.Bytes()), ReadInOneGo(writer.Bytes())) << run;
    }
}

TEST_F(LibraryReadingTest, WarnsOnceOfEachPathTypeInTheOrderOfTheFile) {
    GdsWriter writer;
    writer.BeginCell("A");
    for (const std::uint16_t type : {0, 4, 2, 4, 1, 1, 4, 0}) {
        writer.Path(1, {{0, 0}, {100, 0}}, 10, type);
        writer.Rectangle(1, 0, 0, 10, 10);
    }
    writer.EndCell();
    const ReadingOutcome outcome = ExpectTheSame(writer.Bytes());
    ASSERT_EQ(outcome.lines.size(), 2u);
    EXPECT_NE(outcome.lines[0].find("path type 4"), std::string::npos);
    EXPECT_NE(outcome.lines[1].find("path type 1"), std::string::npos);
}

TEST_F(LibraryReadingTest, PassesTheWidthOfATextOnToAPathOfAnotherPiece) {
    GdsWriter writer;
    writer.BeginCell("A");
    writer.Rectangle(1, 0, 0, 10, 10);
    WriteText(writer, 30);
    writer.Rectangle(1, 0, 0, 10, 10);
    writer.Record(record::path);
    writer.RecordU16(record::layer, {1});
    writer.RecordI32(record::xy, {0, 0, 100, 0});
    writer.Record(record::endel);
    writer.EndCell();
    EXPECT_NE(ExpectTheSame(writer.Bytes()).database.find("0,15 100,15"), std::string::npos);
}

TEST_F(LibraryReadingTest, PassesAnOpenElementOnToTheNextStructure) {
    GdsWriter writer;
    writer.BeginCell("A");
    writer.Record(record::sref);
    writer.RecordText(record::sname, "B");
    writer.EndCell();
    writer.RecordI32(record::xy, {4, 5});
    writer.BeginCell("B");
    writer.Record(record::endel);
    writer.EndCell();
    const ReadingOutcome outcome = ExpectTheSame(writer.Bytes());
    EXPECT_NE(outcome.database.find("sref"), std::string::npos);
}

TEST_F(LibraryReadingTest, TheLastNameOfAStructureOfManyPiecesCounts) {
    GdsWriter writer;
    writer.BeginCell("FIRST");
    for (int i = 0; i < 30; ++i) {
        writer.Rectangle(1, 0, 0, 10, i);
    }
    writer.RecordText(record::strname, "");
    for (int i = 0; i < 30; ++i) {
        writer.Rectangle(1, 0, 0, 10, i);
    }
    writer.EndCell();
    const ReadingOutcome outcome = ExpectTheSame(writer.Bytes());
    EXPECT_NE(outcome.database.find("cell false ["), std::string::npos);
}

TEST_F(LibraryReadingTest, TheFirstRefusalOfTheFileCounts) {
    GdsWriter writer;
    for (int i = 0; i < 40; ++i) {
        writer.BeginCell("CELL" + std::to_string(i));
        writer.Rectangle(1, 0, 0, 10, 20);
        if (i == 21) {
            writer.Path(1, {{0, 0}, {0, 0}}, 10, 1);  // refused
        }
        if (i == 23) {
            writer.Path(1, {}, 10, 4);  // throws
        }
        if (i == 24) {
            writer.Record(record::bgnstr);
        }
        writer.EndCell();
    }
    const ReadingOutcome outcome = ExpectTheSame(writer.Bytes());
    EXPECT_EQ(outcome.end, "3");
    EXPECT_EQ(outcome.lines.size(), 1u);
    EXPECT_NE(outcome.database.find("\ncell false 43 45 4c 4c 32 30"), std::string::npos);
    EXPECT_EQ(outcome.database.find("\ncell false 43 45 4c 4c 32 31"), std::string::npos);
}

TEST_F(LibraryReadingTest, WarnsOfWhatComesBeforeAPathWithoutPoints) {
    GdsWriter writer;
    writer.BeginCell("A");
    for (int i = 0; i < 40; ++i) {
        writer.Rectangle(1, 0, 0, 10, 20);
        if (i == 20) {
            writer.Path(1, {{0, 0}, {10, 0}}, 10, 4);
        }
        if (i == 30) {
            writer.Path(1, {}, 10);
            writer.Path(1, {{0, 0}, {10, 0}}, 10, 1);
        }
    }
    const ReadingOutcome outcome = ExpectTheSame(writer.Bytes());
    EXPECT_EQ(outcome.end, "invalid vector subscript");
    EXPECT_EQ(outcome.lines.size(), 1u);
}

TEST_F(LibraryReadingTest, TakesRecordsThatAreLongerThanABlock) {
    GdsWriter writer;
    writer.BeginCell("A");
    for (int i = 0; i < 5; ++i) {
        writer.Record(record::propvalue, Bytes(65531, 7));
        writer.Boundary(3, std::vector<GdsPoint>(8190, {i, -i}));
    }
    writer.EndCell();
    EXPECT_EQ(ExpectTheSame(writer.Bytes()).end, "0 with flat ones");
}

TEST_F(LibraryReadingTest, ReadsNothingBehindTheEndOfTheLibrary) {
    GdsWriter writer;
    writer.BeginCell("A");
    writer.EndCell();
    writer.EndLibrary();
    writer.Bytes().resize(3000);
    writer.BeginCell("B");
    EXPECT_EQ(ExpectTheSame(writer.Bytes()).end, "0");
}

TEST_F(LibraryReadingTest, WritesToTheConsoleFromTheCallersThread) {
    struct ThreadConsole : LogConsole {
        std::vector<std::thread::id> writers;
        void AppendLine(std::wstring) override { writers.push_back(std::this_thread::get_id()); }
    };
    // Of many threads it is hardly the caller that comes upon the path in every run.
    GdsWriter writer;
    writer.BeginCell("A");
    writer.Path(1, {{0, 0}, {100, 0}}, 10, 1);
    for (int i = 0; i < 200; ++i) {
        writer.Record(record::propvalue, Bytes(65531, 7));
        writer.Rectangle(1, 0, 0, 10, 10);
    }
    writer.EndCell();
    const std::filesystem::path path = folder_.Write("library.gds", writer.Bytes());
    SetRowThreads(8);
    for (int run = 0; run < 20; ++run) {
        GdsDatabase database;
        ThreadConsole console;
        EXPECT_EQ(ReadLibrary(database, path, &console, {2000000, 20000}).error, std::nullopt);
        EXPECT_EQ(console.writers, std::vector<std::thread::id>{std::this_thread::get_id()});
    }
}

}  // namespace
}  // namespace zelmo
