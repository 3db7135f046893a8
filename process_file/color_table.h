#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zelmo {

struct ColorEntry {
    std::string name;
    std::int32_t red = 0;
    std::int32_t green = 0;
    std::int32_t blue = 0;
};

/// Colour names in file order; of two entries with one name the first counts.
using ColorTable = std::vector<ColorEntry>;

/// Appends the entries of a colour file to a table. False if the file cannot be opened or a line
/// does not scan; entries read so far stay.
bool LoadColorTable(ColorTable& table, const std::filesystem::path& path = "colors.txt");

/// The first entry with exactly this name, or null.
const ColorEntry* FindColor(const ColorTable& table, std::string_view name);

/// Red, green and blue as shares of 255.
std::array<float, 3> ColorOf(const ColorEntry& entry);

}  // namespace zelmo
