#pragma once

namespace zelmo {

struct GdsDatabase;
struct LayoutRepairs;

/// Takes the references out of a library that name cells which are not in it, and counts them.
void SkipMissingCells(GdsDatabase& database, LayoutRepairs& repairs);

}  // namespace zelmo
