#include "examples/gds_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <stdexcept>

#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The value of a real by the definition of the format, in double precision.
double RealValue(const Bytes& bytes) {
    double mantissa = 0.0;
    double weight = 1.0;
    for (std::size_t i = 1; i < 8; ++i) {
        weight /= 256.0;
        mantissa += bytes[i] * weight;
    }
    const double scale = std::pow(16.0, (bytes[0] & 0x7F) - 64);
    return (bytes[0] & 0x80) != 0 ? -scale * mantissa : scale * mantissa;
}

struct StreamRecord {
    std::uint16_t code = 0;
    Bytes data;
};

std::vector<StreamRecord> Records(const Bytes& bytes) {
    std::vector<StreamRecord> records;
    std::size_t at = 0;
    while (at + 4 <= bytes.size()) {
        const std::size_t length = static_cast<std::size_t>(bytes[at] << 8 | bytes[at + 1]);
        if (length < 4 || at + length > bytes.size()) {
            ADD_FAILURE() << "record at " << at << " has length " << length;
            break;
        }
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        records.push_back({static_cast<std::uint16_t>(bytes[at + 2] << 8 | bytes[at + 3]),
                           Bytes(begin + 4, begin + static_cast<std::ptrdiff_t>(length))});
        at += length;
    }
    EXPECT_EQ(at, bytes.size());
    return records;
}

std::vector<std::uint16_t> Codes(const Bytes& bytes) {
    std::vector<std::uint16_t> codes;
    for (const StreamRecord& record : Records(bytes)) {
        codes.push_back(record.code);
    }
    return codes;
}

TEST(GdsReal8, HasTheBytesOfWellKnownValues) {
    EXPECT_EQ(DoubleToGdsReal8(1.0), (Bytes{0x41, 0x10, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(DoubleToGdsReal8(-1.0), (Bytes{0xC1, 0x10, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(DoubleToGdsReal8(0.0), Bytes(8, 0));
    EXPECT_EQ(DoubleToGdsReal8(-0.0), Bytes(8, 0));
    EXPECT_EQ(DoubleToGdsReal8(1e-9), (Bytes{0x39, 0x44, 0xB8, 0x2F, 0xA0, 0x9B, 0x5A, 0x54}));
    EXPECT_EQ(DoubleToGdsReal8(0.001), (Bytes{0x3E, 0x41, 0x89, 0x37, 0x4B, 0xC6, 0xA7, 0xF0}));
    EXPECT_EQ(DoubleToGdsReal8(90.0), (Bytes{0x42, 0x5A, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(DoubleToGdsReal8(16.0), (Bytes{0x42, 0x10, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(DoubleToGdsReal8(0.5), (Bytes{0x40, 0x80, 0, 0, 0, 0, 0, 0}));
}

TEST(GdsReal8, KeepsEveryBitOfADouble) {
    std::uint64_t state = 12345;
    for (int i = 0; i < 20000; ++i) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        const double mantissa = static_cast<double>(state >> 11) + 1.0;
        const double value = std::ldexp(mantissa, static_cast<int>(state % 300) - 200);
        const double signedValue = i % 2 == 0 ? value : -value;
        const Bytes bytes = DoubleToGdsReal8(signedValue);
        ASSERT_EQ(RealValue(bytes), signedValue);
        ASSERT_NE(bytes[1] & 0xF0, 0) << "not normalised: " << signedValue;
    }
}

TEST(GdsReal8, RefusesWhatTheFormatCannotHold) {
    EXPECT_THROW(DoubleToGdsReal8(std::ldexp(1.0, 252)), std::out_of_range);
    EXPECT_NO_THROW(DoubleToGdsReal8(std::ldexp(1.0, 251)));
    EXPECT_THROW(DoubleToGdsReal8(std::numeric_limits<double>::infinity()), std::out_of_range);
    EXPECT_THROW(DoubleToGdsReal8(std::nan("")), std::out_of_range);
}

TEST(GdsReal8, LosesDigitsBelowTheSmallestExponentAndThenBecomesZero) {
    EXPECT_EQ(DoubleToGdsReal8(std::ldexp(1.0, -260)), (Bytes{0, 0x10, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(DoubleToGdsReal8(std::ldexp(1.0, -312)), (Bytes{0, 0, 0, 0, 0, 0, 0, 1}));
    EXPECT_EQ(DoubleToGdsReal8(std::ldexp(1.0, -320)), Bytes(8, 0));
}

TEST(GdsWriter, WritesLengthAndCodeBigEndianBeforeTheData) {
    GdsWriter writer;
    writer.Record(0x1234, {7, 8, 9});
    writer.Record(0x1100);
    EXPECT_EQ(writer.Bytes(), (Bytes{0, 7, 0x12, 0x34, 7, 8, 9, 0, 4, 0x11, 0}));
}

TEST(GdsWriter, WritesNumbersBigEndian) {
    GdsWriter writer;
    writer.RecordU16(0x0D02, {0x0102, 0xFFFE});
    writer.RecordI32(0x1003, {-2, 0x01020304});
    EXPECT_EQ(writer.Bytes(), (Bytes{0,    8, 0x0D, 2,    1,    2,    0xFF, 0xFE, 0, 12,
                                     0x10, 3, 0xFF, 0xFF, 0xFF, 0xFE, 1,    2,    3, 4}));
}

TEST(GdsWriter, ARecordHoldsUpTo65535Bytes) {
    GdsWriter writer;
    writer.Record(0x1003, Bytes(65530, 1));
    EXPECT_EQ(writer.Bytes()[0], 0xFF);
    EXPECT_EQ(writer.Bytes()[1], 0xFE);
    EXPECT_EQ(writer.Bytes().size(), 65534u);
    EXPECT_NO_THROW(writer.Record(0x1003, Bytes(65531, 1)));
    EXPECT_THROW(writer.Record(0x1003, Bytes(65532, 1)), std::length_error);
}

TEST(GdsWriter, APolygonHoldsUpTo8190CornersAndItsClosingPoint) {
    std::vector<GdsPoint> points;
    for (int i = 0; i < 8190; ++i) {
        points.push_back({i, i % 7});
    }
    GdsWriter writer;
    writer.Boundary(1, points);
    EXPECT_EQ(Records(writer.Bytes())[3].data.size(), 8191u * 8);
    points.push_back({0, 9});
    EXPECT_THROW(writer.Boundary(1, points), std::length_error);
}

TEST(GdsWriter, PolygonsCloseOnTheirFirstPoint) {
    GdsWriter writer;
    writer.Boundary(258, {{1, 2}, {30, 2}, {30, -4}});
    const std::vector<StreamRecord> records = Records(writer.Bytes());
    EXPECT_EQ(Codes(writer.Bytes()),
              (std::vector<std::uint16_t>{0x0800, 0x0D02, 0x0E02, 0x1003, 0x1100}));
    EXPECT_EQ(records[1].data, (Bytes{1, 2}));
    EXPECT_EQ(records[3].data,
              (Bytes{0, 0, 0, 1,  0,    0,    0,    2,    0, 0, 0, 30, 0, 0, 0, 2,
                     0, 0, 0, 30, 0xFF, 0xFF, 0xFF, 0xFC, 0, 0, 0, 1,  0, 0, 0, 2}));
}

TEST(GdsWriter, RectanglesRunCounterClockwiseFromTheirLowerLeftCorner) {
    GdsWriter rectangle;
    rectangle.Rectangle(3, 0, 1, 10, 20);
    GdsWriter polygon;
    polygon.Boundary(3, {{0, 1}, {10, 1}, {10, 20}, {0, 20}});
    EXPECT_EQ(rectangle.Bytes(), polygon.Bytes());
}

TEST(GdsWriter, OddNamesArePaddedWithANul) {
    GdsWriter writer;
    writer.BeginCell("ABC");
    writer.Reference("XY", {});
    writer.EndCell();
    const std::vector<StreamRecord> records = Records(writer.Bytes());
    EXPECT_EQ(records[1].code, 0x0606);
    EXPECT_EQ(records[1].data, (Bytes{'A', 'B', 'C', 0}));
    EXPECT_EQ(records[3].code, 0x1206);
    EXPECT_EQ(records[3].data, (Bytes{'X', 'Y'}));
}

TEST(GdsWriter, PathsCarryTypeWidthAndTheirOpenCentreLine) {
    GdsWriter writer;
    writer.Path(5, {{0, 0}, {100, 0}}, 10, 2);
    const std::vector<StreamRecord> records = Records(writer.Bytes());
    EXPECT_EQ(Codes(writer.Bytes()),
              (std::vector<std::uint16_t>{0x0900, 0x0D02, 0x0E02, 0x2102, 0x0F03, 0x1003, 0x1100}));
    EXPECT_EQ(records[3].data, (Bytes{0, 2}));
    EXPECT_EQ(records[4].data, (Bytes{0, 0, 0, 10}));
    EXPECT_EQ(records[5].data, (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 0, 0, 0, 0}));
}

TEST(GdsWriter, ReferencesSayOnlyWhatDiffersFromAnUprightPlacement) {
    GdsWriter plain;
    plain.Reference("AB", {1, 2});
    EXPECT_EQ(Codes(plain.Bytes()), (std::vector<std::uint16_t>{0x0A00, 0x1206, 0x1003, 0x1100}));

    GdsWriter mirrored;
    mirrored.Reference("AB", {1, 2}, {true, 1.0, 0.0});
    EXPECT_EQ(Codes(mirrored.Bytes()),
              (std::vector<std::uint16_t>{0x0A00, 0x1206, 0x1A01, 0x1003, 0x1100}));
    EXPECT_EQ(Records(mirrored.Bytes())[2].data, (Bytes{0x80, 0}));

    GdsWriter turned;
    turned.Reference("AB", {1, 2}, {false, 2.0, 90.0});
    EXPECT_EQ(Codes(turned.Bytes()),
              (std::vector<std::uint16_t>{0x0A00, 0x1206, 0x1A01, 0x1B05, 0x1C05, 0x1003, 0x1100}));
    EXPECT_EQ(Records(turned.Bytes())[2].data, (Bytes{0, 0}));
    EXPECT_EQ(Records(turned.Bytes())[3].data, DoubleToGdsReal8(2.0));
    EXPECT_EQ(Records(turned.Bytes())[4].data, DoubleToGdsReal8(90.0));
}

TEST(GdsWriter, ArraysCarryTheirCountsAndThreePoints) {
    GdsWriter writer;
    writer.Array("AB", 3, 2, {10, 20}, {40, 20}, {10, 60});
    const std::vector<StreamRecord> records = Records(writer.Bytes());
    EXPECT_EQ(Codes(writer.Bytes()),
              (std::vector<std::uint16_t>{0x0B00, 0x1206, 0x1302, 0x1003, 0x1100}));
    EXPECT_EQ(records[2].data, (Bytes{0, 3, 0, 2}));
    EXPECT_EQ(records[3].data, (Bytes{0, 0, 0, 10, 0, 0, 0, 20, 0, 0, 0, 40,
                                      0, 0, 0, 20, 0, 0, 0, 10, 0, 0, 0, 60}));
}

TEST(GdsWriter, RefusesCoordinatesBeyond32Bits) {
    GdsWriter writer;
    EXPECT_NO_THROW(writer.Reference("A", {2147483647, -2147483647 - 1}));
    EXPECT_THROW(writer.Reference("A", {2147483648, 0}), std::out_of_range);
    EXPECT_THROW(writer.Reference("A", {0, -2147483649}), std::out_of_range);
}

TEST(GdsWriter, ALibraryHasHeaderTimesNameAndUnits) {
    GdsWriter writer;
    writer.BeginLibrary(0.0005, 5e-10);
    writer.BeginCell("TOP");
    writer.EndCell();
    writer.EndLibrary();
    const std::vector<StreamRecord> records = Records(writer.Bytes());
    EXPECT_EQ(Codes(writer.Bytes()), (std::vector<std::uint16_t>{0x0002, 0x0102, 0x0206, 0x0305,
                                                                 0x0502, 0x0606, 0x0700, 0x0400}));
    EXPECT_EQ(records[1].data.size(), 24u);
    EXPECT_EQ(records[4].data.size(), 24u);
    ASSERT_EQ(records[3].data.size(), 16u);
    EXPECT_EQ(RealValue(Bytes(records[3].data.begin(), records[3].data.begin() + 8)), 0.0005);
    EXPECT_EQ(RealValue(Bytes(records[3].data.begin() + 8, records[3].data.end())), 5e-10);
}

TEST(GdsWriter, SavesItsBytesAndReplacesAnOlderFile) {
    const TempFolder folder;
    const std::filesystem::path file = folder.Write("layout.gds", std::string(1000, 'x'));
    GdsWriter writer;
    writer.BeginLibrary();
    writer.EndLibrary();
    writer.Save(file);
    std::ifstream stream(file, std::ios::binary);
    const Bytes saved{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    EXPECT_EQ(saved, writer.Bytes());
}

TEST(GdsWriter, NamesTheFileThatItCannotWrite) {
    const TempFolder folder;
    const std::filesystem::path file = folder.Path() / "missing" / "layout.gds";
    try {
        GdsWriter().Save(file);
        FAIL() << "no exception";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("layout.gds"), std::string::npos);
    }
}

}  // namespace
}  // namespace zelmo
