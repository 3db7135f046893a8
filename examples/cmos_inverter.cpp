#include "examples/layouts.h"

namespace zelmo {

namespace {

enum Mask : std::uint16_t {
    kNWell = 1,
    kActive = 2,
    kPoly = 3,
    kNPlus = 4,
    kPPlus = 5,
    kContact = 6,
    kMetal1 = 7,
    kVia = 8,
    kMetal2 = 9,
    kPad = 10,
};

// Lengths in nm. The devices lie side by side along x, so that one cut along x meets all of them.
constexpr std::int32_t kContactSize = 420;
constexpr std::int32_t kViaSize = 500;
constexpr std::int32_t kContactPitch = 1000;
constexpr std::int32_t kFirstContact = 1500;

void Square(GdsWriter& gds, std::uint16_t mask, std::int32_t x, std::int32_t y, std::int32_t size) {
    gds.Rectangle(mask, x - size / 2, y - size / 2, x + size / 2, y + size / 2);
}

/// A column of `count` contacts at `x`, from the line of the cut upwards and one below it.
void ContactColumn(GdsWriter& gds, std::int32_t x, std::int32_t count) {
    for (std::int32_t i = -1; i < count; ++i) {
        Square(gds, kContact, x, kFirstContact + i * kContactPitch, kContactSize);
    }
}

void ViaColumn(GdsWriter& gds, std::int32_t x, std::int32_t count) {
    for (std::int32_t i = -1; i < count; ++i) {
        Square(gds, kVia, x, kFirstContact + i * 2 * kContactPitch, kViaSize);
    }
}

void DrawDevices(GdsWriter& gds) {
    gds.Rectangle(kNWell, 5200, -1500, 10800, 11000);

    // From the left: substrate tap, nMOS, pMOS, well tap
    gds.Rectangle(kActive, 250, -100, 1050, 4900);
    gds.Rectangle(kActive, 1750, -100, 4350, 4900);
    gds.Rectangle(kActive, 6050, -100, 8650, 6900);
    gds.Rectangle(kActive, 9350, -100, 10150, 6900);
    gds.Rectangle(kPPlus, -50, -400, 1350, 5200);
    gds.Rectangle(kNPlus, 1450, -400, 4650, 5200);
    gds.Rectangle(kPPlus, 5750, -400, 8950, 7200);
    gds.Rectangle(kNPlus, 9050, -400, 10450, 7200);

    // Both gates and the strap that joins them behind the transistors
    gds.Boundary(kPoly, {{2800, -600},
                         {3300, -600},
                         {3300, 7500},
                         {7100, 7500},
                         {7100, -600},
                         {7600, -600},
                         {7600, 8200},
                         {2800, 8200}});

    ContactColumn(gds, 650, 4);
    ContactColumn(gds, 2275, 4);
    ContactColumn(gds, 3825, 4);
    ContactColumn(gds, 6575, 6);
    ContactColumn(gds, 8125, 6);
    ContactColumn(gds, 9750, 6);
    Square(gds, kContact, 4700, 7850, kContactSize);
    Square(gds, kContact, 5700, 7850, kContactSize);
}

void DrawMetals(GdsWriter& gds) {
    // Ground joins substrate tap and nMOS source, supply joins pMOS source and well tap
    gds.Rectangle(kMetal1, 300, -300, 2625, 5100);
    gds.Rectangle(kMetal1, 7775, -300, 10100, 7100);
    // Output: one strip over both drains, joined in front and at the back of the nMOS
    gds.Rectangle(kMetal1, 3475, -300, 4175, 5100);
    gds.Rectangle(kMetal1, 6225, -300, 6925, 7100);
    gds.Rectangle(kMetal1, 4175, -300, 6225, 2300);
    gds.Rectangle(kMetal1, 4175, 3700, 6225, 4700);
    // Input
    gds.Rectangle(kMetal1, 4300, 7450, 6100, 8250);

    ViaColumn(gds, 1450, 2);
    ViaColumn(gds, 8950, 3);
    ViaColumn(gds, 5200, 2);
    Square(gds, kVia, 5200, 7850, kViaSize);

    gds.Rectangle(kMetal2, 850, -2000, 2050, 11000);
    gds.Rectangle(kMetal2, 8350, -2000, 9550, 11000);
    gds.Rectangle(kMetal2, 4600, -2000, 5800, 5900);
    gds.Rectangle(kMetal2, 4600, 7250, 5800, 11000);
    gds.Rectangle(kPad, 8600, 4300, 9300, 7300);
    gds.Rectangle(kPad, 1100, 4300, 1800, 7300);
}

}  // namespace

GdsWriter CmosInverterLayout() {
    GdsWriter gds;
    gds.BeginLibrary();
    gds.BeginCell("CMOS_INVERTER");
    DrawDevices(gds);
    DrawMetals(gds);
    gds.EndCell();
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
