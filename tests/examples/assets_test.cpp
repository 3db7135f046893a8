// The data files beside the programs. The tests run in the folder that holds them.

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "process_file/color_table.h"

namespace zelmo {
namespace {

const ColorTable& Colors() {
    static const ColorTable table = [] {
        ColorTable colors;
        EXPECT_TRUE(LoadColorTable(colors, "colors.txt"));
        return colors;
    }();
    return table;
}

void ExpectColor(std::string_view name, int red, int green, int blue) {
    const ColorEntry* color = FindColor(Colors(), name);
    ASSERT_NE(color, nullptr) << name;
    EXPECT_EQ(color->red, red) << name;
    EXPECT_EQ(color->green, green) << name;
    EXPECT_EQ(color->blue, blue) << name;
}

TEST(ColorFile, HoldsTheX11NamesInLowerCaseAndWithCapitals) {
    ExpectColor("beige", 245, 245, 220);
    ExpectColor("Beige", 245, 245, 220);
    ExpectColor("gold", 255, 215, 0);
    ExpectColor("tomato", 255, 99, 71);
    ExpectColor("Tomato", 255, 99, 71);
    ExpectColor("navyblue", 0, 0, 128);
    ExpectColor("NavyBlue", 0, 0, 128);
    ExpectColor("lightgoldenrodyellow", 250, 250, 210);
    ExpectColor("LightGoldenrodYellow", 250, 250, 210);
    ExpectColor("antiquewhite1", 255, 239, 219);
    ExpectColor("AntiqueWhite4", 139, 131, 120);
    ExpectColor("gray", 190, 190, 190);
    ExpectColor("darkslategrey", 47, 79, 79);
    ExpectColor("rebeccapurple", 102, 51, 153);
}

TEST(ColorFile, HoldsAllGraysFromBlackToWhite) {
    for (int percent = 0; percent <= 100; ++percent) {
        for (const char* name : {"gray", "grey", "Gray", "Grey"}) {
            const ColorEntry* color = FindColor(Colors(), name + std::to_string(percent));
            ASSERT_NE(color, nullptr) << name << percent;
            EXPECT_NEAR(color->red, percent * 2.55, 0.501) << name << percent;
            EXPECT_EQ(color->green, color->red);
            EXPECT_EQ(color->blue, color->red);
        }
    }
}

TEST(ColorFile, HoldsEveryNameOnceInEachForm) {
    std::set<std::string> names;
    for (const ColorEntry& color : Colors()) {
        EXPECT_TRUE(names.insert(color.name).second) << color.name << " stands twice";
        EXPECT_EQ(color.name.find(' '), std::string::npos);
        for (const int channel : {color.red, color.green, color.blue}) {
            EXPECT_TRUE(channel >= 0 && channel <= 255) << color.name;
        }
    }
    EXPECT_EQ(names.size() % 2, 0u);
    EXPECT_GE(names.size(), 2u * 657u);
    for (const std::string& name : names) {
        std::string lower = name;
        for (char& letter : lower) {
            letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        }
        EXPECT_EQ(names.count(lower), 1u) << name;
    }
}

TEST(IconFile, HoldsSevenSizesInTrueColour) {
    std::ifstream stream("zelmo.ico", std::ios::binary);
    const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(stream),
                                           std::istreambuf_iterator<char>()};
    ASSERT_GE(bytes.size(), 6u + 7 * 16);
    EXPECT_EQ(bytes[2], 1);
    ASSERT_EQ(bytes[4], 7);
    const int sizes[] = {16, 24, 32, 48, 64, 128, 256};
    for (std::size_t i = 0; i < 7; ++i) {
        const unsigned char* entry = &bytes[6 + 16 * i];
        EXPECT_EQ(entry[0], sizes[i] % 256);
        EXPECT_EQ(entry[1], sizes[i] % 256);
        EXPECT_EQ(entry[6], 32);
        const auto number = [&](int at) {
            return std::size_t{entry[at]} | std::size_t{entry[at + 1]} << 8 |
                   std::size_t{entry[at + 2]} << 16 | std::size_t{entry[at + 3]} << 24;
        };
        EXPECT_LE(number(12) + number(8), bytes.size());
    }
}

}  // namespace
}  // namespace zelmo
