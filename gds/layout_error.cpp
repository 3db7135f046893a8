#include "gds/layout_error.h"

#include <cstdlib>

namespace zelmo {

const char* LayoutErrorReason(LayoutErrorKind kind) {
    using enum LayoutErrorKind;
    // No default: a kind without words does not compile.
    // clang-format off
    switch (kind) {
        case FileUnreadable: return "the file cannot be opened";
        case PathNotExpandable: return "a path cannot be turned into a polygon";
        case UnitsNotPositive: return "UNITS holds a value that is not above zero";
        case RecordTooShort: return "a record is shorter than its own header (is this a GDSII file?)";
        case NestedStructure: return "a structure begins inside another one";
        case StrayStructureEnd: return "a structure ends outside a structure";
        case StrayBoundary: return "a BOUNDARY stands inside another element or outside a structure";
        case StrayPath: return "a PATH stands inside another element or outside a structure";
        case StrayReference: return "an SREF stands inside another element or outside a structure";
        case StrayArray: return "an AREF stands inside another element or outside a structure";
        case StrayText: return "a TEXT stands inside another element or outside a structure";
        case StrayNode: return "a NODE stands inside another element or outside a structure";
        case StrayBox: return "a BOX stands inside another element or outside a structure";
        case StrayElementEnd: return "an element ends where none is open";
        case StrayReferenceName: return "an SNAME stands outside a reference";
        case StrayColumnsAndRows: return "a COLROW stands outside an array";
        case StrayPathType: return "a PATHTYPE stands outside a path";
        case StrayTransformFlags: return "an STRANS stands outside a reference or text";
        case StrayAngle: return "an ANGLE stands outside a reference or text";
        case StrayMagnification: return "a MAG stands outside a reference or text";
        case BadPoints: return "an XY stands outside an element or has a wrong number of points";
        case StrayLayer: return "a LAYER stands in an element that has none";
        case StrayWidth: return "a WIDTH stands outside a path or text";
        case StrayStructureName: return "an STRNAME stands outside a structure";
        case LayerMissing: return "a boundary or path has no LAYER";
        case CellMissing: return "a reference names a cell that is not in the file";
        case CellInItself: return "a cell refers to itself, directly or through others";
    }
    // clang-format on
    std::abort();
}

}  // namespace zelmo
