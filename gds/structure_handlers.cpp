#include "gds/record_handlers.h"

#include <span>
#include <string_view>
#include <utility>

namespace zelmo {

namespace {

std::string_view Kept(RunPool<char>& names, std::string_view name) {
    const std::span<const char> kept = names.Keep(name);
    return {kept.data(), kept.size()};
}

}  // namespace

Refusal ReadHeader(LibraryState& state, const StreamRecord& record) {
    state.head.version = record.U16At(0);
    return accepted;
}

Refusal ReadUnits(LibraryState& state, const StreamRecord& record) {
    const double userUnit = record.RealAt(0);
    const double metresPerUnit = record.RealAt(8);
    state.head.units = {userUnit, metresPerUnit};
    if (0.0 >= userUnit || 0.0 >= metresPerUnit) {
        return LayoutErrorKind::UnitsNotPositive;
    }
    return accepted;
}

Refusal EndLibrary(LibraryState& state, const StreamRecord&) {
    state.endSeen = true;
    return accepted;
}

Refusal BeginStructure(LibraryState& state, const StreamRecord&) {
    state.inStructure = true;
    return accepted;
}

Refusal ReadStructureName(LibraryState& state, const StreamRecord& record) {
    state.cell.name = Kept(state.store.names, record.Text());
    return accepted;
}

/// An element that is still open stays open, and becomes part of a later structure.
Refusal EndStructure(LibraryState& state, const StreamRecord&) {
    state.inStructure = false;
    if (std::exchange(state.continuesCell, false)) {
        state.continued = std::exchange(state.cell, OpenCell());
    } else {
        CompleteCell(state);
    }
    return accepted;
}

void CompleteCell(LibraryState& state) {
    GdsCell cell;
    cell.name = state.cell.name.value_or("");
    cell.boundaries = state.store.boundaries.KeepAll(state.cell.boundaries);
    cell.srefs = state.store.srefs.KeepAll(state.cell.srefs);
    cell.arefs = state.store.arefs.KeepAll(state.cell.arefs);
    if (!state.cell.texts.empty()) {
        state.texts.push_back({state.cells.size(), state.store.texts.KeepAll(state.cell.texts)});
    }
    state.cell.name.reset();
    state.cells.push_back(std::move(cell));
}

}  // namespace zelmo
