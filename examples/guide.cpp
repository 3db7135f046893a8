#include <array>

#include "examples/layouts.h"

namespace zelmo {

namespace {

// Lengths in nm.

/// Layers 1 active area, 2 gate, 3 contacts, 4 metal. Contacts and gate are cut by y = 1500.
void DrawTransistor(GdsWriter& gds) {
    gds.BeginCell("TRANSISTOR");
    gds.Rectangle(1, 500, 500, 3500, 2500);
    gds.Rectangle(2, 1800, 200, 2200, 2800);
    for (const std::int32_t x : {1100, 2900}) {
        gds.Rectangle(3, x - 200, 1300, x + 200, 1700);
        gds.Rectangle(4, x - 400, 1000, x + 400, 2000);
    }
    gds.EndCell();
}

/// Layer 10: four lines 400 wide and 400 apart, and a wide one, all ending within the window.
void DrawLines(GdsWriter& gds) {
    gds.BeginCell("LINES");
    for (std::int32_t x = 400; x <= 2800; x += 800) {
        gds.Rectangle(10, x, -1000, x + 400, 1600);
    }
    gds.Rectangle(10, 3600, -1000, 5400, 1600);
    gds.EndCell();
}

/// Layer 11: slots 300, 1000 and 1800 wide.
void DrawSlots(GdsWriter& gds) {
    gds.BeginCell("SLOTS");
    gds.Rectangle(11, 500, -1000, 800, 1600);
    gds.Rectangle(11, 1400, -1000, 2400, 1600);
    gds.Rectangle(11, 3000, -1000, 4800, 1600);
    gds.EndCell();
}

/// Layer 10: two gates. Layer 12: a contact between them that is wider than the gap.
void DrawGatePair(GdsWriter& gds) {
    gds.BeginCell("GATE_PAIR");
    gds.Rectangle(10, 900, -1000, 1300, 2500);
    gds.Rectangle(10, 2100, -1000, 2500, 2500);
    gds.Rectangle(12, 1150, -600, 2250, 900);
    gds.EndCell();
}

/// Layer 20: the anchor. Layer 21: a cantilever that stands on it.
void DrawCantilever(GdsWriter& gds) {
    gds.BeginCell("CANTILEVER");
    gds.Rectangle(20, 1000, 1000, 3000, 3000);
    gds.Rectangle(21, 500, 700, 9500, 3300);
    gds.EndCell();
}

/// Layer 13: everything left of x = 0. Layer 14: a slot 1000 wide about x = 0.
void DrawEdge(GdsWriter& gds) {
    gds.BeginCell("EDGE");
    gds.Rectangle(13, -20000, -20000, 0, 20000);
    gds.Rectangle(14, -500, -20000, 500, 20000);
    gds.EndCell();
}

}  // namespace

GdsWriter GuideLayout() {
    GdsWriter gds;
    gds.BeginLibrary();
    for (const auto draw :
         std::array{DrawTransistor, DrawLines, DrawSlots, DrawGatePair, DrawCantilever, DrawEdge}) {
        draw(gds);
    }
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
