#pragma once

#include <string_view>

namespace zelmo {

struct GdsCell;
struct GdsDatabase;

/// The first cell of that name whose box is known, or null.
const GdsCell* FindCell(const GdsDatabase& layout, std::string_view name);

}  // namespace zelmo
