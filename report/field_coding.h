#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/shared_array.h"
#include "report/page_grid.h"

// How the heights of a surface become bytes (docs/report-format.md).

namespace zelmo {

/// Heights at the cells of a page, row-major from the front, in quanta.
using Field = std::vector<std::int32_t>;

/// Micrometres: a hundredth of a nanometre.
constexpr double pageQuantum = 1e-5;

/// The heights of a surface at the cells of a page. `columns` are those of the surface's grid.
/// Heights beyond 10 mm count as that, and what is no number as 0.
Field TakeField(const SharedArray<float>& surface, std::int32_t columns, const PageGrid& grid);

/// The four byte planes of a field, of its differences to `base` or, where that is null, to the
/// cells beside. Both have rows of `columns` cells.
std::vector<std::uint8_t> PlanesOf(const Field& field, const Field* base, std::size_t columns);

/// The field again.
Field FieldOf(std::span<const std::uint8_t> planes, const Field* base, std::size_t columns);

/// About what it costs to tell a field from its base or, where that is null, from nothing: for
/// comparisons.
std::uint64_t CodingCost(const Field& field, const Field* base, std::size_t columns);

}  // namespace zelmo
