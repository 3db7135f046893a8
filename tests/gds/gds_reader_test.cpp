#include "gds/gds_reader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "gds/gds_database.h"
#include "tests/gds/layout_file.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;
using Points = std::vector<GdsPoint>;

const std::string headline = "CELLS IN DATABASE (database units):";
const std::string warningType1 =
    "WARNING: path type 1 (round ended) is not supported and will be converted to type 2";
const std::string warningType4 =
    "WARNING: path type 4 (variable length) is not supported and will be converted to type 2";

// The start and the end of a file

TEST(GdsReader, ReadsAnEmptyFileAsALibraryWithoutCells) {
    const LoadedLayout loaded = LoadBytes({});
    EXPECT_EQ(loaded.result, 0);
    EXPECT_TRUE(loaded.database.cells.empty());
    EXPECT_EQ(loaded.lines, (Lines{"", headline}));
}

TEST(GdsReader, HasDefinedUnitsForAFileThatNamesNone) {
    const LoadedLayout loaded = LoadBytes({});
    EXPECT_EQ(loaded.database.version, 0);
    EXPECT_EQ(loaded.database.userUnit, 0.001);
    EXPECT_EQ(loaded.database.metresPerUnit, 1e-9);
    EXPECT_EQ(loaded.database.micronsPerUnit, 1e-9 * 1000000.0);
}

TEST(GdsReader, ReadsVersionAndUnits) {
    GdsWriter writer;
    writer.BeginLibrary(0.5, 5e-10);
    writer.EndLibrary();
    const LoadedLayout loaded = Load(writer);
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.database.version, 600);
    EXPECT_EQ(loaded.database.userUnit, 0.5);
    EXPECT_EQ(loaded.database.metresPerUnit, 5e-10);
    EXPECT_EQ(loaded.database.micronsPerUnit, 5e-10 * 1000000.0);
}

TEST(GdsReader, TakesTheEndOfTheFileForTheEndOfTheLibrary) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("A");
    writer.Rectangle(1, 0, 0, 10, 20);
    writer.EndCell();
    const LoadedLayout loaded = Load(writer);
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.lines, (Lines{"", headline, "--> \"A\" with size dx = 10 by dy = 20"}));
}

TEST(GdsReader, LosesAStructureThatIsOpenAtTheEndOfTheFile) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("A");
    writer.EndCell();
    writer.BeginCell("B");
    writer.Rectangle(1, 0, 0, 10, 20);
    const LoadedLayout loaded = Load(writer);
    EXPECT_EQ(loaded.result, 0);
    ASSERT_EQ(loaded.database.cells.size(), 1u);
    EXPECT_EQ(loaded.database.cells[0].name, std::string("A\0", 2));
}

TEST(GdsReader, NeverReadsBehindTheEndOfTheLibrary) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.EndLibrary();
    writer.Bytes().resize(writer.Bytes().size() + 2048);
    EXPECT_EQ(Load(writer).result, 0);
}

TEST(GdsReader, NeedsNoHeadOfTheLibrary) {
    GdsWriter writer;
    writer.BeginCell("A");
    writer.EndCell();
    EXPECT_EQ(Load(writer).database.cells.size(), 1u);
}

TEST(GdsReader, TakesARecordOfLengthFourForAnEndOfAnElement) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Record(record::text);
        writer.Bytes().insert(writer.Bytes().end(), {0, 4, 0x11, 0x00});
    });
    EXPECT_EQ(loaded.result, 0);
}

TEST(GdsReader, ReadsMissingBytesOfACutRecordAsZeros) {
    // The head of a UNITS record and one and a half reals: the second is 1/16.
    const LoadedLayout loaded =
        LoadBytes({0, 20, 0x03, 0x05, 0x41, 0x10, 0, 0, 0, 0, 0, 0, 0x40, 0x10});
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.database.userUnit, 1.0);
    EXPECT_EQ(loaded.database.metresPerUnit, 0.0625);
    EXPECT_EQ(LoadBytes({0, 6, 0x00, 0x02, 0x02}).database.version, 0x0200);
}

TEST(GdsReader, CountsPointsByTheRecordsLength) {
    // A cut record: one byte of a reference's two coordinates.
    EXPECT_EQ(LoadBytes({0, 4, 0x05, 0x02, 0, 4, 0x0A, 0x00, 0, 12, 0x10, 0x03, 7}).result, 0);
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Record(record::boundary);
        writer.RecordU16(record::layer, {1});
        writer.Record(record::xy, std::vector<std::uint8_t>(8 * 3 + 7, 1));
        writer.Record(record::endel);
    });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).boundaries, 0).points.size(), 3u);
}

TEST(GdsReader, TakesTheLengthOfARecordAsUnsigned) {
    std::vector<GdsPoint> points;
    for (std::int32_t i = 0; i < 8190; ++i) {
        points.push_back({i, i * 2});
    }
    const LoadedLayout loaded = LoadCell([&](GdsWriter& writer) { writer.Boundary(1, points); });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).boundaries, 0).points.size(), 8191u);
}

TEST(GdsReader, SkipsUnknownRecordsAndKnownTypesWithAnotherDataType) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.RecordText(0x7F06, "nobody knows");
        writer.Record(0x1103);
        writer.Record(0x0602);
        writer.Record(record::boundary);
        writer.RecordU16(record::layer, {1});
        writer.RecordU16(0x0D03, {9, 9});
        writer.RecordI32(record::xy, {0, 0, 10, 0, 10, 10, 0, 0});
        writer.RecordU16(0x2B02, {1});
        writer.RecordText(record::propvalue, "property");
        writer.Record(record::endel);
    });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).boundaries, 0).layer, 1);
}

// Elements

TEST(GdsReader, KeepsPolygonsAsTheFileGivesThem) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(65535, -10, -20, 30, 40);
        writer.Boundary(7, {{-2147483648LL, 0}, {2147483647, 1}});
    });
    ASSERT_EQ(loaded.result, 0);
    const std::span<GdsBoundary> boundaries = CellAt(loaded.database, 0).boundaries;
    ASSERT_EQ(boundaries.size(), 2u);
    EXPECT_EQ(boundaries[0].layer, 65535);
    EXPECT_EQ(PointsOf(boundaries[0]),
              (Points{{-10, -20}, {30, -20}, {30, 40}, {-10, 40}, {-10, -20}}));
    EXPECT_EQ(boundaries[0].bounds, (GdsRect{-10, -20, 30, 40}));
    EXPECT_EQ(boundaries[1].layer, 7);
    EXPECT_EQ(PointsOf(boundaries[1]),
              (Points{{-2147483648LL, 0}, {2147483647, 1}, {-2147483648LL, 0}}));
}

TEST(GdsReader, KeepsTheDatatypeOfEveryPolygonAndPath) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle({66, 20}, 0, 0, 10, 10);
        writer.Path({66, 44}, {{0, 0}, {50, 0}}, 10);
        writer.Path(66, {{0, 0}, {50, 0}}, 10);
        writer.Boundary({65535, 65535}, {{0, 0}, {10, 0}, {0, 10}});
        writer.Rectangle(66, 0, 0, 10, 10);
    });
    ASSERT_EQ(loaded.result, 0);
    std::vector<std::uint16_t> datatypes;
    for (const GdsBoundary& boundary : CellAt(loaded.database, 0).boundaries) {
        datatypes.push_back(boundary.datatype);
    }
    EXPECT_EQ(datatypes, (std::vector<std::uint16_t>{20, 44, 0, 65535, 0}));
}

/// The datatype of a polygon that has these records before its points, and of a path.
std::pair<std::uint16_t, std::uint16_t> DatatypesBehind(
    const std::function<void(GdsWriter& writer)>& write) {
    const LoadedLayout loaded = LoadCell([&](GdsWriter& writer) {
        writer.Rectangle({1, 7}, 0, 0, 10, 10);
        for (const std::uint16_t element : {record::boundary, record::path}) {
            writer.Record(element);
            write(writer);
            if (element == record::path) {
                writer.RecordI32(record::width, {10});
            }
            writer.RecordI32(record::xy, {0, 0, 10, 0});
            writer.Record(record::endel);
        }
    });
    EXPECT_EQ(loaded.result, 0);
    const std::span<GdsBoundary> boundaries = CellAt(loaded.database, 0).boundaries;
    return {At(boundaries, 1).datatype, At(boundaries, 2).datatype};
}

TEST(GdsReader, TakesAMissingOrShortDatatypeForNull) {
    using Datatypes = std::pair<std::uint16_t, std::uint16_t>;
    const auto layer = [](GdsWriter& writer) { writer.RecordU16(record::layer, {1}); };
    EXPECT_EQ(DatatypesBehind(layer), (Datatypes{0, 0}));
    EXPECT_EQ(DatatypesBehind([&](GdsWriter& writer) {
                  layer(writer);
                  writer.Record(record::datatype);
              }),
              (Datatypes{0, 0}));
    EXPECT_EQ(DatatypesBehind([&](GdsWriter& writer) {
                  layer(writer);
                  writer.Record(record::datatype, {5});
              }),
              (Datatypes{0, 0}));
    EXPECT_EQ(DatatypesBehind([&](GdsWriter& writer) {
                  layer(writer);
                  writer.RecordU16(0x0E03, {5});  // another data type: another record
              }),
              (Datatypes{0, 0}));
}

TEST(GdsReader, TakesADatatypeWhereverItStandsInAnElement) {
    using Datatypes = std::pair<std::uint16_t, std::uint16_t>;
    EXPECT_EQ(DatatypesBehind([](GdsWriter& writer) {
                  writer.RecordU16(record::datatype, {300, 9});  // more than there is to read
                  writer.RecordU16(record::layer, {1});
              }),
              (Datatypes{300, 300}));
    EXPECT_EQ(DatatypesBehind([](GdsWriter& writer) {
                  writer.RecordU16(record::datatype, {3});
                  writer.RecordU16(record::layer, {1});
                  writer.RecordU16(record::datatype, {4});
              }),
              (Datatypes{4, 4}));
}

TEST(GdsReader, PassesByDatatypesOutsidePolygonsAndPaths) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.RecordU16(record::datatype, {5});
        writer.Record(record::box);
        writer.RecordU16(record::datatype, {6});
        writer.RecordI32(record::xy, {0, 0});
        writer.Record(record::endel);
        writer.Record(record::text);
        writer.RecordU16(record::datatype, {7});
        writer.RecordI32(record::xy, {0, 0});
        writer.Record(record::endel);
        writer.Record(record::boundary);
        writer.RecordU16(record::layer, {1});
        writer.RecordI32(record::xy, {0, 0, 10, 0, 10, 10, 0, 0});
        writer.Record(record::endel);
    });
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).boundaries, 0).datatype, 0);
}

TEST(GdsReader, ReadsReferences) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("CHILD", {-5, 7}, {true, 2.5, 90.0});
        writer.Reference("CHILD", {1, 2});
        writer.EndCell();
        writer.BeginCell("CHILD");
    });
    ASSERT_EQ(loaded.result, 0);
    const std::span<GdsSref> srefs = CellAt(loaded.database, 0).srefs;
    ASSERT_EQ(srefs.size(), 2u);
    EXPECT_EQ(srefs[0].strans, 0x8000);
    EXPECT_EQ(srefs[0].mag, 2.5);
    EXPECT_EQ(srefs[0].angle, static_cast<double>(1.5707963267948966f));
    EXPECT_EQ(srefs[0].origin, (GdsPoint{-5, 7}));
    EXPECT_EQ(srefs[0].cell, &CellAt(loaded.database, 1));
    EXPECT_EQ(srefs[1].strans, 0);
    EXPECT_EQ(srefs[1].mag, 1.0);
    EXPECT_EQ(srefs[1].angle, 0.0);
    EXPECT_EQ(srefs[1].origin, (GdsPoint{1, 2}));
}

TEST(GdsReader, ReadsArrays) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Array("CHILD", 65535, 3, {1, 2}, {655351, 2}, {1, 32}, {false, 0.5, 180.0});
        writer.Array("CHILD", 1, 1, {0, 0}, {1, 0}, {0, 1});
        writer.EndCell();
        writer.BeginCell("CHILD");
    });
    ASSERT_EQ(loaded.result, 0);
    const std::span<GdsAref> arefs = CellAt(loaded.database, 0).arefs;
    ASSERT_EQ(arefs.size(), 2u);
    EXPECT_EQ(arefs[0].columns, 65535);
    EXPECT_EQ(arefs[0].rows, 3);
    EXPECT_EQ(PointsOf(arefs[0]), (Points{{1, 2}, {655351, 2}, {1, 32}}));
    EXPECT_EQ(arefs[0].mag, 0.5);
    EXPECT_EQ(arefs[0].angle, static_cast<double>(3.141592653589793f));
    EXPECT_EQ(arefs[0].cell, &CellAt(loaded.database, 1));
    EXPECT_EQ(arefs[1].mag, 1.0);
    EXPECT_EQ(arefs[1].angle, 0.0);
}

TEST(GdsReader, RoundsMagnificationsAndAnglesToSinglePrecision) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("CHILD", {0, 0}, {false, 0.1, 45.1});
        writer.EndCell();
        writer.BeginCell("CHILD");
    });
    const GdsSref& sref = At(CellAt(loaded.database, 0).srefs, 0);
    EXPECT_EQ(sref.mag, static_cast<double>(0.1f));
    EXPECT_EQ(sref.angle,
              static_cast<double>(static_cast<float>(45.1 * 3.141592653589793 / 180.0)));
}

TEST(GdsReader, ResetsAReferenceForTheNext) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        for (const bool full : {true, false}) {
            writer.Record(record::sref);
            if (full) {
                writer.RecordText(record::sname, "CHILD");
                writer.RecordU16(record::strans, {0x8006});
                writer.RecordReals(record::mag, {3.0});
                writer.RecordReals(record::angle, {10.0});
                writer.RecordI32(record::xy, {4, 5});
            }
            writer.Record(record::endel);
        }
        writer.EndCell();
        writer.BeginCell("CHILD");
        writer.EndCell();
        writer.BeginCell("");
    });
    ASSERT_EQ(loaded.result, 0);
    const std::span<GdsSref> srefs = CellAt(loaded.database, 0).srefs;
    EXPECT_EQ(At(srefs, 0).strans, 0x8006);
    EXPECT_EQ(At(srefs, 1).strans, 0);
    EXPECT_EQ(At(srefs, 1).mag, 1.0);
    EXPECT_EQ(At(srefs, 1).angle, 0.0);
    EXPECT_EQ(At(srefs, 1).origin, (GdsPoint{0, 0}));
    EXPECT_EQ(At(srefs, 1).cell, &CellAt(loaded.database, 2));
}

TEST(GdsReader, AllowsASecondPointRecordInAReference) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Record(record::sref);
        writer.RecordText(record::sname, "CHILD");
        writer.RecordI32(record::xy, {4, 5});
        writer.RecordI32(record::xy, {6, 7});
        writer.Record(record::endel);
        writer.EndCell();
        writer.BeginCell("CHILD");
    });
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).srefs, 0).origin, (GdsPoint{6, 7}));
}

TEST(GdsReader, AllowsAnEmptyPointRecordBeforeTheOneOfAPolygonOrPath) {
    for (const std::uint16_t element : {record::boundary, record::path}) {
        const LoadedLayout loaded = LoadCell([&](GdsWriter& writer) {
            writer.Record(element);
            writer.RecordU16(record::layer, {1});
            writer.Record(record::xy);
            writer.RecordI32(record::xy, {0, 0, 10, 10});
            writer.Record(record::endel);
        });
        EXPECT_EQ(loaded.result, 0);
        EXPECT_EQ(CellAt(loaded.database, 0).boundaries.size(), 1u);
    }
}

TEST(GdsReader, LeavesNoTraceOfATextButItsWidth) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Record(record::text);
        writer.RecordU16(record::layer, {9});
        writer.RecordU16(record::texttype, {0});
        writer.RecordU16(record::presentation, {5});
        writer.RecordI32(record::width, {10});
        writer.RecordU16(record::strans, {0x8000});
        writer.RecordReals(record::mag, {2.0});
        writer.RecordReals(record::angle, {90.0});
        writer.RecordI32(record::xy, {1, 2});
        writer.RecordText(record::string, "label");
        writer.Record(record::endel);
        for (int i = 0; i < 2; ++i) {
            writer.Record(record::path);
            writer.RecordU16(record::layer, {1});
            writer.RecordI32(record::xy, {0, 0, 100, 0});
            writer.Record(record::endel);
        }
    });
    ASSERT_EQ(loaded.result, 0);
    const GdsCell& cell = CellAt(loaded.database, 0);
    EXPECT_TRUE(cell.srefs.empty());
    ASSERT_EQ(cell.boundaries.size(), 2u);
    EXPECT_EQ(cell.boundaries[0].bounds, (GdsRect{0, -5, 100, 5}));
    EXPECT_EQ(cell.boundaries[1].bounds, (GdsRect{0, 0, 100, 0}));  // the width is used up
    EXPECT_EQ(cell.boundaries[0].layer, 1);
}

TEST(GdsReader, SkipsNodesAndBoxes) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Record(record::node);
        writer.RecordU16(record::layer, {1});
        writer.RecordU16(record::nodetype, {0});
        writer.RecordI32(record::xy, {1, 2, 3, 4});
        writer.Record(record::endel);
        writer.Record(record::box);
        writer.RecordU16(record::layer, {1});
        writer.RecordU16(record::boxtype, {0});
        writer.RecordI32(record::xy, {0, 0, 9, 0, 9, 9, 0, 9, 0, 0});
        writer.Record(record::endel);
    });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_TRUE(CellAt(loaded.database, 0).boundaries.empty());
}

TEST(GdsReader, GivesAnElementLeftOpenToTheStructureThatClosesIt) {
    GdsWriter writer;
    writer.BeginCell("A");
    writer.Record(record::boundary);
    writer.RecordU16(record::layer, {4});
    writer.EndCell();
    writer.RecordI32(record::xy, {0, 0, 10, 0, 10, 10, 0, 0});
    writer.BeginCell("B");
    writer.Record(record::endel);
    writer.EndCell();
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.result, 0);
    EXPECT_TRUE(CellAt(loaded.database, 0).boundaries.empty());
    ASSERT_EQ(CellAt(loaded.database, 1).boundaries.size(), 1u);
    EXPECT_EQ(CellAt(loaded.database, 1).boundaries[0].layer, 4);
}

// Paths

GdsRect BoundsOfPath(const GdsCell& cell, std::size_t index) {
    return At(cell.boundaries, index).bounds;
}

TEST(GdsReader, StoresPathsAsPolygons) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Path(12, {{0, 0}, {100, 0}}, 10, 2);
    });
    ASSERT_EQ(loaded.result, 0);
    const GdsBoundary& outline = At(CellAt(loaded.database, 0).boundaries, 0);
    EXPECT_EQ(outline.layer, 12);
    EXPECT_EQ(PointsOf(outline), (Points{{-5, 5}, {105, 5}, {105, -5}, {-5, -5}, {-5, 5}}));
}

TEST(GdsReader, ConvertsOnlyTheFirstPathOfEachUnsupportedType) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        for (const std::uint16_t type : {1, 4, 4, 1}) {
            writer.Path(1, {{0, 0}, {100, 0}}, 10, type);
        }
    });
    ASSERT_EQ(loaded.result, 0);
    const GdsCell& cell = CellAt(loaded.database, 0);
    EXPECT_EQ(BoundsOfPath(cell, 0), (GdsRect{-5, -5, 105, 5}));
    EXPECT_EQ(BoundsOfPath(cell, 1), (GdsRect{-5, -5, 105, 5}));
    EXPECT_EQ(BoundsOfPath(cell, 2), (GdsRect{0, -5, 100, 5}));
    EXPECT_EQ(BoundsOfPath(cell, 3), (GdsRect{0, -5, 100, 5}));
    EXPECT_EQ(loaded.lines, (Lines{warningType1, warningType4, "", headline,
                                   "--> \"TOP\" with size dx = 110 by dy = 10"}));
}

TEST(GdsReader, WarnsOfPathTypesWhenTheyAreReadAlsoOnceThePathIsRefused) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Path(1, {{0, 0}, {0, 0}}, 10, 1);
    });
    EXPECT_EQ(loaded.result, 3);
    EXPECT_EQ(loaded.lines, Lines{warningType1});
}

TEST(GdsReader, GivesFlushEndsToEveryOtherPathType) {
    for (const std::uint16_t type : {0, 3, 5, 65535}) {
        const LoadedLayout loaded = LoadCell([&](GdsWriter& writer) {
            writer.Path(1, {{0, 0}, {100, 0}}, 10, type);
        });
        EXPECT_EQ(loaded.result, 0);
        EXPECT_EQ(BoundsOfPath(CellAt(loaded.database, 0), 0), (GdsRect{0, -5, 100, 5}));
        EXPECT_EQ(loaded.lines.size(), 3u);
    }
}

TEST(GdsReader, PathsDoNotInheritTypeOrWidth) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Path(1, {{0, 0}, {100, 0}}, 10, 2);
        writer.Record(record::path);
        writer.RecordU16(record::layer, {1});
        writer.RecordI32(record::xy, {0, 0, 100, 0});
        writer.Record(record::endel);
    });
    EXPECT_EQ(BoundsOfPath(CellAt(loaded.database, 0), 1), (GdsRect{0, 0, 100, 0}));
}

TEST(GdsReader, TakesAnAbsoluteWidthForAHugeOne) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Path(1, {{0, 0}, {100, 0}}, -10);
    });
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).boundaries, 0).points[0],
              (GdsPoint{0, (4294967296 - 10) / 2}));
}

// Names and references

TEST(GdsReader, KeepsThePaddingOfANameAndStopsAtIt) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("ODD", {0, 0});
        writer.EndCell();
        writer.BeginCell("ODD");
    });
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(CellAt(loaded.database, 1).name, std::string("ODD\0", 4));
    EXPECT_EQ(NameText(CellAt(loaded.database, 1).name), "ODD");
    EXPECT_EQ(loaded.lines.back(), "--> \"ODD\" with size dx = 0 by dy = 0");
}

TEST(GdsReader, ComparesNamesUpToTheFirstNul) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference(std::string_view("CHILD\0one", 9), {0, 0});
        writer.EndCell();
        writer.BeginCell(std::string_view("CHILD\0two", 9));
    });
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).srefs, 0).cell, &CellAt(loaded.database, 1));
}

TEST(GdsReader, BindsReferencesToCellsEarlierAndLaterInTheFile) {
    GdsWriter writer;
    for (const auto& [name, child] : {std::pair("A", ""), {"B", "A"}, {"C", "D"}, {"D", "A"}}) {
        writer.BeginCell(name);
        if (*child != '\0') {
            writer.Reference(child, {0, 0});
            writer.Array(child, 1, 1, {0, 0}, {1, 0}, {0, 1});
        }
        writer.EndCell();
    }
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.result, 0);
    const GrowingArray<GdsCell>& cells = loaded.database.cells;
    EXPECT_EQ(At(cells[1].srefs, 0).cell, &cells[0]);
    EXPECT_EQ(At(cells[2].srefs, 0).cell, &cells[3]);
    EXPECT_EQ(At(cells[2].arefs, 0).cell, &cells[3]);
    EXPECT_EQ(At(cells[3].arefs, 0).cell, &cells[0]);
}

TEST(GdsReader, BindsReferencesToTheFirstOfTwoCellsWithOneName) {
    GdsWriter writer;
    for (const std::int32_t size : {10, 20}) {
        writer.BeginCell("TWIN");
        writer.Rectangle(1, 0, 0, size, size);
        writer.EndCell();
    }
    writer.BeginCell("TOP");
    writer.Reference("TWIN", {0, 0});
    writer.EndCell();
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 2).srefs, 0).cell, &CellAt(loaded.database, 0));
    EXPECT_EQ(loaded.lines, (Lines{"", headline, "--> \"TWIN\" with size dx = 10 by dy = 10",
                                   "--> \"TWIN\" with size dx = 20 by dy = 20",
                                   "--> \"TOP\" with size dx = 10 by dy = 10"}));
}

TEST(GdsReader, ASecondCellOfANameMayReferToThatName) {
    GdsWriter writer;
    writer.BeginCell("TWIN");
    writer.EndCell();
    writer.BeginCell("TWIN");
    writer.Reference("TWIN", {0, 0});
    writer.EndCell();
    EXPECT_EQ(Load(writer).result, 0);
}

TEST(GdsReader, TreatsAMissingNameAsTheEmptyText) {
    GdsWriter writer;
    writer.BeginCell("A");
    writer.Record(record::sref);
    writer.RecordI32(record::xy, {1, 1});
    writer.Record(record::endel);
    writer.EndCell();
    writer.Record(record::bgnstr);  // no STRNAME, and "A" is not taken over
    writer.EndCell();
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).srefs, 0).cell, &CellAt(loaded.database, 1));
    EXPECT_EQ(loaded.lines.back(), "--> \"\" with size dx = 0 by dy = 0");
}

TEST(GdsReader, TheLastNameOfAStructureCounts) {
    GdsWriter writer;
    writer.BeginCell("FIRST");
    writer.RecordText(record::strname, "LAST");
    writer.EndCell();
    EXPECT_EQ(Load(writer).lines.back(), "--> \"LAST\" with size dx = 0 by dy = 0");
}

// The console

TEST(GdsReader, ListsWarningsThenCellsInTheOrderOfTheFile) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Reference("PART", {1000, 1000});
    writer.Boundary(3, {{-5, 1}, {5, 1}});
    writer.EndCell();
    writer.BeginCell("PART");
    writer.Rectangle(1, 100, 100, 200, 200);
    writer.Path(1, {{0, 0}, {0, 50}}, 0);
    writer.EndCell();
    writer.EndLibrary();
    const LoadedLayout loaded = Load(writer);
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.lines,
              (Lines{"WARNING: Zero size boundary element in cell TOP with at (-5, 1)",
                     "WARNING: Zero size boundary element in cell PART with at (0, 0)", "",
                     headline, "--> \"TOP\" with size dx = 1205 by dy = 1200",
                     "--> \"PART\" with size dx = 200 by dy = 200"}));
}

TEST(GdsReader, WidensTheBytesOfANameBySignExtension) {
    const LoadedLayout loaded =
        LoadCell([](GdsWriter& writer) { writer.RecordText(record::strname, "\xE4"); });
    EXPECT_EQ(loaded.lines.back(),
              "--> \"" + Utf8FromWide(L"\xFFE4") + "\" with size dx = 0 by dy = 0");
}

TEST(GdsReader, ReadsAFileWithAWidePath) {
    const TempFolder folder;
    GdsWriter writer;
    writer.BeginCell("A");
    writer.EndCell();
    const std::filesystem::path path = folder.Path() / PathFromText(L"\x6F22\x5B57 \xE4.gds");
    writer.Save(path);
    GdsDatabase database;
    RecordingConsole console;
    EXPECT_EQ(ReadGdsFile(database, path, &console), std::nullopt);
    EXPECT_EQ(database.cells.size(), 1u);
}

}  // namespace
}  // namespace zelmo
