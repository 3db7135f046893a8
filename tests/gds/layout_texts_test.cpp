// The texts of a layout, which are kept where they are asked for.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "gds/gds_database.h"
#include "tests/gds/database_text.h"
#include "tests/gds/layout_file.h"

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint16_t stringRecord = record::string;

GdsWriter LibraryWithTexts() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("A");
    writer.Rectangle(1, 0, 0, 10, 10);
    writer.Record(record::text);
    writer.RecordU16(record::layer, {83});
    writer.RecordU16(record::texttype, {44});
    writer.RecordU16(record::strans, {0x8000});
    writer.RecordI32(record::xy, {-7, 9});
    writer.RecordText(stringRecord, "VDD");
    writer.Record(record::endel);
    writer.EndCell();
    writer.BeginCell("B");
    writer.Rectangle(1, 0, 0, 10, 10);
    writer.EndCell();
    writer.BeginCell("C");
    for (int i = 0; i < 2; ++i) {
        writer.Record(record::text);
        writer.RecordI32(record::xy, {i, i, 5, 6, 7});
        writer.Record(record::endel);
    }
    writer.Record(record::node);
    writer.Record(record::endel);
    writer.Record(record::box);
    writer.Record(record::endel);
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}

TEST(LayoutTexts, AreKeptWhereTheyAreAskedFor) {
    const LoadedLayout loaded = LoadBytes(LibraryWithTexts().Bytes(), {.texts = true});
    ASSERT_FALSE(loaded.error);
    const GdsDatabase& database = loaded.database;
    ASSERT_EQ(database.texts.size(), 2u);
    EXPECT_EQ(database.texts[0].cell, 0u);
    ASSERT_EQ(database.texts[0].texts.size(), 1u);
    const GdsText& text = database.texts[0].texts[0];
    EXPECT_EQ(text.layer, 83);
    EXPECT_EQ(text.texttype, 44);
    EXPECT_TRUE(text.placed);
    EXPECT_EQ(text.origin, (GdsPoint{-7, 9}));
    EXPECT_EQ(NameText(text.string), "VDD");
    EXPECT_EQ(database.texts[1].cell, 2u);
    ASSERT_EQ(database.texts[1].texts.size(), 2u);
    EXPECT_EQ(database.texts[1].texts[1].origin, (GdsPoint{1, 1}));
    EXPECT_EQ(database.texts[1].texts[1].layer, 0);
    EXPECT_EQ(database.texts[1].texts[1].string, "");
}

TEST(LayoutTexts, AreCountedButNotKeptOtherwise) {
    const LoadedLayout loaded = LoadBytes(LibraryWithTexts().Bytes());
    ASSERT_FALSE(loaded.error);
    EXPECT_EQ(loaded.database.texts.size(), 0u);
    EXPECT_EQ(loaded.database.skipped, (SkippedElements{3, 1, 1}));
}

/// Records that texts are made of, in any order and of any length.
Bytes RandomRecords(std::mt19937& random) {
    constexpr std::uint16_t codes[] = {record::text,  record::layer,  record::texttype,
                                       record::xy,    record::string, record::strans,
                                       record::mag,   record::angle,  record::width,
                                       record::endel, record::endstr, record::bgnstr};
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("A");
    for (std::uint32_t i = random() % 30; i > 0; --i) {
        const std::uint32_t choice = random();
        const bool likely = choice % 3 != 0;
        writer.Record(likely ? codes[choice / 3 % 10] : codes[choice / 3 % std::size(codes)],
                      Bytes(random() % 20, static_cast<std::uint8_t>(random())));
        if (random() % 4 == 0) {
            writer.Record(record::text);
            writer.RecordI32(record::xy, {1, 2});
            writer.Record(record::endel);
        }
    }
    writer.EndCell();
    writer.EndLibrary();
    return writer.Bytes();
}

TEST(LayoutTexts, ChangeNothingElseAndRefuseNothing) {
    std::mt19937 random(2);
    int refused = 0;
    int accepted = 0;
    for (int round = 0; round < 400; ++round) {
        const Bytes bytes = RandomRecords(random);
        const LoadedLayout plain = LoadBytes(bytes);
        LoadedLayout kept = LoadBytes(bytes, {.texts = true});
        ASSERT_EQ(plain.error, kept.error) << round;
        ASSERT_EQ(plain.lines, kept.lines);
        (plain.error ? refused : accepted) += 1;
        kept.database.texts = {};
        ASSERT_EQ(TextOf(plain.database), TextOf(kept.database)) << round;
    }
    EXPECT_GT(refused, 40);
    EXPECT_GT(accepted, 4);
}

}  // namespace
}  // namespace zelmo
