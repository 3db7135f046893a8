#include "gds/record_handlers.h"

#include <numbers>
#include <string_view>

#include "base/log_console.h"
#include "gds/path_outline.h"

namespace zelmo {

Refusal ReadLayer(LibraryState& state, const StreamRecord& record) {
    if (state.open.kind == Element::Boundary) {
        state.open.boundary.layer = record.U16At(0);
        state.open.layerSeen = true;
    } else if (state.open.kind == Element::Path) {
        state.open.path.layer = record.U16At(0);
        state.open.layerSeen = true;
    } else if (state.open.kind == Element::Text) {
        state.open.text.layer = record.U16At(0);
    }
    return accepted;
}

/// Where it stands makes no fault, and one that is too short is 0, as one that is not there.
Refusal ReadDatatype(LibraryState& state, const StreamRecord& record) {
    const std::uint16_t datatype = record.data.size() < 2 ? std::uint16_t{0} : record.U16At(0);
    if (state.open.kind == Element::Boundary) {
        state.open.boundary.datatype = datatype;
    } else if (state.open.kind == Element::Path) {
        state.open.path.datatype = datatype;
    }
    return accepted;
}

/// These two make no fault, wherever they stand.
Refusal ReadTextType(LibraryState& state, const StreamRecord& record) {
    if (state.open.kind == Element::Text) {
        state.open.text.texttype = record.U16At(0);
    }
    return accepted;
}

Refusal ReadString(LibraryState& state, const StreamRecord& record) {
    if (state.keepsTexts && state.open.kind == Element::Text) {
        state.open.text.string = state.names.Keep(record.Text(), state.store.names);
    }
    return accepted;
}

/// The width of a text stays behind for the next path.
Refusal ReadWidth(LibraryState& state, const StreamRecord& record) {
    state.open.path.width = record.U32At(0);
    return accepted;
}

/// Only the first path of either unsupported type is converted, together with its warning. Later
/// ones keep their number and get flush ends.
Refusal ReadPathType(LibraryState& state, const StreamRecord& record) {
    const std::uint16_t type = record.U16At(0);
    state.open.path.pathType = type;
    state.open.path.statedType = type;
    if (type == roundEnds && !state.warnedType1) {
        state.console->Write(
            L"WARNING: path type 1 (round ended) is not supported and will be converted to type 2");
        state.open.path.pathType = extendedEnds;
        state.warnedType1 = true;
    }
    if (type == variableEnds && !state.warnedType4) {
        state.console->Write(
            L"WARNING: path type 4 (variable length) is not supported and will be converted to "
            L"type 2");
        state.open.path.pathType = extendedEnds;
        state.warnedType4 = true;
    }
    return accepted;
}

namespace {

double Extension(const StreamRecord& record) {
    return static_cast<double>(static_cast<std::int32_t>(record.U32At(0)));
}

}  // namespace

Refusal ReadStartExtension(LibraryState& state, const StreamRecord& record) {
    if (state.open.kind == Element::Path) {
        state.open.path.extensions.start = Extension(record);
    }
    return accepted;
}

Refusal ReadEndExtension(LibraryState& state, const StreamRecord& record) {
    if (state.open.kind == Element::Path) {
        state.open.path.extensions.end = Extension(record);
    }
    return accepted;
}

Refusal ReadReferenceName(LibraryState& state, const StreamRecord& record) {
    const std::string_view name = state.names.Keep(record.Text(), state.store.names);
    (state.open.kind == Element::Sref ? state.open.sref.name : state.open.aref.name) = name;
    return accepted;
}

Refusal ReadColumnsAndRows(LibraryState& state, const StreamRecord& record) {
    state.open.aref.columns = record.U16At(0);
    state.open.aref.rows = record.U16At(2);
    return accepted;
}

Refusal ReadTransformFlags(LibraryState& state, const StreamRecord& record) {
    if (state.open.kind == Element::Sref) {
        state.open.sref.strans = record.U16At(0);
    } else if (state.open.kind == Element::Aref) {
        state.open.aref.strans = record.U16At(0);
    }
    return accepted;
}

Refusal ReadMagnification(LibraryState& state, const StreamRecord& record) {
    const auto mag = static_cast<double>(static_cast<float>(record.RealAt(0)));
    if (state.open.kind == Element::Sref) {
        state.open.sref.mag = mag;
    } else if (state.open.kind == Element::Aref) {
        state.open.aref.mag = mag;
    }
    return accepted;
}

Refusal ReadAngle(LibraryState& state, const StreamRecord& record) {
    const double radians = record.RealAt(0) * std::numbers::pi / 180.0;
    const auto angle = static_cast<double>(static_cast<float>(radians));
    if (state.open.kind == Element::Sref) {
        state.open.sref.angle = angle;
    } else if (state.open.kind == Element::Aref) {
        state.open.aref.angle = angle;
    }
    return accepted;
}

}  // namespace zelmo
