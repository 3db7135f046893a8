#pragma once

#include "examples/gds_writer.h"

// The layouts of the examples, complete libraries with a database unit of 1 nm. The process file of
// the same name, beside these sources, says which mask each layer number stands for.

namespace zelmo {

/// Cell CMOS_INVERTER: an nMOS and a pMOS transistor side by side, with taps, two metals and a pad.
GdsWriter CmosInverterLayout();

/// Cell MICROMOTOR: a rotor that turns about a hub, and its stator poles. Centre at the origin.
GdsWriter MicromotorLayout();

/// Cell CROSSBAR: rows and columns of lines with a pillar at every crossing, fanned out to pads,
/// put together from references and arrays.
GdsWriter CrossbarLayout();

/// The cells of the guide, each for a few of its pages: TRANSISTOR, LINES, SLOTS, GATE_PAIR,
/// CANTILEVER and EDGE. Its process files are on the pages.
GdsWriter GuideLayout();

}  // namespace zelmo
