#include "layout_tool/table.h"

#include <algorithm>
#include <string_view>

#include "layout_tool/shown_text.h"

namespace zelmo {

namespace {

void AddCell(std::string& line, std::string_view cell, std::size_t width, Table::Side side) {
    const std::size_t filling = width - std::min(width, CharacterCount(cell));
    line.append(side == Table::Side::Left ? 0 : filling, ' ').append(cell);
    line.append(side == Table::Side::Left ? filling : 0, ' ');
}

}  // namespace

void Table::AddRow(const std::vector<std::string>& cells) {
    widths_.resize(columns_.size(), 0);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        texts_ += cells.at(i);
        ends_.push_back(texts_.size());
        widths_[i] = std::max(widths_[i], CharacterCount(cells[i]));
    }
}

std::string Table::Text() const {
    std::vector<std::size_t> widths = widths_;
    widths.resize(columns_.size(), 0);
    std::string text;
    const auto addLine = [&](const auto& cellAt) {
        const std::size_t begin = text.size();
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            text += i == 0 ? "" : "  ";
            AddCell(text, cellAt(i), widths[i], columns_[i].side);
        }
        text.resize(std::max(begin, text.find_last_not_of(' ') + 1));
        text.push_back('\n');
    };
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        widths[i] = std::max(widths[i], CharacterCount(columns_[i].title));
    }
    addLine([&](std::size_t i) { return std::string_view(columns_[i].title); });
    for (std::size_t row = 0; row < ends_.size(); row += columns_.size()) {
        addLine([&](std::size_t i) {
            const std::size_t begin = row + i == 0 ? 0 : ends_[row + i - 1];
            return std::string_view(texts_).substr(begin, ends_[row + i] - begin);
        });
    }
    return text;
}

}  // namespace zelmo
