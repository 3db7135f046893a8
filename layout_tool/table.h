#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zelmo {

/// A table for a terminal: columns as wide as their widest cell, with two blanks between them.
class Table {
public:
    enum class Side { Left, Right };
    struct Column {
        std::string title;
        Side side = Side::Right;
    };

    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// As many cells as there are columns, in UTF-8.
    void AddRow(const std::vector<std::string>& cells);
    bool IsEmpty() const { return ends_.empty(); }

    /// The titles and the rows, each line with its end and without blanks before it.
    std::string Text() const;

private:
    std::vector<Column> columns_;
    std::string texts_;              ///< of all cells, row by row
    std::vector<std::size_t> ends_;  ///< of each cell in these
    std::vector<std::size_t> widths_;
};

}  // namespace zelmo
