#pragma once

#include <optional>

#include "gds/layout_error.h"
#include "gds/library_state.h"
#include "gds/stream_records.h"

// What becomes of the records that are accepted where they stand: a handler for each takes what a
// mask needs of it.

namespace zelmo {

/// Why a record is refused after all.
using Refusal = std::optional<LayoutErrorKind>;
constexpr std::nullopt_t accepted = std::nullopt;

// structure_handlers.cpp: the library and its structures
Refusal ReadHeader(LibraryState& state, const StreamRecord& record);
Refusal ReadUnits(LibraryState& state, const StreamRecord& record);
Refusal EndLibrary(LibraryState& state, const StreamRecord& record);
Refusal BeginStructure(LibraryState& state, const StreamRecord& record);
Refusal ReadStructureName(LibraryState& state, const StreamRecord& record);
Refusal EndStructure(LibraryState& state, const StreamRecord& record);

// element_handlers.cpp: the beginning and the end of an element
template <Element element>
Refusal BeginElement(LibraryState& state, const StreamRecord&) {
    if constexpr (element == Element::Sref) {
        state.open.sref.mag = 1.0;
    } else if constexpr (element == Element::Aref) {
        state.open.aref.mag = 1.0;
    }
    state.open.kind = element;
    return accepted;
}
/// Throws std::out_of_range("invalid vector subscript") for a path without points.
Refusal EndElement(LibraryState& state, const StreamRecord& record);

// attribute_handlers.cpp: what an element says of itself
Refusal ReadLayer(LibraryState& state, const StreamRecord& record);
Refusal ReadDatatype(LibraryState& state, const StreamRecord& record);
Refusal ReadTextType(LibraryState& state, const StreamRecord& record);
Refusal ReadString(LibraryState& state, const StreamRecord& record);
Refusal ReadWidth(LibraryState& state, const StreamRecord& record);
Refusal ReadPathType(LibraryState& state, const StreamRecord& record);
Refusal ReadStartExtension(LibraryState& state, const StreamRecord& record);
Refusal ReadEndExtension(LibraryState& state, const StreamRecord& record);
Refusal ReadReferenceName(LibraryState& state, const StreamRecord& record);
Refusal ReadColumnsAndRows(LibraryState& state, const StreamRecord& record);
Refusal ReadTransformFlags(LibraryState& state, const StreamRecord& record);
Refusal ReadMagnification(LibraryState& state, const StreamRecord& record);
Refusal ReadAngle(LibraryState& state, const StreamRecord& record);

// point_handlers.cpp
Refusal ReadPoints(LibraryState& state, const StreamRecord& record);

}  // namespace zelmo
