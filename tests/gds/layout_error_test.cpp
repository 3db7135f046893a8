#include "gds/layout_error.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <set>
#include <string>

#include "base/row_bands.h"
#include "gds/gds_database.h"
#include "gds/library_reading.h"
#include "gds/reference_location.h"
#include "tests/gds/layout_file.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

// What an error of a layout tells: its kind, and the byte, the record and the cell where it is.

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(LayoutErrorReason, EveryKindHasItsOwnWords) {
    std::set<std::string> reasons;
    for (std::int32_t code = 2; code <= 30; ++code) {
        if (code != 23 && code != 24) {
            reasons.insert(LayoutErrorReason(static_cast<LayoutErrorKind>(code)));
        }
    }
    EXPECT_EQ(reasons.size(), 27u);
}

/// The byte behind what was written so far, where the next record begins.
std::uint64_t Here(GdsWriter& writer) {
    return writer.Bytes().size();
}

TEST(LayoutError, TellsTheByteTheRecordAndTheCell) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("FIRST");
    writer.Rectangle(1, 0, 0, 10, 10);
    writer.EndCell();
    writer.BeginCell("SECOND");
    writer.Rectangle(1, 0, 0, 10, 10);
    const std::uint64_t byte = Here(writer);
    writer.RecordU16(record::layer, {3});
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::StrayLayer, byte, record::layer, "SECOND"}));
}

TEST(LayoutError, TellsNoCellOutsideStructures) {
    GdsWriter writer;
    writer.BeginCell("CELL");
    writer.EndCell();
    const std::uint64_t byte = Here(writer);
    writer.Record(record::boundary);
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::StrayBoundary, byte, record::boundary, ""}));
}

TEST(LayoutError, TellsTheNameUpToItsFirstNul) {
    GdsWriter writer;
    writer.BeginCell("ODD");  // is padded
    const std::uint64_t byte = Here(writer);
    writer.Record(record::bgnstr);
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::NestedStructure, byte, record::bgnstr, "ODD"}));
}

TEST(LayoutError, TellsTheEndOfAnElementThatIsRefusedAsAWhole) {
    GdsWriter writer;
    writer.BeginCell("CELL");
    writer.Path(1, {{0, 0}, {0, 0}}, 10);
    const std::uint64_t end = Here(writer) - recordHeadSize;
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::PathNotExpandable, end, record::endel, "CELL"}));
}

TEST(LayoutError, TellsTheCodeOfARecordThatIsTooShort) {
    GdsWriter writer;
    writer.BeginCell("CELL");
    const std::uint64_t byte = Here(writer);
    writer.Bytes().insert(writer.Bytes().end(), {0, 3, 0x12, 0x34, 0, 0});
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::RecordTooShort, byte, 0x1234, "CELL"}));
}

TEST(LayoutError, TellsNoRecordOfAFileThatCannotBeRead) {
    const TempFolder folder;
    for (const std::filesystem::path& path : {folder.Path() / "missing", folder.Path()}) {
        for (const PieceSizes& sizes : {PieceSizes{}, PieceSizes{100, 10}}) {
            GdsDatabase database;
            RecordingConsole console;
            EXPECT_EQ(ReadLibrary(database, path, &console, sizes).error,
                      (LayoutError{LayoutErrorKind::FileUnreadable, 0, {}, ""}));
        }
    }
}

TEST(LayoutError, TellsTheReferenceToAMissingCell) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("GOOD");
    writer.EndCell();
    writer.BeginCell("BAD");
    writer.Array("GOOD", 1, 1, {0, 0}, {1, 0}, {0, 1});
    writer.Reference("GOOD", {0, 0});
    const std::uint64_t missing = Here(writer);
    writer.Reference("NOWHERE", {0, 0});
    writer.Reference("NOWHERE EITHER", {0, 0});
    writer.EndCell();
    writer.EndLibrary();
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::CellMissing, missing, record::sref, "BAD"}));
}

TEST(LayoutError, TellsTheArrayOfAMissingCell) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("GOOD");
    writer.EndCell();
    writer.BeginCell("BAD");
    writer.Reference("GOOD", {0, 0});
    writer.Array("GOOD", 1, 1, {0, 0}, {1, 0}, {0, 1});
    const std::uint64_t missing = Here(writer);
    writer.Array("NOWHERE", 1, 1, {0, 0}, {1, 0}, {0, 1});
    writer.EndCell();
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::CellMissing, missing, record::aref, "BAD"}));
}

TEST(LayoutError, TellsAReferenceThatEndsInAnotherStructureThanItBegan) {
    GdsWriter writer;
    writer.BeginCell("FIRST");
    const std::uint64_t begin = Here(writer);
    writer.Record(record::sref);
    writer.EndCell();
    writer.RecordText(record::sname, "NOWHERE");
    writer.BeginCell("SECOND");
    writer.Record(record::endel);
    writer.EndCell();
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::CellMissing, begin, record::sref, "SECOND"}));
}

TEST(LayoutError, TellsTheReferenceThatClosesACircle) {
    GdsWriter writer;
    writer.BeginLibrary();
    std::uint64_t closing = 0;
    for (const auto& [name, child] : {std::pair("A", "B"), {"B", "C"}, {"C", "D"}, {"D", "B"}}) {
        writer.BeginCell(name);
        writer.Rectangle(1, 0, 0, 10, 10);
        closing = Here(writer);
        writer.Reference(child, {0, 0});
        writer.EndCell();
    }
    writer.EndLibrary();
    EXPECT_EQ(Load(writer).error,
              (LayoutError{LayoutErrorKind::CellInItself, closing, record::sref, "D"}));
}

TEST(LocateReference, FindsNothingInAFileThatIsAnotherOneByNow) {
    const TempFolder folder;
    GdsWriter writer;
    writer.BeginCell("CELL");
    writer.Reference("CELL", {0, 0});
    writer.EndCell();
    writer.EndLibrary();
    const std::filesystem::path path = folder.Write("layout.gds", writer.Bytes());
    EXPECT_TRUE(LocateReference(path, {0, false, 0}));
    EXPECT_FALSE(LocateReference(path, {0, false, 1}));
    EXPECT_FALSE(LocateReference(path, {0, true, 0}));
    EXPECT_FALSE(LocateReference(path, {1, false, 0}));
    EXPECT_FALSE(LocateReference(folder.Path() / "missing", {0, false, 0}));
}

/// A file of many pieces in whose middle something is wrong.
class PiecewiseErrorTest : public testing::Test {
protected:
    ~PiecewiseErrorTest() override { SetRowThreads(0); }

    void WriteCells(int count) {
        for (int i = 0; i < count; ++i) {
            writer.BeginCell("CELL" + std::to_string(cells++));
            for (int k = 0; k < 100; ++k) {
                writer.Rectangle(1, 0, 0, 10, 10);
            }
            writer.EndCell();
        }
    }

    std::optional<LayoutError> Read(std::int32_t threads, const PieceSizes& sizes) {
        SetRowThreads(threads);
        GdsDatabase database;
        RecordingConsole console;
        return ReadLibrary(database, path, &console, sizes).error;
    }

    void ExpectError(const LayoutError& error) {
        path = folder.Write("layout.gds", writer.Bytes());
        EXPECT_EQ(Read(1, {}), error);
        for (const PieceSizes& sizes :
             {PieceSizes{1000, 1}, PieceSizes{20000, 700}, PieceSizes{50000, 10000}}) {
            EXPECT_EQ(Read(2, sizes), error) << sizes.block;
            EXPECT_EQ(Read(3, sizes), error) << sizes.block;
        }
    }

    TempFolder folder;
    GdsWriter writer;
    std::filesystem::path path;
    int cells = 0;
};

TEST_F(PiecewiseErrorTest, IsTheSameInAPieceThatBeginsInsideItsCell) {
    WriteCells(30);
    writer.BeginCell("NAMED FAR AHEAD");
    for (int k = 0; k < 3000; ++k) {
        writer.Rectangle(1, 0, 0, 10, 10);
    }
    const std::uint64_t byte = Here(writer);
    writer.RecordU16(record::layer, {3});
    WriteCells(30);
    ExpectError({LayoutErrorKind::StrayLayer, byte, record::layer, "NAMED FAR AHEAD"});
}

TEST_F(PiecewiseErrorTest, IsTheSameInAPieceThatIsReadAgain) {
    WriteCells(30);
    writer.BeginCell("OPEN");
    writer.Record(record::text);
    writer.EndCell();
    writer.BeginCell("NEXT");  // with the text still open, against what its piece supposes
    const std::uint64_t byte = Here(writer);
    writer.Record(record::boundary);
    WriteCells(30);
    ExpectError({LayoutErrorKind::StrayBoundary, byte, record::boundary, "NEXT"});
}

TEST_F(PiecewiseErrorTest, IsTheSameOfARecordThatIsTooShort) {
    WriteCells(30);
    writer.BeginCell("CELL");
    const std::uint64_t byte = Here(writer);
    writer.Bytes().insert(writer.Bytes().end(), {0, 2, 0x0D, 0x02});
    WriteCells(30);
    ExpectError({LayoutErrorKind::RecordTooShort, byte, record::layer, "CELL"});
}

}  // namespace
}  // namespace zelmo
