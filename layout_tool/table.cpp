#include "layout_tool/table.h"

#include <algorithm>

#include "layout_tool/readable_text.h"

namespace zelmo {

namespace {

void AddCell(std::string& line, const std::string& cell, std::size_t width, Table::Side side) {
    const std::string filling(width - std::min(width, CharacterCount(cell)), ' ');
    line += side == Table::Side::Left ? cell + filling : filling + cell;
}

}  // namespace

std::string Table::Text() const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        std::size_t width = CharacterCount(columns_[i].title);
        for (const std::vector<std::string>& row : rows_) {
            width = std::max(width, CharacterCount(row.at(i)));
        }
        widths.push_back(width);
    }
    std::string text;
    const auto addLine = [&](const auto& cellAt) {
        std::string line;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            line += i == 0 ? "" : "  ";
            AddCell(line, cellAt(i), widths[i], columns_[i].side);
        }
        text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    };
    addLine([&](std::size_t i) { return columns_[i].title; });
    for (const std::vector<std::string>& row : rows_) {
        addLine([&](std::size_t i) { return row[i]; });
    }
    return text;
}

}  // namespace zelmo
