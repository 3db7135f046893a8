#pragma once

#include <vector>

#include "model/mask/region.h"

namespace zelmo {

/// The union of regions, as regions that share no area and no edge. Those that lie apart are told
/// from each other by their boxes, and only what touches is given to the polygon library, a few at
/// a time: the time grows little faster than the number of regions.
std::vector<Region> UniteRegions(std::vector<Region> regions);

}  // namespace zelmo
