#include "results/readable_text.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

TEST(ReadableText, IsUtf8WhateverTheBytesAre) {
    EXPECT_EQ(ReadableText("Oxide"), "Oxide");
    EXPECT_EQ(ReadableText("\xC3\xA9"), "\xC3\xA9");
    EXPECT_EQ(ReadableText("\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(ReadableText("a\xE9"), "a\xEF\xBF\xA9") << "widened, U+FFE9";
    EXPECT_EQ(ReadableText(""), "");
}

TEST(CsvField, IsQuotedWhereItMustBe) {
    EXPECT_EQ(CsvField("a b"), "a b");
    EXPECT_EQ(CsvField("a,b"), "\"a,b\"");
    EXPECT_EQ(CsvField("a\"b"), "\"a\"\"b\"");
    EXPECT_EQ(CsvField("a\nb"), "\"a\nb\"");
}

}  // namespace
}  // namespace zelmo
