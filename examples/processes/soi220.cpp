#include "examples/processes/layouts.h"

namespace zelmo {

namespace {

enum Mask : std::uint16_t {
    kSilicon = 1,
    kOxideOpening = 6,
    kHeater = 11,
    kRouting = 12,
    kPadOpening = 13,
    kDopedN = 20,
    kDopedNPlus = 24,
};

}  // namespace

GdsWriter Soi220Layout() {
    GdsWriter gds;
    gds.BeginLibrary();
    gds.BeginCell("HEATER");
    // The waveguide runs away from the cut, the heater above it between two pads
    gds.Rectangle(kSilicon, 7750, -30000, 8250, 30000);
    gds.Rectangle(kHeater, 6500, -1000, 9500, 11000);
    gds.Rectangle(kHeater, 2500, -1000, 9500, 2000);
    gds.Rectangle(kHeater, 6500, 8000, 13500, 11000);
    gds.Rectangle(kRouting, -3000, -2500, 5000, 3500);
    gds.Rectangle(kRouting, 11000, 6500, 19000, 12500);
    gds.Rectangle(kPadOpening, -2000, -1500, 2000, 2500);
    gds.Rectangle(kPadOpening, 14000, 7500, 18000, 11500);
    // A strip of doped silicon with contacts at its ends, crossed by the cut
    gds.Rectangle(kSilicon, 11500, -3000, 17500, 3000);
    gds.Rectangle(kDopedN, 11000, -3500, 18000, 3500);
    gds.Rectangle(kDopedNPlus, 11000, -3500, 12800, 3500);
    gds.Rectangle(kDopedNPlus, 16200, -3500, 18000, 3500);
    gds.Rectangle(kOxideOpening, 19500, -3000, 23500, 5000);
    gds.EndCell();
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
