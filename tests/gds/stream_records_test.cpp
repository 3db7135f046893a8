#include "gds/stream_records.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "examples/gds_writer.h"
#include "gds/layout_options.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

StreamRecord RecordOf(const Bytes& data) {
    StreamRecord record;
    record.data = data;
    return record;
}

TEST(StreamRecord, DecodesNumbersMostSignificantByteFirst) {
    const Bytes data{0x12, 0x34, 0xFF, 0xFE, 0x80, 0x00};
    const StreamRecord record = RecordOf(data);
    EXPECT_EQ(record.U16At(0), 0x1234);
    EXPECT_EQ(record.U32At(0), 0x1234FFFEu);
    EXPECT_EQ(StreamU16(data.data()), 0x1234);
    EXPECT_EQ(StreamI32(data.data()), 0x1234FFFE);
    EXPECT_EQ(StreamI32(data.data() + 2), -98304);
}

TEST(StreamRecord, ReadsZerosBehindTheEndOfTheData) {
    const Bytes data{0x12, 0x34, 0x56};
    const StreamRecord record = RecordOf(data);
    EXPECT_EQ(record.U16At(2), 0x5600);
    EXPECT_EQ(record.U16At(3), 0);
    EXPECT_EQ(record.U16At(1000), 0);
    EXPECT_EQ(record.U32At(0), 0x12345600u);
    EXPECT_EQ(record.U32At(3), 0u);
    EXPECT_EQ(RecordOf({}).RealAt(0), 0.0);
}

TEST(StreamRecord, ReadsARealWhoseEndIsMissing) {
    const Bytes data{0x41, 0x10};
    EXPECT_EQ(RecordOf(data).RealAt(0), 1.0);
}

class StreamRecordsTest : public testing::Test {
protected:
    StreamRecords Open(const Bytes& bytes) { return Open(folder_.Write("file", bytes)); }
    StreamRecords Open(const std::filesystem::path& path) {
        file_.emplace(path, LayoutOptions().unpackedLimit);
        return StreamRecords(*file_);
    }

    TempFolder folder_;
    std::optional<LayoutBytes> file_;
};

TEST_F(StreamRecordsTest, HandsOutRecordAfterRecord) {
    StreamRecords records = Open({0, 6, 0x0D, 0x02, 0, 7, 0, 4, 0x11, 0x00});
    StreamRecord record;
    ASSERT_EQ(records.Next(record), RecordStatus::Read);
    EXPECT_EQ(record.code, 0x0D02);
    EXPECT_EQ(records.OffsetOf(record), 0u);
    ASSERT_EQ(record.data.size(), 2u);
    EXPECT_EQ(record.U16At(0), 7);
    ASSERT_EQ(records.Next(record), RecordStatus::Read);
    EXPECT_EQ(record.code, 0x1100);
    EXPECT_EQ(records.OffsetOf(record), 6u);
    EXPECT_TRUE(record.data.empty());
    EXPECT_EQ(records.Offset(), 10u);
    EXPECT_EQ(records.Next(record), RecordStatus::EndOfFile);
    EXPECT_EQ(records.Next(record), RecordStatus::EndOfFile);
}

TEST_F(StreamRecordsTest, TakesFewerThanFourBytesForTheEndOfTheFile) {
    for (std::size_t size = 0; size < 4; ++size) {
        StreamRecords records = Open(Bytes(size, 0));
        StreamRecord record;
        EXPECT_EQ(records.Next(record), RecordStatus::EndOfFile) << size;
    }
}

TEST_F(StreamRecordsTest, ReportsALengthBelowFour) {
    for (std::uint8_t length = 0; length < 4; ++length) {
        StreamRecords records = Open({0, length, 0x11, 0x00});
        StreamRecord record;
        EXPECT_EQ(records.Next(record), RecordStatus::BadLength) << int{length};
        EXPECT_EQ(record.code, 0x1100);
        EXPECT_EQ(records.Offset(), 0u);
    }
}

TEST_F(StreamRecordsTest, FillsARecordThatTheFileCutsShortWithZeros) {
    StreamRecords records = Open({0, 9, 0x06, 0x06, 'A', 'B'});
    StreamRecord record;
    ASSERT_EQ(records.Next(record), RecordStatus::Read);
    EXPECT_EQ(record.Text(), std::string("AB\0\0\0", 5));
    EXPECT_EQ(records.Next(record), RecordStatus::EndOfFile);
}

TEST_F(StreamRecordsTest, FillsWithZerosAlsoWhereOtherBytesStoodBefore) {
    GdsWriter writer;
    writer.Record(0x1906, Bytes(200, 0xFF));
    writer.Record(0x0606, Bytes(96, 0xFF));
    writer.Bytes().resize(writer.Bytes().size() - 95);
    StreamRecords records = Open(writer.Bytes());
    StreamRecord record;
    ASSERT_EQ(records.Next(record), RecordStatus::Read);
    ASSERT_EQ(records.Next(record), RecordStatus::Read);
    EXPECT_EQ(record.Text(), std::string(1, '\xFF') + std::string(95, '\0'));
}

TEST_F(StreamRecordsTest, FillsTheLongestRecordOfAFileThatEndsBehindItsHead) {
    StreamRecords records = Open({0xFF, 0xFF, 0x06, 0x06});
    StreamRecord record;
    ASSERT_EQ(records.Next(record), RecordStatus::Read);
    EXPECT_EQ(record.Text(), std::string(65531, '\0'));
}

TEST_F(StreamRecordsTest, KeepsEveryByteOfRecordsThatLieAcrossBlocks) {
    GdsWriter writer;
    std::vector<std::size_t> sizes;
    for (std::size_t size = 65531; writer.Bytes().size() < (std::size_t{2} << 20); size -= 997) {
        sizes.push_back(size);
        Bytes data(size);
        for (std::size_t i = 0; i < size; ++i) {
            data[i] = static_cast<std::uint8_t>(i * 31 + size);
        }
        writer.Record(0x1906, data);
    }
    StreamRecords records = Open(writer.Bytes());
    StreamRecord record;
    std::uint64_t offset = 0;
    for (const std::size_t size : sizes) {
        ASSERT_EQ(records.Next(record), RecordStatus::Read);
        ASSERT_EQ(records.OffsetOf(record), offset);
        offset += recordHeadSize + size;
        ASSERT_EQ(record.data.size(), size);
        for (std::size_t i = 0; i < size; ++i) {
            ASSERT_EQ(record.data[i], static_cast<std::uint8_t>(i * 31 + size));
        }
    }
    EXPECT_EQ(records.Next(record), RecordStatus::EndOfFile);
}

TEST_F(StreamRecordsTest, ReportsWhatCannotBeRead) {
    StreamRecord record;
    EXPECT_EQ(Open(folder_.Path() / "missing").Next(record), RecordStatus::Unreadable);
    EXPECT_EQ(Open(folder_.Path()).Next(record), RecordStatus::Unreadable);
}

// Reals

double Real(std::vector<std::uint8_t> bytes) {
    bytes.resize(8);
    return GdsReal8ToDouble(bytes.data());
}

TEST(GdsReal8ToDouble, GivesTheValueOfTheBytes) {
    EXPECT_EQ(Real({0x41, 0x10}), 1.0);
    EXPECT_EQ(Real({0xC1, 0x10}), -1.0);
    EXPECT_EQ(Real({}), 0.0);
    EXPECT_EQ(Real({0x42, 0x64}), 100.0);
    EXPECT_EQ(Real({0x40, 0x80}), 0.5);
    EXPECT_EQ(Real({0x39, 0x44, 0xB8, 0x2F, 0xA0, 0x9B, 0x5A, 0x54}), 1e-9);
    EXPECT_EQ(Real({0x39, 0x44, 0xB8, 0x2F, 0xA0, 0x9B, 0x5A, 0x54}) * 1000000.0, 0.001);
}

TEST(GdsReal8ToDouble, CoversTheWholeRange) {
    EXPECT_EQ(Real({0x7F, 0x10}), 0x1p248);
    EXPECT_EQ(Real({0x00, 0x80}), 0x1p-257);
    EXPECT_EQ(Real({0x00, 0, 0, 0, 0, 0, 0, 0x01}), 0x1p-312);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(Real({0x80})), std::bit_cast<std::uint64_t>(-0.0));
}

TEST(GdsReal8ToDouble, SumsTheMantissaByteByByteInDoublePrecision) {
    // 56 bits do not fit: the last byte is added to a rounded sum.
    EXPECT_EQ(Real({0x40, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}), 1.0);
    EXPECT_EQ(Real({0x40, 0x80, 0, 0, 0, 0, 0, 0x04}), 0.5);  // half way, to even
    EXPECT_EQ(Real({0x40, 0x80, 0, 0, 0, 0, 0, 0x0C}), 0.5 + 0x1p-52);
}

TEST(GdsReal8ToDouble, EqualsTheSumOfTheBytesForAnyBytes) {
    std::mt19937 random(8);
    for (int run = 0; run < 20000; ++run) {
        std::uint8_t bytes[8];
        for (std::uint8_t& byte : bytes) {
            // Halves and ends of what a double can hold are the hard ones.
            constexpr std::uint8_t hard[] = {0x00, 0x01, 0x08, 0x10, 0x80, 0xFF};
            byte = random() % 2 == 0 ? hard[random() % 6] : static_cast<std::uint8_t>(random());
        }
        double mantissa = 0.0;
        for (int i = 1; i < 8; ++i) {
            mantissa += bytes[i] * std::pow(2.0, -8 * i);
        }
        const double expected = bytes[0] < 128 ? std::pow(16.0, bytes[0] - 64) * 1.0 * mantissa
                                               : std::pow(16.0, bytes[0] - 192) * -1.0 * mantissa;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(GdsReal8ToDouble(bytes)),
                  std::bit_cast<std::uint64_t>(expected));
    }
}

TEST(GdsReal8ToDouble, ReadsBackWhatTheWriterWrites) {
    for (const double value : {1e-9, 0.001, 0.1, 3.0, -2.5, 45.0, 359.999, 1e30, 5e-10}) {
        EXPECT_EQ(GdsReal8ToDouble(DoubleToGdsReal8(value).data()), value);
    }
}

}  // namespace
}  // namespace zelmo
