#include "examples/layouts.h"
#include "examples/round_shapes.h"
#include "examples/three_poly_masks.h"

namespace zelmo {

namespace {

// Radii in nm, angles in degrees.
constexpr double kBore = 5600;
constexpr double kRotorBody = 14000;
constexpr double kRotorPole = 20000;
constexpr double kHalfRotorPole = 12;
constexpr int kRotorPoles = 8;
constexpr double kStatorPole = 22000;
constexpr double kStatorEnd = 34000;
constexpr int kStatorPoles = 12;

void DrawRotor(GdsWriter& gds) {
    // Two halves that overlap, for a polygon has no hole
    gds.Boundary(kPoly1, RingSector(kBore, kRotorBody, -3, 183));
    gds.Boundary(kPoly1, RingSector(kBore, kRotorBody, 177, 363));
    for (int i = 0; i < kRotorPoles; ++i) {
        const double direction = 360.0 / kRotorPoles * i;
        gds.Boundary(kPoly1, RingSector(kRotorBody - 1000, kRotorPole, direction - kHalfRotorPole,
                                        direction + kHalfRotorPole));
        gds.Boundary(kDimple, Circle(Polar(11500, direction), 1200));
        gds.Boundary(kHole1, Circle(Polar(10600, direction + 180.0 / kRotorPoles), 1500));
    }
}

void DrawHub(GdsWriter& gds) {
    gds.Boundary(kAnchor2, Circle({0, 0}, 3000));
    gds.Boundary(kPoly2, Circle({0, 0}, 8400));
}

void DrawStatorPole(GdsWriter& gds, double direction) {
    const auto sector = [&](std::uint16_t mask, double inner, double outer, double halfAngle) {
        gds.Boundary(mask, RingSector(inner, outer, direction - halfAngle, direction + halfAngle));
    };
    sector(kPoly0, 23000, 35000, 10);
    gds.Path(kPoly0, {Polar(34000, direction), Polar(80000, direction)}, 4000);
    sector(kAnchor1, 25500, 30500, 6.5);
    sector(kPoly1, kStatorPole, kStatorEnd, 11);
    sector(kVia, 25500, 30500, 6.5);
    sector(kPoly2, 22800, 33200, 10);
    sector(kMetal, 23800, 32200, 8.5);
}

}  // namespace

GdsWriter MicromotorLayout() {
    GdsWriter gds;
    gds.BeginLibrary();
    gds.BeginCell("MICROMOTOR");
    gds.Boundary(kPoly0, Circle({0, 0}, 21000));
    DrawRotor(gds);
    DrawHub(gds);
    for (int i = 0; i < kStatorPoles; ++i) {
        DrawStatorPole(gds, 360.0 / kStatorPoles * i);
    }
    gds.EndCell();
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
