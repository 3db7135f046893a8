#include "examples/processes/cuts.h"
#include "examples/processes/layouts.h"

namespace zelmo {

namespace {

enum Mask : std::uint16_t {
    kDeepNWell = 12,
    kNWell = 21,
    kActive = 22,
    kPoly = 30,
    kPPlus = 31,
    kNPlus = 32,
    kContact = 33,
    kMetal1 = 34,
    kVia1 = 35,
    kMetal2 = 36,
    kPad = 37,
    kVia2 = 38,
    kVia3 = 40,
    kVia4 = 41,
    kMetal3 = 42,
    kMetal4 = 46,
    kSilicideBlock = 49,
    kThickOxide = 55,
    kCapacitor = 75,
    kMetal5 = 81,
    kPWell = 204,
};

constexpr std::int32_t kContactSize = 220;
constexpr std::int32_t kViaSize = 260;

void DrawDevices(GdsWriter& gds) {
    gds.Rectangle(kPWell, -2000, -2000, 9000, 2700);
    gds.Rectangle(kNWell, -2000, 2700, 9000, 9000);
    gds.Rectangle(kActive, 500, 500, 2300, 1500);
    gds.Rectangle(kActive, 500, 3200, 2300, 4800);
    gds.Rectangle(kNPlus, 300, 300, 2500, 1700);
    gds.Rectangle(kPPlus, 300, 3000, 2500, 5000);
    // Both gates in one, with its landing between the transistors
    gds.Boundary(kPoly, {{1260, 200},
                         {1540, 200},
                         {1540, 5100},
                         {1260, 5100},
                         {1260, 2500},
                         {860, 2500},
                         {860, 2100},
                         {1260, 2100}});
    // A transistor with thick oxide in a well of its own
    gds.Rectangle(kDeepNWell, 2850, -500, 6350, 1950);
    gds.Rectangle(kActive, 3300, 500, 5900, 1500);
    gds.Rectangle(kNPlus, 3100, 300, 6100, 1700);
    gds.Rectangle(kPoly, 4300, 200, 4900, 1800);
    gds.Rectangle(kThickOxide, 3000, 100, 6200, 1900);
    // A resistor without silicide on its body
    gds.Rectangle(kPoly, 3300, 3500, 5900, 4000);
    gds.Rectangle(kPPlus, 3100, 3300, 6100, 4200);
    gds.Rectangle(kSilicideBlock, 3900, 3300, 5300, 4200);

    DrawCuts(gds, kContact, kContactSize, {850, 850, 1, 2, 400});
    DrawCuts(gds, kContact, kContactSize, {1950, 850, 1, 2, 400});
    DrawCuts(gds, kContact, kContactSize, {850, 3500, 1, 3, 500});
    DrawCuts(gds, kContact, kContactSize, {1950, 3500, 1, 3, 500});
    DrawCuts(gds, kContact, kContactSize, {1060, 2300});
    DrawCuts(gds, kContact, kContactSize, {3750, 850, 1, 2, 400});
    DrawCuts(gds, kContact, kContactSize, {5450, 850, 1, 2, 400});
    DrawCuts(gds, kContact, kContactSize, {3550, 3750});
    DrawCuts(gds, kContact, kContactSize, {5650, 3750});
}

void DrawLowerMetals(GdsWriter& gds) {
    gds.Rectangle(kMetal1, 650, -600, 1050, 1450);
    gds.Rectangle(kMetal1, 650, 3250, 1050, 6000);
    gds.Rectangle(kMetal1, 1750, 600, 2150, 4750);
    gds.Rectangle(kMetal1, 750, 2000, 1350, 2600);
    gds.Rectangle(kMetal1, 3550, 600, 3950, 1450);
    gds.Rectangle(kMetal1, 5250, 600, 5650, 1450);
    gds.Rectangle(kMetal1, 2150, 2100, 3700, 2600);
    gds.Rectangle(kMetal1, 3350, 2600, 3750, 4000);
    gds.Rectangle(kMetal1, 5450, 3300, 5850, 4200);
    DrawCuts(gds, kVia1, kViaSize, {2700, 2350, 2, 1, 600});
    DrawCuts(gds, kVia1, kViaSize, {5450, 1000});
    gds.Rectangle(kMetal2, 2500, 2100, 4600, 2600);
    gds.Rectangle(kMetal2, 5200, 300, 5700, 1500);
    DrawCuts(gds, kVia2, kViaSize, {3900, 2350});
    gds.Rectangle(kMetal3, 3500, 1600, 4600, 2700);
    DrawCuts(gds, kVia3, kViaSize, {4200, 1850, 1, 2, 500});
}

void DrawUpperMetals(GdsWriter& gds) {
    gds.Rectangle(kMetal4, 3600, 1500, 4700, 2700);
    gds.Rectangle(kMetal4, 400, 3000, 3000, 5400);
    gds.Rectangle(kCapacitor, 700, 3300, 2200, 5100);
    DrawCuts(gds, kVia4, kViaSize, {4200, 1850, 1, 2, 500});
    DrawCuts(gds, kVia4, kViaSize, {1100, 3700, 2, 3, 500});
    DrawCuts(gds, kVia4, kViaSize, {2600, 3700, 1, 3, 500});
    gds.Rectangle(kMetal5, 600, 3200, 2150, 5200);
    gds.Boundary(kMetal5, {{3600, 1500},
                           {4800, 1500},
                           {4800, 3000},
                           {6000, 3000},
                           {6000, 5400},
                           {2400, 5400},
                           {2400, 3300},
                           {3600, 3300}});
    gds.Rectangle(kPad, 3700, 3700, 5600, 5000);
}

}  // namespace

GdsWriter Gf180mcuLayout() {
    GdsWriter gds;
    gds.BeginLibrary();
    gds.BeginCell("INVERTER");
    DrawDevices(gds);
    DrawLowerMetals(gds);
    DrawUpperMetals(gds);
    gds.EndCell();
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
