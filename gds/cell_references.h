#pragma once

#include <cstddef>
#include <optional>

namespace zelmo {

struct GdsDatabase;

/// A reference of a database.
struct ReferencePosition {
    std::size_t cell = 0;  ///< the number of the cell that it stands in
    bool isArray = false;
    std::size_t index = 0;  ///< among the cell's srefs, or its arefs

    bool operator==(const ReferencePosition&) const = default;
};

/// Points every reference of the database to the first cell of its name. Returns the first one
/// whose name is unknown, if there is one; it then points nowhere, and those after it are left
/// alone.
std::optional<ReferencePosition> BindReferences(GdsDatabase& database);

/// A reference by which a cell refers to itself, directly or through others, if there is one. All
/// references are bound.
std::optional<ReferencePosition> FindReferenceCircle(const GdsDatabase& database);

}  // namespace zelmo
