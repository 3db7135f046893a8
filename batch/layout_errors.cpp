#include "batch/layout_errors.h"

namespace zelmo {

namespace {

struct CodeReason {
    std::int32_t code;
    const char* reason;
};

constexpr CodeReason reasons[] = {
    {2, "the file cannot be opened"},
    {3, "a path cannot be turned into a polygon"},
    {4, "UNITS holds a value that is not above zero"},
    {5, "a record is shorter than its own header (is this a GDSII file?)"},
    {6, "a structure begins inside another one"},
    {7, "a structure ends outside a structure"},
    {8, "a BOUNDARY stands inside another element or outside a structure"},
    {9, "a PATH stands inside another element or outside a structure"},
    {10, "an SREF stands inside another element or outside a structure"},
    {11, "an AREF stands inside another element or outside a structure"},
    {12, "a TEXT stands inside another element or outside a structure"},
    {13, "a NODE stands inside another element or outside a structure"},
    {14, "a BOX stands inside another element or outside a structure"},
    {15, "an element ends where none is open"},
    {16, "an SNAME stands outside a reference"},
    {17, "a COLROW stands outside an array"},
    {18, "a PATHTYPE stands outside a path"},
    {19, "an STRANS stands outside a reference or text"},
    {20, "an ANGLE stands outside a reference or text"},
    {21, "a MAG stands outside a reference or text"},
    {22, "an XY stands outside an element or has a wrong number of points"},
    {25, "a LAYER stands in an element that has none"},
    {26, "a WIDTH stands outside a path or text"},
    {27, "an STRNAME stands outside a structure"},
    {28, "a boundary or path has no LAYER"},
    {29, "a reference names a cell that is not in the file"},
    {30, "a cell refers to itself, directly or through others"},
};

}  // namespace

const char* LayoutErrorReason(std::int32_t code) {
    for (const CodeReason& entry : reasons) {
        if (entry.code == code) {
            return entry.reason;
        }
    }
    return "the reader gives no reason";
}

}  // namespace zelmo
