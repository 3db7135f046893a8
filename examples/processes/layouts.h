#pragma once

#include "examples/gds_writer.h"

// The layouts that the reference processes run on as they are, complete libraries with a database
// unit of 1 nm. Each draws every mask of its process, in the layers of the kit that the process
// file of the same name is made for. They are no cells of these kits.

namespace zelmo {

/// Cell NAND2: a NAND of two inputs with taps, a transistor with thick gate oxide, two capacitors
/// and the way up to a pad in metal 5.
GdsWriter Sky130Layout();

/// Cell INVERTER: an inverter, a transistor with thick gate oxide, a resistor, a capacitor and the
/// way up to a pad in metal 5.
GdsWriter Gf180mcuLayout();

/// Cell INVERTER: the same for seven metals.
GdsWriter Sg13g2Layout();

/// Cell HEATER: a waveguide under a heater between two pads, a doped strip of silicon, and a window
/// to the buried oxide.
GdsWriter Soi220Layout();

/// Cell SWITCH: a cantilever of polysilicon 1 over its electrode, with a bridge of polysilicon 2
/// over its tip.
GdsWriter MemsThreePolyLayout();

}  // namespace zelmo
