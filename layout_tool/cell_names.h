#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "layout_tool/layout_reading.h"

namespace zelmo {

/// The number of the cell that references by this name mean.
std::optional<std::size_t> FindCell(const LayoutReading& reading, std::string_view name);

/// Those of some cells that `name` is probably a slip of: "; the nearest are "A", "B"", or nothing.
std::string NearestCells(const LayoutReading& reading, std::string_view name,
                         std::span<const std::size_t> cells);

}  // namespace zelmo
