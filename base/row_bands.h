#pragma once

#include <cstdint>
#include <functional>

// Loops over the rows of a grid on all cores of the machine. For loops whose rows do not depend on
// each other, so that the result is the same however the rows are shared out.

namespace zelmo {

/// Calls `work(firstRow, endRow)` for bands that cover the rows 0 to rows - 1 once, each band on a
/// thread of its own; the caller's thread takes one of them. Returns when all are done. What a band
/// throws is thrown on to the caller, the lowest band's first. Throws Stopped, before it begins,
/// where the caller's work was ended (base/stop_scope.h). No band has fewer than `smallestBand`
/// rows unless the whole has. Needs no memory of its own: where there is none for a thread, the
/// caller's does its band.
void ForRowBands(std::int32_t rows, std::int32_t smallestBand,
                 const std::function<void(std::int32_t firstRow, std::int32_t endRow)>& work);

/// How many threads ForRowBands uses at most, the caller's counted in: as many as the machine has
/// cores, unless set otherwise. 0 sets it back.
std::int32_t RowThreads();
void SetRowThreads(std::int32_t threads);

}  // namespace zelmo
