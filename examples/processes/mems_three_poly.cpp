#include "examples/processes/layouts.h"
#include "examples/three_poly_masks.h"

namespace zelmo {

namespace {

// Lengths in nm. The beam lies along x; the cut runs along its middle.

void DrawBeam(GdsWriter& gds) {
    gds.Rectangle(kPoly0, -10000, -25000, 20000, 25000);
    gds.Rectangle(kPoly0, 28000, -25000, 76000, 25000);
    gds.Rectangle(kPoly0, 84000, -25000, 116000, 25000);
    gds.Rectangle(kAnchor1, -2000, -14000, 12000, 14000);
    gds.Rectangle(kPoly1, -6000, -18000, 18000, 18000);
    gds.Rectangle(kPoly1, 18000, -10000, 106000, 10000);
    for (std::int32_t x = 30000; x <= 75000; x += 15000) {
        gds.Rectangle(kHole1, x - 2000, -2000, x + 2000, 2000);
    }
    for (const std::int32_t y : {-6000, 0, 6000}) {
        gds.Rectangle(kDimple, 99000, y - 1500, 102000, y + 1500);
    }
}

void DrawUpperParts(GdsWriter& gds) {
    // A pad on the anchored end
    gds.Rectangle(kVia, 0, -12000, 10000, 12000);
    gds.Rectangle(kPoly2, -4000, -16000, 14000, 16000);
    gds.Rectangle(kMetal, -1000, -13000, 11000, 13000);
    // A bridge that keeps the tip from rising
    for (const std::int32_t y : {-19000, 19000}) {
        gds.Rectangle(kAnchor2, 86000, y - 4000, 94000, y + 4000);
    }
    gds.Rectangle(kPoly2, 84000, -25000, 96000, 25000);
}

}  // namespace

GdsWriter MemsThreePolyLayout() {
    GdsWriter gds;
    gds.BeginLibrary();
    gds.BeginCell("SWITCH");
    DrawBeam(gds);
    DrawUpperParts(gds);
    gds.EndCell();
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
