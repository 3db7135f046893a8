#include "gds/stream_blocks.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "gds/layout_options.h"
#include "tests/gds/layout_file.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// A piece that stays when its block is gone.
struct KeptPiece {
    Bytes bytes;
    PieceStart start;
};

struct AllPieces {
    std::vector<KeptPiece> pieces;
    RecordStatus end = RecordStatus::Read;
    std::uint16_t nextCode = 0;

    Bytes Together() const {
        Bytes all;
        for (const KeptPiece& piece : pieces) {
            all.insert(all.end(), piece.bytes.begin(), piece.bytes.end());
        }
        return all;
    }
};

AllPieces ReadAll(const std::filesystem::path& path, const PieceSizes& sizes) {
    AllPieces all;
    std::uint64_t offset = 0;
    LayoutBytes bytes(path, LayoutOptions().unpackedLimit);
    StreamBlocks blocks(bytes, sizes);
    StreamBlock block;
    StreamBlock before;
    while (all.end == RecordStatus::Read) {
        std::swap(block, before);
        blocks.Read(block);
        for (const StreamPiece& piece : block.pieces) {
            EXPECT_EQ(piece.offset, offset);
            offset += piece.bytes.size();
            all.pieces.push_back({{piece.bytes.begin(), piece.bytes.end()}, piece.start});
        }
        EXPECT_EQ(block.nextOffset, offset);
        all.nextCode = block.nextCode;
        all.end = block.next;
    }
    return all;
}

AllPieces ReadAll(const Bytes& bytes, const PieceSizes& sizes) {
    const TempFolder folder;
    return ReadAll(folder.Write("file", bytes), sizes);
}

/// Cells of ten rectangles.
GdsWriter Cells(int count) {
    GdsWriter writer;
    for (int cell = 0; cell < count; ++cell) {
        writer.BeginCell("CELL");
        for (int i = 0; i < 10; ++i) {
            writer.Rectangle(1, 0, 0, i, i);
        }
        writer.EndCell();
    }
    return writer;
}

TEST(StreamBlocks, PiecesAreTheWholeFileInOrder) {
    const GdsWriter writer = Cells(20);
    for (const PieceSizes sizes :
         {PieceSizes{1000, 1}, PieceSizes{100, 50}, PieceSizes{3000, 700}, PieceSizes{}}) {
        const AllPieces all = ReadAll(writer.Bytes(), sizes);
        EXPECT_EQ(all.Together(), writer.Bytes());
        EXPECT_EQ(all.end, RecordStatus::EndOfFile);
    }
}

TEST(StreamBlocks, PiecesBeginBehindElementsAndStructures) {
    const AllPieces all = ReadAll(Cells(3).Bytes(), {700, 1});
    ASSERT_EQ(all.pieces.size(), 33u);  // an element each; the first has the head of its cell
    for (std::size_t i = 0; i < all.pieces.size(); ++i) {
        EXPECT_EQ(all.pieces[i].start.inStructure, i % 11 != 0) << i;
    }
}

TEST(StreamBlocks, PiecesHaveAboutTheirSize) {
    for (const KeptPiece& piece : ReadAll(Cells(200).Bytes(), {20000, 1000}).pieces) {
        EXPECT_LT(piece.bytes.size(), 1064u + 64u);
    }
}

TEST(StreamBlocks, APieceKnowsThePathTypesBeforeIt) {
    GdsWriter writer;
    for (const std::uint16_t type : {0, 1, 2, 4, 0}) {
        writer.Path(1, {{0, 0}, {1, 0}}, 1, type);
    }
    const AllPieces all = ReadAll(writer.Bytes(), {150, 1});
    ASSERT_EQ(all.pieces.size(), 5u);
    const bool type1Seen[] = {false, false, true, true, true};
    const bool type4Seen[] = {false, false, false, false, true};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(all.pieces[i].start.type1Seen, type1Seen[i]) << i;
        EXPECT_EQ(all.pieces[i].start.type4Seen, type4Seen[i]) << i;
    }
}

TEST(StreamBlocks, RecordsWithoutAnEndOfAnElementArePassedOnNevertheless) {
    GdsWriter writer;
    for (int i = 0; i < 10; ++i) {
        writer.Record(record::propvalue, Bytes(60000, static_cast<std::uint8_t>(i)));
    }
    const AllPieces all = ReadAll(writer.Bytes(), {1000, 100});
    EXPECT_EQ(all.Together(), writer.Bytes());
    EXPECT_GT(all.pieces.size(), 2u);
    EXPECT_EQ(all.end, RecordStatus::EndOfFile);
}

TEST(StreamBlocks, FillsTheLastRecordWithZeros) {
    GdsWriter writer = Cells(2);
    writer.Record(record::propvalue, Bytes(65531, 9));
    Bytes& bytes = writer.Bytes();
    const std::size_t size = bytes.size();
    bytes.erase(bytes.end() - 60000, bytes.end());
    Bytes expected = bytes;
    expected.resize(size, 0);
    for (const PieceSizes sizes : {PieceSizes{500, 100}, PieceSizes{}}) {
        const AllPieces all = ReadAll(bytes, sizes);
        EXPECT_EQ(all.Together(), expected);
        EXPECT_EQ(all.end, RecordStatus::EndOfFile);
    }
}

TEST(StreamBlocks, TellsWhatFollowsTheRecords) {
    GdsWriter writer = Cells(2);
    writer.EndLibrary();
    const Bytes library = writer.Bytes();
    writer.Bytes().insert(writer.Bytes().end(), {0, 3, 1, 2, 5});
    AllPieces all = ReadAll(writer.Bytes(), {300, 100});
    EXPECT_EQ(all.Together(), library);
    EXPECT_EQ(all.end, RecordStatus::EndOfFile);

    writer = Cells(2);
    const Bytes cells = writer.Bytes();
    writer.Bytes().insert(writer.Bytes().end(), {0, 3, 1, 2, 5});
    all = ReadAll(writer.Bytes(), {300, 100});
    EXPECT_EQ(all.Together(), cells);
    EXPECT_EQ(all.end, RecordStatus::BadLength);
    EXPECT_EQ(all.nextCode, 0x0102);
}

TEST(StreamBlocks, ReportsWhatCannotBeRead) {
    const TempFolder folder;
    for (const std::filesystem::path& path : {folder.Path() / "missing", folder.Path()}) {
        const AllPieces all = ReadAll(path, {});
        EXPECT_TRUE(all.pieces.empty());
        EXPECT_EQ(all.end, RecordStatus::Unreadable);
    }
}

}  // namespace
}  // namespace zelmo
