#pragma once

namespace zelmo {

struct GdsDatabase;

/// Points every reference of the database to the first cell of its name. False if a name is
/// unknown; the reference in question then points nowhere, and those after it are left alone.
bool BindReferences(GdsDatabase& database);

/// Whether some cell refers to itself, directly or through others. All references are bound.
bool HasReferenceCircle(const GdsDatabase& database);

}  // namespace zelmo
