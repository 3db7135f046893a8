#pragma once

#include <optional>

#include "gds/layout_error.h"
#include "gds/library_state.h"
#include "gds/stream_records.h"

namespace zelmo {

/// Takes the next record of a library: as the rules tell, it is handled, skipped or refused.
/// Returns why it is refused, if it is. Throws std::out_of_range("invalid vector subscript") at the
/// end of a path without points.
std::optional<LayoutErrorKind> HandleRecord(LibraryState& state, const StreamRecord& record);

}  // namespace zelmo
