#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <set>
#include <stdexcept>
#include <vector>

#include "gds/gds_reader.h"
#include "gds/polygon_selection.h"
#include "tests/gds/layout_file.h"
#include "tests/gds/random_layout.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

// Whatever happens to a file, reading it ends with a code, and what was read can be extracted.

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// A small layout with every kind of element.
Bytes SmallLayout() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 0, 0, 100, 50);
    writer.Reference("PART", {10, 20}, {true, 0.5, 30.0});
    writer.Array("PART", 3, 2, {0, 0}, {300, 0}, {0, 200}, {false, 1.0, 90.0});
    writer.Record(record::text);
    writer.RecordU16(record::layer, {2});
    writer.RecordU16(record::texttype, {0});
    writer.RecordI32(record::width, {4});
    writer.RecordU16(record::strans, {0});
    writer.RecordReals(record::mag, {2.0});
    writer.RecordI32(record::xy, {1, 2});
    writer.RecordText(record::string, "text");
    writer.Record(record::endel);
    writer.EndCell();
    writer.BeginCell("PART");
    writer.Path(3, {{0, 0}, {100, 0}, {100, 100}}, 10, 2);
    writer.Path(3, {{0, 0}, {50, 50}}, 8, 1);
    writer.Path(3, {{0, 0}, {50, 50}}, 8, 4);
    writer.Boundary(4, {{0, 0}, {30, 5}, {10, 40}});
    writer.Record(record::node);
    writer.RecordU16(record::layer, {2});
    writer.RecordI32(record::xy, {1, 2});
    writer.Record(record::endel);
    writer.Record(record::box);
    writer.RecordI32(record::xy, {0, 0, 1, 1});
    writer.Record(record::endel);
    writer.EndCell();
    writer.EndLibrary();
    return writer.Bytes();
}

const std::set<std::int32_t> knownCodes = {0,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14,
                                           15, 16, 17, 18, 19, 20, 21, 22, 25, 26, 27, 28, 29, 30};

/// Takes a few polygons out of every cell of a layout that was accepted.
void ExtractEveryCell(const GdsDatabase& database) {
    for (const GdsCell& cell : database.cells) {
        ExtractionScope scope;
        scope.window.x0 = scope.window.y0 = -1000000000000;
        scope.window.x1 = scope.window.y1 = 1000000000000;
        scope.limits.polygons = 1000;
        CollectCellPolygons(scope, {&cell, GdsTransform()});
        EXPECT_LE(scope.output.size(), scope.limits.polygons);
    }
}

class GdsDamage : public testing::Test {
protected:
    /// The code, or -1 for an element without points.
    std::int32_t Read(const Bytes& bytes) {
        RecordingConsole console;
        GdsDatabase database;
        // A new file each time: to write into an old one again makes some systems wait for the
        // disk.
        std::filesystem::remove(folder_.Path() / "damaged.gds");
        const std::filesystem::path path = folder_.Write("damaged.gds", bytes);
        try {
            const std::int32_t result = CodeOf(ReadGdsFile(database, path, &console));
            EXPECT_EQ(knownCodes.count(result), 1u) << result;
            if (result == 0) {
                ExtractEveryCell(database);
            }
            return result;
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "invalid vector subscript");
            return -1;
        }
    }

    TempFolder folder_;
};

TEST_F(GdsDamage, ACutAtAnyByteLosesNoMoreThanTheOpenStructure) {
    const Bytes whole = SmallLayout();
    ASSERT_EQ(Read(whole), 0);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::int32_t result = Read(Bytes(whole.begin(), whole.begin() + size));
        // Within the record of the units these are cut down to 0 until their first byte that
        // counts has come; "TOP" alone refers to a cell that is missing.
        EXPECT_TRUE(result == 0 || (result == 4 && size < 80) || (result == 29 && size > 300))
            << result << " at " << size;
    }
}

TEST_F(GdsDamage, ChangedBytesEndWithACodeOrASuccess) {
    const Bytes whole = SmallLayout();
    std::mt19937 random(61);
    std::set<std::int32_t> seen;
    for (int run = 0; run < 1500; ++run) {
        Bytes bytes = whole;
        for (std::uint32_t n = 1 + random() % 3; n > 0; --n) {
            std::uint8_t& byte = bytes[random() % bytes.size()];
            const std::uint32_t bits = random();
            byte = static_cast<std::uint8_t>(run % 2 == 0 ? bits : byte ^ (1u << (bits % 8)));
        }
        seen.insert(Read(bytes));
    }
    EXPECT_GT(seen.size(), 10u);  // the damage reaches many places
}

TEST_F(GdsDamage, MovedBytesEndWithACodeOrASuccess) {
    const Bytes whole = SmallLayout();
    std::mt19937 random(62);
    for (int run = 0; run < 700; ++run) {
        Bytes bytes = whole;
        const auto from = static_cast<std::ptrdiff_t>(random() % bytes.size());
        const auto to = static_cast<std::ptrdiff_t>(
            std::min<std::size_t>(bytes.size(), static_cast<std::size_t>(from) + random() % 40));
        if (run % 2 == 0) {
            bytes.erase(bytes.begin() + from, bytes.begin() + to);
        } else {
            const Bytes piece(bytes.begin() + from, bytes.begin() + to);
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size()),
                         piece.begin(), piece.end());
        }
        Read(bytes);
    }
}

TEST_F(GdsDamage, RecordsInRandomOrderEndWithACodeOrASuccess) {
    std::mt19937 random(63);
    constexpr std::uint16_t codes[] = {
        record::boundary, record::path,   record::sref,   record::aref,  record::text,
        record::layer,    record::width,  record::xy,     record::sname, record::colrow,
        record::strans,   record::mag,    record::angle,  record::endel, record::pathtype,
        record::endel,    record::endel,  record::layer,  record::xy,    record::sname,
        record::endstr,   record::bgnstr, record::strname};
    for (int run = 0; run < 1000; ++run) {
        GdsWriter writer;
        writer.BeginCell("A");
        for (int n = 0; n < 12; ++n) {
            Bytes data(random() % 4 == 0 ? random() % 40 : 8 * (random() % 4));
            for (std::uint8_t& byte : data) {
                byte = static_cast<std::uint8_t>(random() % 3 == 0 ? random() : 0);
            }
            writer.Record(codes[random() % std::size(codes)], data);
        }
        Read(writer.Bytes());
    }
}

TEST_F(GdsDamage, RandomBytesEndWithACodeOrASuccess) {
    std::mt19937 random(64);
    for (int run = 0; run < 300; ++run) {
        Bytes bytes(random() % 400);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random());
        }
        Read(bytes);
    }
}

}  // namespace
}  // namespace zelmo
