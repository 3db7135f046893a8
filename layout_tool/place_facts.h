#pragma once

#include <cstddef>
#include <string>

#include "command_line/exit_status.h"
#include "layout_tool/cell_facts.h"
#include "layout_tool/options.h"

namespace zelmo {

/// Sets the places that are asked for, if some are. Fails, with the nearest names, if the cell does
/// not contain one of that name, and where places cannot be put in their order.
Outcome ChoosePlaces(const LayoutReading& reading, const LayoutToolOptions& options,
                     CellFacts& facts);

}  // namespace zelmo
