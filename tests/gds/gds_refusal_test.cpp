#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "gds/gds_reader.h"
#include "tests/gds/layout_file.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

// What the reader refuses, and with which code.

namespace zelmo {
namespace {

constexpr std::int32_t accepted = 0;

std::int32_t ResultOfPath(const std::filesystem::path& path) {
    GdsDatabase database;
    RecordingConsole console;
    const std::int32_t result = CodeOf(ReadGdsFile(database, path, &console));
    EXPECT_TRUE(console.lines.empty());
    return result;
}

/// The code for records that stand alone in a file.
template <typename Write>
std::int32_t ResultOf(Write write) {
    GdsWriter writer;
    write(writer);
    return Load(writer).result;
}

std::int32_t ResultOfRecord(std::uint16_t code) {
    return ResultOf([&](GdsWriter& writer) { writer.Record(code); });
}

template <typename Write>
std::int32_t ResultOfElement(std::uint16_t element, Write write) {
    return LoadCell([&](GdsWriter& writer) {
               writer.Record(element);
               write(writer);
               writer.Record(record::endel);
           })
        .result;
}

std::int32_t ResultOfElementRecord(std::uint16_t element, std::uint16_t code) {
    return ResultOfElement(element, [&](GdsWriter& writer) { writer.Record(code); });
}

TEST(GdsRefusal, Code2AFileThatIsNotThere) {
    const TempFolder folder;
    EXPECT_EQ(ResultOfPath(folder.Path() / "missing.gds"), 2);
}

TEST(GdsRefusal, Code2AFolderInTheFilesPlace) {
    const TempFolder folder;
    EXPECT_EQ(ResultOfPath(folder.Path()), 2);
}

TEST(GdsRefusal, Code3APathThatCannotBeExpanded) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Path(1, {{0, 0}, {100, 0}, {200, 0}}, 10);
    });
    EXPECT_EQ(loaded.result, 3);
    EXPECT_TRUE(loaded.lines.empty());
}

TEST(GdsRefusal, Code3APathOfOnePoint) {
    EXPECT_EQ(LoadCell([](GdsWriter& writer) { writer.Path(1, {{0, 0}}, 10); }).result, 3);
}

TEST(GdsRefusal, Code4UnitsThatAreNotAboveZero) {
    const auto units = [](double user, double metres) {
        return ResultOf([&](GdsWriter& writer) {
            writer.RecordReals(record::units, {user, metres});
        });
    };
    EXPECT_EQ(units(0.0, 1e-9), 4);
    EXPECT_EQ(units(0.001, 0.0), 4);
    EXPECT_EQ(units(-0.001, 1e-9), 4);
    EXPECT_EQ(units(0.001, -1e-9), 4);
    EXPECT_EQ(units(0.001, 1e-9), accepted);
}

TEST(GdsRefusal, Code4UnitsWithoutTheirNumbers) {
    EXPECT_EQ(ResultOfRecord(record::units), 4);
}

TEST(GdsRefusal, Code5ARecordLengthBelowFour) {
    for (std::uint8_t length = 0; length < 4; ++length) {
        EXPECT_EQ(LoadBytes({0, length, 0x11, 0x00, 0, 0}).result, 5);
    }
}

TEST(GdsRefusal, Code5ZerosInPlaceOfTheEndOfTheLibrary) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.Bytes().resize(writer.Bytes().size() + 2048);
    EXPECT_EQ(Load(writer).result, 5);
}

TEST(GdsRefusal, Code6AStructureInAStructure) {
    EXPECT_EQ(LoadCell([](GdsWriter& writer) { writer.Record(record::bgnstr); }).result, 6);
}

TEST(GdsRefusal, Code7TheEndOfAStructureOutsideAny) {
    EXPECT_EQ(ResultOfRecord(record::endstr), 7);
}

struct ElementCode {
    std::uint16_t element;
    std::int32_t refusal;
};

class GdsElementRefusal : public testing::TestWithParam<ElementCode> {};

TEST_P(GdsElementRefusal, OutsideAStructure) {
    EXPECT_EQ(ResultOfRecord(GetParam().element), GetParam().refusal);
}

TEST_P(GdsElementRefusal, WhileAnElementIsOpen) {
    for (const std::uint16_t open : {record::boundary, record::path, record::sref, record::aref,
                                     record::text, record::node, record::box}) {
        EXPECT_EQ(ResultOfElementRecord(open, GetParam().element), GetParam().refusal) << open;
    }
}

TEST_P(GdsElementRefusal, AfterAnElementLeftOpenAtTheEndOfAStructure) {
    const std::int32_t result = ResultOf([](GdsWriter& writer) {
        writer.BeginCell("A");
        writer.Record(record::text);
        writer.EndCell();
        writer.BeginCell("B");
        writer.Record(GetParam().element);
    });
    EXPECT_EQ(result, GetParam().refusal);
}

std::string CodeName(const testing::TestParamInfo<ElementCode>& parameter) {
    return "Code" + std::to_string(parameter.param.refusal);
}

INSTANTIATE_TEST_SUITE_P(
    Codes8To14, GdsElementRefusal,
    testing::Values(ElementCode{record::boundary, 8}, ElementCode{record::path, 9},
                    ElementCode{record::sref, 10}, ElementCode{record::aref, 11},
                    ElementCode{record::text, 12}, ElementCode{record::node, 13},
                    ElementCode{record::box, 14}),
    CodeName);

TEST(GdsRefusal, Code15TheEndOfAnElementWithNoneOpen) {
    EXPECT_EQ(LoadCell([](GdsWriter& writer) { writer.Record(record::endel); }).result, 15);
}

TEST(GdsRefusal, Code15TheEndOfAnElementOutsideAStructure) {
    const std::int32_t result = ResultOf([](GdsWriter& writer) {
        writer.BeginCell("A");
        writer.Record(record::text);
        writer.EndCell();
        writer.Record(record::endel);
    });
    EXPECT_EQ(result, 15);
}

TEST(GdsRefusal, Code16AReferenceNameOutsideReferences) {
    EXPECT_EQ(ResultOfRecord(record::sname), 16);
    EXPECT_EQ(ResultOfElementRecord(record::boundary, record::sname), 16);
    EXPECT_EQ(ResultOfElementRecord(record::text, record::sname), 16);
}

TEST(GdsRefusal, Code17ColumnsAndRowsOutsideAnArray) {
    EXPECT_EQ(ResultOfRecord(record::colrow), 17);
    EXPECT_EQ(ResultOfElementRecord(record::sref, record::colrow), 17);
}

TEST(GdsRefusal, Code18APathTypeOutsideAPath) {
    EXPECT_EQ(ResultOfRecord(record::pathtype), 18);
    EXPECT_EQ(ResultOfElementRecord(record::boundary, record::pathtype), 18);
}

TEST(GdsRefusal, Code18APathTypeInATextThoughTheFormatAllowsIt) {
    EXPECT_EQ(ResultOfElementRecord(record::text, record::pathtype), 18);
}

TEST(GdsRefusal, Code19TransformFlagsOutsideReferencesAndTexts) {
    EXPECT_EQ(ResultOfRecord(record::strans), 19);
    EXPECT_EQ(ResultOfElementRecord(record::node, record::strans), 19);
    EXPECT_EQ(ResultOfElementRecord(record::box, record::strans), 19);
}

TEST(GdsRefusal, Code20AnAngleOutsideReferencesAndTexts) {
    EXPECT_EQ(ResultOfRecord(record::angle), 20);
    EXPECT_EQ(ResultOfElementRecord(record::node, record::angle), 20);
    EXPECT_EQ(ResultOfElementRecord(record::box, record::angle), 20);
}

TEST(GdsRefusal, Code21AMagnificationOutsideReferencesAndTexts) {
    EXPECT_EQ(ResultOfRecord(record::mag), 21);
    EXPECT_EQ(ResultOfElementRecord(record::node, record::mag), 21);
    EXPECT_EQ(ResultOfElementRecord(record::box, record::mag), 21);
}

TEST(GdsRefusal, Code22PointsWithNoElementOpen) {
    EXPECT_EQ(ResultOfRecord(record::xy), 22);
    EXPECT_EQ(LoadCell([](GdsWriter& writer) { writer.Record(record::xy); }).result, 22);
}

std::int32_t ResultOfPointCount(std::uint16_t element, std::size_t count) {
    return ResultOfElement(element, [&](GdsWriter& writer) {
        writer.RecordText(record::sname, "TOP");
        writer.RecordI32(record::xy, std::vector<std::int32_t>(2 * count, 5));
    });
}

TEST(GdsRefusal, Code22AReferenceWithoutExactlyOnePoint) {
    EXPECT_EQ(ResultOfPointCount(record::sref, 0), 22);
    EXPECT_EQ(ResultOfPointCount(record::sref, 2), 22);
    EXPECT_NE(ResultOfPointCount(record::sref, 1), 22);
}

TEST(GdsRefusal, Code22AnArrayWithoutExactlyThreePoints) {
    for (const std::size_t count : {0, 1, 2, 4}) {
        EXPECT_EQ(ResultOfPointCount(record::aref, count), 22) << count;
    }
    EXPECT_NE(ResultOfPointCount(record::aref, 3), 22);
}

TEST(GdsRefusal, Code22ASecondListOfPointsInAPolygonPathOrArray) {
    for (const std::uint16_t element : {record::boundary, record::path, record::aref}) {
        const std::int32_t result = ResultOfElement(element, [](GdsWriter& writer) {
            writer.RecordI32(record::xy, {0, 0, 10, 0, 10, 10});
            writer.RecordI32(record::xy, {0, 0, 10, 0, 10, 10});
        });
        EXPECT_EQ(result, 22) << element;
    }
}

TEST(GdsRefusal, Code25ALayerWithNoElementOpen) {
    EXPECT_EQ(ResultOfRecord(record::layer), 25);
}

TEST(GdsRefusal, Code25ALayerInAReference) {
    EXPECT_EQ(ResultOfElementRecord(record::sref, record::layer), 25);
    EXPECT_EQ(ResultOfElementRecord(record::aref, record::layer), 25);
}

TEST(GdsRefusal, Code26AWidthOutsidePathsAndTexts) {
    EXPECT_EQ(ResultOfRecord(record::width), 26);
    EXPECT_EQ(ResultOfElementRecord(record::boundary, record::width), 26);
    EXPECT_EQ(ResultOfElementRecord(record::box, record::width), 26);
}

TEST(GdsRefusal, Code27AStructureNameOutsideAStructure) {
    EXPECT_EQ(ResultOfRecord(record::strname), 27);
}

TEST(GdsRefusal, Code28APolygonWithoutALayer) {
    EXPECT_EQ(ResultOfElement(record::boundary,
                              [](GdsWriter& writer) {
                                  writer.RecordI32(record::xy, {0, 0, 10, 0, 10, 10, 0, 0});
                              }),
              28);
}

TEST(GdsRefusal, Code28APathWithoutALayer) {
    EXPECT_EQ(ResultOfElement(record::path,
                              [](GdsWriter& writer) {
                                  writer.RecordI32(record::xy, {0, 0, 10, 0});
                              }),
              28);
}

TEST(GdsRefusal, Code28TheLayerOfTheElementBeforeDoesNotCount) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(1, 0, 0, 10, 10);
        writer.Record(record::boundary);
        writer.RecordI32(record::xy, {0, 0, 10, 0, 10, 10, 0, 0});
        writer.Record(record::endel);
    });
    EXPECT_EQ(loaded.result, 28);
}

TEST(GdsRefusal, Code29AReferenceToAMissingCell) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("NOWHERE", {0, 0});
    });
    EXPECT_EQ(loaded.result, 29);
    EXPECT_EQ(At(CellAt(loaded.database, 0).srefs, 0).cell, nullptr);
    EXPECT_TRUE(loaded.lines.empty());
}

TEST(GdsRefusal, Code29AnArrayOfAMissingCell) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Array("NOWHERE", 2, 2, {0, 0}, {20, 0}, {0, 20});
    });
    EXPECT_EQ(loaded.result, 29);
}

TEST(GdsRefusal, Code29ANameThatDiffersInCase) {
    EXPECT_EQ(LoadCell([](GdsWriter& writer) { writer.Reference("top", {0, 0}); }).result, 29);
}

TEST(GdsRefusal, Code30ACellThatRefersToItself) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("TOP", {100, 0});
    });
    EXPECT_EQ(loaded.result, 30);
    EXPECT_TRUE(loaded.lines.empty());
}

TEST(GdsRefusal, Code30ACellThatHoldsAnArrayOfItselfEvenWithoutInstances) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Array("TOP", 0, 0, {0, 0}, {20, 0}, {0, 20});
    });
    EXPECT_EQ(loaded.result, 30);
}

TEST(GdsRefusal, Code30ACircleOfSeveralCells) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (const auto& [name, child] : {std::pair("A", "B"), {"B", "C"}, {"C", "D"}, {"D", "B"}}) {
        writer.BeginCell(name);
        writer.Rectangle(1, 0, 0, 10, 10);
        writer.Reference(child, {0, 0});
        writer.EndCell();
    }
    writer.EndLibrary();
    EXPECT_EQ(Load(writer).result, 30);
}

TEST(GdsRefusal, AMissingCellIsFoundBeforeACircle) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("TOP", {0, 0});
        writer.Reference("NOWHERE", {0, 0});
    });
    EXPECT_EQ(loaded.result, 29);
}

TEST(GdsRefusal, ZeroSizeWarningsComeBeforeARefusedReference) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Boundary(1, {{3, 7}, {9, 7}});
        writer.Reference("TOP", {0, 0});
    });
    EXPECT_EQ(loaded.result, 30);
    EXPECT_EQ(loaded.lines, std::vector<std::string>{
                                "WARNING: Zero size boundary element in cell TOP with at (3, 7)"});
}

TEST(GdsRefusal, KeepsTheCellsReadSoFar) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("A");
    writer.EndCell();
    writer.Record(record::endstr);
    const LoadedLayout loaded = Load(writer);
    EXPECT_EQ(loaded.result, 7);
    EXPECT_EQ(loaded.database.cells.size(), 1u);
}

// The whole state machine, record by record in every state.

struct RecordInState {
    std::uint16_t code;
    std::string states;   ///< where it is accepted, see stateLetters
    bool needsStructure;  ///< accepted inside structures only
    bool needsNoStructure;
    std::int32_t refusal;
};

/// none, boundary, path, sref, aref, text, node, box
constexpr char stateLetters[] = "-bpsatnx";
constexpr std::uint16_t stateElements[] = {0,
                                           record::boundary,
                                           record::path,
                                           record::sref,
                                           record::aref,
                                           record::text,
                                           record::node,
                                           record::box};

const RecordInState stateMachine[] = {
    {record::header, "-bpsatnx", false, false, 0},
    {record::units, "-bpsatnx", false, false, 0},
    {record::endlib, "-bpsatnx", false, false, 0},
    {record::bgnstr, "-bpsatnx", false, true, 6},
    {record::strname, "-bpsatnx", true, false, 27},
    {record::endstr, "-bpsatnx", true, false, 7},
    {record::boundary, "-", true, false, 8},
    {record::path, "-", true, false, 9},
    {record::sref, "-", true, false, 10},
    {record::aref, "-", true, false, 11},
    {record::text, "-", true, false, 12},
    {record::node, "-", true, false, 13},
    {record::box, "-", true, false, 14},
    {record::layer, "bptnx", false, false, 25},
    {record::width, "pt", false, false, 26},
    {record::pathtype, "p", false, false, 18},
    {record::xy, "bpsatnx", false, false, 22},
    {record::sname, "sa", false, false, 16},
    {record::colrow, "a", false, false, 17},
    {record::strans, "sat", false, false, 19},
    {record::mag, "sat", false, false, 21},
    {record::angle, "sat", false, false, 20},
    {record::endel, "bpsatnx", true, false, 15},
    {record::datatype, "-bpsatnx", false, false, 0},
    {0x1002, "-bpsatnx", false, false, 0},  // XY of another data type is another record
};

/// A file that brings the reader into a state and ends with the record.
GdsWriter FileWithRecord(std::size_t state, bool inStructure, std::uint16_t code) {
    GdsWriter writer;
    writer.BeginCell("A");
    if (state != 0) {
        writer.Record(stateElements[state]);
    }
    if (code == record::endel && (stateLetters[state] == 'b' || stateLetters[state] == 'p')) {
        writer.RecordU16(record::layer, {1});
        writer.RecordI32(record::xy, {0, 0, 10, 10});
    }
    if (!inStructure) {
        writer.EndCell();
    }
    if (code == record::units) {
        writer.RecordReals(code, {0.001, 1e-9});
    } else if (code == record::xy) {
        writer.RecordI32(code, std::vector<std::int32_t>(stateLetters[state] == 'a' ? 6 : 2));
    } else {
        writer.Record(code);
    }
    return writer;
}

TEST(GdsRefusal, EveryRecordInEveryState) {
    for (const RecordInState& rule : stateMachine) {
        for (std::size_t state = 0; state < 8; ++state) {
            for (const bool inStructure : {false, true}) {
                const bool fits = rule.states.find(stateLetters[state]) != std::string::npos &&
                                  (inStructure ? !rule.needsNoStructure : !rule.needsStructure);
                EXPECT_EQ(Load(FileWithRecord(state, inStructure, rule.code)).result,
                          fits ? accepted : rule.refusal)
                    << std::hex << rule.code << " in state " << stateLetters[state]
                    << (inStructure ? " inside" : " outside");
            }
        }
    }
}

// Elements without points

template <typename Write>
void ExpectOutOfRange(Write write) {
    try {
        LoadCell(write);
        FAIL() << "no exception";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector subscript");
    }
}

TEST(GdsRefusal, APathWithoutPointsThrows) {
    ExpectOutOfRange([](GdsWriter& writer) { writer.Path(1, {}, 10); });
}

TEST(GdsRefusal, APolygonWithoutPointsThrows) {
    ExpectOutOfRange([](GdsWriter& writer) { writer.Boundary(1, {}); });
}

TEST(GdsRefusal, AnArrayWithoutPointsThrows) {
    ExpectOutOfRange([](GdsWriter& writer) {
        writer.Record(record::aref);
        writer.RecordText(record::sname, "CHILD");
        writer.Record(record::endel);
        writer.EndCell();
        writer.BeginCell("CHILD");
    });
}

TEST(GdsRefusal, APathWithoutALayerIsRefusedBeforeItsPointsAreMissed) {
    EXPECT_EQ(ResultOfElement(record::path, [](GdsWriter&) {}), 28);
}

}  // namespace
}  // namespace zelmo
