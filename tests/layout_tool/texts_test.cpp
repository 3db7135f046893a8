// How texts, tables and numbers of zelmo-layout come out.

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "layout_tool/lengths.h"
#include "layout_tool/shown_text.h"
#include "layout_tool/svg_text.h"
#include "layout_tool/table.h"

namespace zelmo {
namespace {

TEST(ShownText, KeepsUtf8AndReplacesTheRest) {
    EXPECT_EQ(ShownText("plain $1"), "plain $1");
    EXPECT_EQ(ShownText("\xC3\xA4\xF0\x9F\x98\x80"), "\xC3\xA4\xF0\x9F\x98\x80");
    EXPECT_EQ(ShownText("a\x01"
                        "b\nc\x7F"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD"
              "c\xEF\xBF\xBD");
    EXPECT_EQ(ShownText("\xFF\xC3"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(ShownText("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(ShownText(""), "");
    EXPECT_EQ(CharacterCount("a\xC3\xA4\xF0\x9F\x98\x80"), 3u);
}

TEST(Table, AlignsItsColumns) {
    Table table({{"name", Table::Side::Left}, {"n"}, {"rest", Table::Side::Left}});
    EXPECT_TRUE(table.IsEmpty());
    table.AddRow({"\xC3\xA4", "1000", ""});
    table.AddRow({"longer", "7", "x"});
    EXPECT_EQ(table.Text(),
              "name       n  rest\n"
              "\xC3\xA4       1000\n"
              "longer     7  x\n");
}

TEST(Lengths, HaveAsManyDecimalsAsAUnitNeeds) {
    const double unit = 1e-9 * 1e6;
    EXPECT_EQ(Lengths(unit).Text(1234), "1.234");
    EXPECT_EQ(Lengths(unit).Text(-50), "-0.050");
    EXPECT_EQ(Lengths(unit).Microns(1234), 1.234);
    EXPECT_EQ(Lengths(0.0005).Text(3), "0.0015");
    EXPECT_EQ(Lengths(0.0025).Text(3), "0.0075");
    EXPECT_EQ(Lengths(1.0).Text(7), "7");
    EXPECT_EQ(Lengths(25.0).Text(2), "50");
    EXPECT_EQ(Lengths(1.0 / 3.0).Text(1), "0.333333333");
    EXPECT_EQ(Lengths(1e-30).Text(5), "5e-30");
    EXPECT_EQ(Lengths(1e30).Text(-5), "-5e+30");
    EXPECT_EQ(Lengths(unit).Text(0), "0.000");
}

TEST(Lengths, AreasAndCountsAreToldHonestly) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Lengths(0.001).AreaText(2500000.0), "2.500");
    EXPECT_EQ(SquareMicronsText(0.0), "0");
    EXPECT_EQ(SquareMicronsText(0.0004), "0.0004");
    EXPECT_EQ(SquareMicronsText(1.25e20), "1.25e+20");
    EXPECT_EQ(SquareMicronsText(infinite), "infinite");
    EXPECT_EQ(SquareMicronsText(infinite - infinite), "unknown");
    EXPECT_EQ(CountText(CountOf(12)), "12");
    const FlatCount many = CountOf(std::uint64_t{1} << 60) * CountOf(std::uint64_t{1} << 60);
    EXPECT_EQ(CountText(many), "about 1.33e+36");
    EXPECT_EQ(CountText({0, infinite, false}), "too many");
}

TEST(SvgText, IsAlwaysXml) {
    EXPECT_EQ(ShownXmlText("<a href=\"x\">&'"), "&lt;a href=&quot;x&quot;&gt;&amp;&#39;");
    EXPECT_EQ(ShownXmlText("\x1B\xFF"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(ShortXmlText("abcdef", 6), "abcdef");
    EXPECT_EQ(ShortXmlText("abcdef", 4), "abc\xE2\x80\xA6");
    EXPECT_EQ(ShortXmlText("<<<<<<", 3), "&lt;&lt;\xE2\x80\xA6");
    EXPECT_EQ(SvgColor({0.0f, 0.5f, 1.0f}), "#0080FF");
    EXPECT_EQ(SvgColor({-1.0f, 2.0f, 0.2f}), "#00FF33");
    EXPECT_EQ(SvgPath({{1, 2}, {4, 2}, {4, 9}, {0, 0}, {1, 2}}), "M1 2h3v7l-4 -9z");
    EXPECT_EQ(SvgPath({{1, 2}}), "M1 2z");
}

}  // namespace
}  // namespace zelmo
