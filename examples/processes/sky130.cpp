#include "examples/processes/cuts.h"
#include "examples/processes/layouts.h"

namespace zelmo {

namespace {

using Layer = GdsWriter::Layer;

constexpr Layer kDeepNWell{64, 18};
constexpr Layer kNWell{64, 20};
constexpr Layer kDiffusion{65, 20};
constexpr Layer kTap{65, 44};
constexpr Layer kPoly{66, 20};
constexpr Layer kLicon{66, 44};
constexpr Layer kLocal{67, 20};
constexpr Layer kMcon{67, 44};
constexpr Layer kMetal1{68, 20};
constexpr Layer kVia1{68, 44};
constexpr Layer kMetal2{69, 20};
constexpr Layer kVia2{69, 44};
constexpr Layer kMetal3{70, 20};
constexpr Layer kVia3{70, 44};
constexpr Layer kMetal4{71, 20};
constexpr Layer kVia4{71, 44};
constexpr Layer kMetal5{72, 20};
constexpr Layer kHighVoltage{75, 20};
constexpr Layer kPad{76, 20};
constexpr Layer kCapacitor1{89, 44};
constexpr Layer kCapacitor2{97, 44};
constexpr Layer kNPlus{93, 44};
constexpr Layer kPPlus{94, 20};
constexpr Layer kPolyOpening{95, 20};

constexpr std::int32_t kContactSize = 170;

void DrawSilicon(GdsWriter& gds) {
    gds.Rectangle(kNWell, -2000, 1305, 8000, 6000);
    // Both nMOS in series, both pMOS side by side, taps to their right
    gds.Rectangle(kDiffusion, 135, 235, 1245, 885);
    gds.Rectangle(kDiffusion, 135, 1485, 1245, 2485);
    gds.Rectangle(kTap, 1700, 235, 2000, 885);
    gds.Rectangle(kTap, 1700, 1600, 2000, 2485);
    gds.Rectangle(kNPlus, 0, 100, 1400, 1000);
    gds.Rectangle(kNPlus, 1575, 1475, 2125, 2610);
    gds.Rectangle(kPPlus, 0, 1350, 1400, 2620);
    gds.Rectangle(kPPlus, 1575, 100, 2125, 1010);
    // A transistor with thick oxide in a well of its own
    gds.Rectangle(kDeepNWell, 2350, -400, 4900, 1100);
    gds.Rectangle(kDiffusion, 2600, 235, 4500, 885);
    gds.Rectangle(kNPlus, 2475, 110, 4625, 1010);
    gds.Rectangle(kHighVoltage, 2400, 0, 4700, 1120);
}

void DrawGates(GdsWriter& gds) {
    // Each gate with its landing between the transistors
    gds.Boundary(kPoly, {{395, 105},
                         {545, 105},
                         {545, 2615},
                         {395, 2615},
                         {395, 1245},
                         {195, 1245},
                         {195, 975},
                         {395, 975}});
    gds.Boundary(kPoly, {{835, 105},
                         {985, 105},
                         {985, 975},
                         {1185, 975},
                         {1185, 1245},
                         {985, 1245},
                         {985, 2615},
                         {835, 2615}});
    gds.Rectangle(kPoly, 3300, 105, 3800, 1015);
    gds.Rectangle(kPolyOpening, 145, 925, 495, 1295);
    gds.Rectangle(kPolyOpening, 885, 925, 1235, 1295);

    DrawCuts(gds, kLicon, kContactSize, {250, 400, 1, 2, 340});
    DrawCuts(gds, kLicon, kContactSize, {1130, 400, 1, 2, 340});
    DrawCuts(gds, kLicon, kContactSize, {250, 1650, 1, 3, 340});
    DrawCuts(gds, kLicon, kContactSize, {690, 1650, 1, 3, 340});
    DrawCuts(gds, kLicon, kContactSize, {1130, 1990, 1, 2, 340});
    DrawCuts(gds, kLicon, kContactSize, {1850, 400, 1, 2, 340});
    DrawCuts(gds, kLicon, kContactSize, {1850, 1750, 1, 3, 340});
    DrawCuts(gds, kLicon, kContactSize, {2850, 400, 1, 2, 340});
    DrawCuts(gds, kLicon, kContactSize, {4250, 400, 1, 2, 340});
    DrawCuts(gds, kLicon, kContactSize, {300, 1110});
    DrawCuts(gds, kLicon, kContactSize, {1080, 1110});
}

void DrawLocalInterconnect(GdsWriter& gds) {
    // Ground and supply with their rails
    gds.Rectangle(kLocal, -2000, -85, 8000, 85);
    gds.Rectangle(kLocal, 165, 85, 335, 885);
    gds.Rectangle(kLocal, 1765, 85, 1935, 885);
    gds.Rectangle(kLocal, -2000, 2635, 8000, 2805);
    gds.Rectangle(kLocal, 165, 1485, 335, 2635);
    gds.Rectangle(kLocal, 1045, 1820, 1215, 2635);
    gds.Rectangle(kLocal, 1765, 1600, 1935, 2635);
    // The output joins the lower nMOS with the drain between both pMOS
    gds.Boundary(kLocal, {{1045, 235},
                          {1215, 235},
                          {1215, 715},
                          {1600, 715},
                          {1600, 1515},
                          {775, 1515},
                          {775, 2465},
                          {605, 2465},
                          {605, 1345},
                          {1430, 1345},
                          {1430, 885},
                          {1045, 885}});
    // Inputs, and the transistor with thick oxide
    gds.Rectangle(kLocal, 215, 995, 385, 1225);
    gds.Rectangle(kLocal, 995, 995, 1165, 1225);
    gds.Rectangle(kLocal, 2765, 235, 2935, 885);
    gds.Rectangle(kLocal, 4165, 235, 4335, 885);

    DrawCuts(gds, kMcon, kContactSize, {300, 1110});
    DrawCuts(gds, kMcon, kContactSize, {1080, 1110});
    DrawCuts(gds, kMcon, kContactSize, {1515, 900, 1, 2, 360});
    DrawCuts(gds, kMcon, kContactSize, {2850, 400, 1, 2, 340});
    DrawCuts(gds, kMcon, kContactSize, {4250, 400, 1, 2, 340});
    DrawCuts(gds, kMcon, kContactSize, {460, 2720, 8, 1, 460});
}

void DrawLowerMetals(GdsWriter& gds) {
    gds.Rectangle(kMetal1, -2000, -240, 8000, 145);
    gds.Rectangle(kMetal1, -2000, 2480, 8000, 2960);
    gds.Rectangle(kMetal1, 170, 400, 430, 1240);
    gds.Rectangle(kMetal1, 950, 400, 1210, 1240);
    gds.Rectangle(kMetal1, 1385, 770, 2500, 1390);
    gds.Rectangle(kMetal1, 2720, 270, 2980, 870);
    gds.Rectangle(kMetal1, 4120, 270, 4380, 870);
    DrawCuts(gds, kVia1, 150, {1950, 900, 2, 2, 340});
    gds.Rectangle(kMetal2, 1800, 740, 3000, 1400);
    gds.Rectangle(kMetal2, 300, 1700, 3600, 1980);
    DrawCuts(gds, kVia2, 200, {2550, 920, 1, 2, 320});
}

void DrawUpperMetals(GdsWriter& gds) {
    gds.Rectangle(kMetal3, 2300, 500, 3700, 1700);
    gds.Rectangle(kMetal3, 700, 2150, 4900, 4200);
    gds.Rectangle(kCapacitor1, 900, 2400, 2300, 3900);
    DrawCuts(gds, kVia3, 200, {2550, 920, 1, 2, 320});
    DrawCuts(gds, kVia3, 200, {1200, 2700, 3, 3, 400});
    DrawCuts(gds, kVia3, 200, {2800, 2700, 1, 3, 400});
    gds.Rectangle(kMetal4, 2300, 400, 3700, 1700);
    gds.Rectangle(kMetal4, 800, 2300, 2400, 4000);
    gds.Rectangle(kMetal4, 2650, 2000, 5000, 4300);
    gds.Rectangle(kCapacitor2, 3000, 2300, 4800, 4100);
    DrawCuts(gds, kVia4, 800, {3000, 1050});
    DrawCuts(gds, kVia4, 800, {1600, 3150});
    DrawCuts(gds, kVia4, 800, {3900, 3200});
    gds.Boundary(kMetal5, {{2200, 300},
                           {3900, 300},
                           {3900, 2300},
                           {5100, 2300},
                           {5100, 4200},
                           {2900, 4200},
                           {2900, 2000},
                           {2200, 2000}});
    gds.Rectangle(kMetal5, 700, 2350, 2500, 4000);
    gds.Rectangle(kPad, 3300, 2650, 4700, 3850);
}

}  // namespace

GdsWriter Sky130Layout() {
    GdsWriter gds;
    gds.BeginLibrary();
    gds.BeginCell("NAND2");
    DrawSilicon(gds);
    DrawGates(gds);
    DrawLocalInterconnect(gds);
    DrawLowerMetals(gds);
    DrawUpperMetals(gds);
    gds.EndCell();
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
