#include "examples/processes/cuts.h"
#include "examples/processes/layouts.h"

namespace zelmo {

namespace {

enum Mask : std::uint16_t {
    kActive = 1,
    kPoly = 5,
    kContact = 6,
    kMetal1 = 8,
    kPassivation = 9,
    kMetal2 = 10,
    kPPlus = 14,
    kVia1 = 19,
    kSilicideBlock = 28,
    kVia2 = 29,
    kMetal3 = 30,
    kNWell = 31,
    kBuriedLayer = 32,
    kCapacitor = 36,
    kThickOxide = 44,
    kVia3 = 49,
    kMetal4 = 50,
    kVia4 = 66,
    kMetal5 = 67,
    kTopVia1 = 125,
    kTopMetal1 = 126,
    kResistor = 128,
    kCapacitorVia = 129,
    kTopVia2 = 133,
    kTopMetal2 = 134,
};

constexpr std::int32_t kContactSize = 160;
constexpr std::int32_t kViaSize = 190;

void DrawDevices(GdsWriter& gds) {
    gds.Rectangle(kNWell, -3000, 2700, 14000, 14000);
    gds.Rectangle(kActive, 500, 500, 2100, 1700);
    gds.Rectangle(kActive, 500, 3200, 2100, 5200);
    gds.Rectangle(kPPlus, 300, 3000, 2300, 5400);
    // Two gates, each over both transistors, joined between them
    gds.Rectangle(kPoly, 935, 300, 1065, 5400);
    gds.Rectangle(kPoly, 1535, 300, 1665, 5400);
    gds.Rectangle(kPoly, 1065, 2200, 1535, 2500);
    // A transistor with thick oxide over a buried layer
    gds.Rectangle(kBuriedLayer, 2700, -800, 6300, 2300);
    gds.Rectangle(kThickOxide, 3000, 100, 6000, 2100);
    gds.Rectangle(kActive, 3300, 500, 5700, 1700);
    gds.Rectangle(kPoly, 4275, 200, 4725, 2000);
    // A resistor: its body is drawn as such, its heads as polysilicon
    gds.Rectangle(kPoly, 3300, 3600, 3900, 4100);
    gds.Rectangle(kResistor, 3900, 3600, 5500, 4100);
    gds.Rectangle(kPoly, 5500, 3600, 6100, 4100);
    gds.Rectangle(kSilicideBlock, 3900, 3400, 5500, 4300);

    for (const std::int32_t x : {700, 1300, 1900}) {
        DrawCuts(gds, kContact, kContactSize, {x, 700, 1, 3, 400});
        DrawCuts(gds, kContact, kContactSize, {x, 3500, 1, 4, 450});
    }
    DrawCuts(gds, kContact, kContactSize, {1300, 2350});
    DrawCuts(gds, kContact, kContactSize, {3700, 700, 1, 3, 400});
    DrawCuts(gds, kContact, kContactSize, {5300, 700, 1, 3, 400});
    DrawCuts(gds, kContact, kContactSize, {3600, 3850});
    DrawCuts(gds, kContact, kContactSize, {5800, 3850});
}

void DrawMetal1(GdsWriter& gds) {
    for (const std::int32_t x : {700, 1900}) {
        gds.Rectangle(kMetal1, x - 130, -500, x + 130, 1650);
        gds.Rectangle(kMetal1, x - 130, 3350, x + 130, 6500);
    }
    // The output bends around the input
    gds.Boundary(kMetal1, {{1170, 550},
                           {1430, 550},
                           {1430, 1800},
                           {2500, 1800},
                           {2500, 2900},
                           {1430, 2900},
                           {1430, 5000},
                           {1170, 5000},
                           {1170, 2750},
                           {2250, 2750},
                           {2250, 2050},
                           {1170, 2050}});
    gds.Rectangle(kMetal1, 400, 2200, 1400, 2500);
    gds.Rectangle(kMetal1, 2500, 2250, 3900, 2750);
    gds.Rectangle(kMetal1, 3400, 2750, 3800, 4050);
    gds.Rectangle(kMetal1, 3550, 550, 3850, 1650);
    gds.Rectangle(kMetal1, 5150, 550, 5450, 1650);
    gds.Rectangle(kMetal1, 5600, 3500, 6000, 4400);
}

void DrawThinMetals(GdsWriter& gds) {
    DrawMetal1(gds);
    DrawCuts(gds, kVia1, kViaSize, {2900, 2500, 2, 1, 600});
    DrawCuts(gds, kVia1, kViaSize, {5300, 1000, 1, 2, 400});
    gds.Rectangle(kMetal2, 2600, 2250, 5000, 2750);
    gds.Rectangle(kMetal2, 5100, 300, 5500, 1700);
    DrawCuts(gds, kVia2, kViaSize, {3800, 2500, 2, 1, 600});
    gds.Rectangle(kMetal3, 3500, 1800, 5000, 2800);
    DrawCuts(gds, kVia3, kViaSize, {4000, 2100, 2, 2, 500});
    gds.Rectangle(kMetal4, 3500, 1700, 5200, 2900);
    DrawCuts(gds, kVia4, kViaSize, {4000, 2100, 3, 2, 500});
    gds.Rectangle(kMetal5, 3400, 1600, 5800, 3000);
    gds.Rectangle(kMetal5, 400, 3400, 4000, 7000);
    gds.Rectangle(kCapacitor, 800, 3800, 3000, 6600);
}

void DrawTopMetals(GdsWriter& gds) {
    DrawCuts(gds, kTopVia1, 420, {4100, 2300, 2, 1, 1000});
    DrawCuts(gds, kTopVia1, 420, {3550, 4200, 1, 3, 1000});
    DrawCuts(gds, kCapacitorVia, 420, {1400, 4400, 2, 2, 1000});
    gds.Rectangle(kTopMetal1, 3300, 1500, 6000, 3100);
    gds.Rectangle(kTopMetal1, 600, 3700, 3050, 6800);
    gds.Rectangle(kTopMetal1, 3250, 3800, 8500, 7000);
    DrawCuts(gds, kTopVia2, 900, {5200, 2300});
    DrawCuts(gds, kTopVia2, 900, {6600, 5400});
    gds.Boundary(
        kTopMetal2,
        {{3800, 1300}, {8800, 1300}, {8800, 7200}, {4600, 7200}, {4600, 3300}, {3800, 3300}});
    gds.Rectangle(kPassivation, 5400, 3600, 8000, 6400);
}

}  // namespace

GdsWriter Sg13g2Layout() {
    GdsWriter gds;
    gds.BeginLibrary();
    gds.BeginCell("INVERTER");
    DrawDevices(gds);
    DrawThinMetals(gds);
    DrawTopMetals(gds);
    gds.EndCell();
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
