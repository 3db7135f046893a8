#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>

#include "model/process.h"

namespace zelmo {

struct ProcessModel;
struct ProcessStep;

/// Numbers of polygons by layer and datatype.
using LayerCounts = std::map<std::pair<std::uint32_t, std::uint32_t>, std::size_t>;

/// The layers of those polygons of a model that reach into its shown window.
LayerCounts LayersInWindow(const ProcessModel& model);

/// Whether the mask of a photo step has polygons that reach into the shown window, grown and moved
/// as it asks for.
bool HasPolygonsInWindow(const ProcessModel& model, const ProcessStep& photo);

/// A mask as `-mask_id` has it: "65/20,65/44".
std::string MaskText(std::span<const MaskLayer> mask);

}  // namespace zelmo
