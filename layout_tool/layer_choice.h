#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "gds/layout_contents.h"
#include "model/mask/mask_layer.h"

namespace zelmo {

/// The layers that an argument asks for, or what is wrong with it.
struct LayerListArgument {
    std::vector<MaskLayer> layers;
    std::string failure;  ///< one line; empty if there are layers
};

/// Reads "22,30,33/0": layers, each with all of its datatypes or with one, up to 65535.
LayerListArgument ParseLayerList(std::string_view text);

/// "66/20,66/44"
std::string LayerListText(std::span<const MaskLayer> layers);

/// Those of `wanted` of which a cell with these layers has nothing.
std::vector<MaskLayer> UnknownLayers(std::span<const MaskLayer> wanted, const CellLayers& layers);

/// "1/0, 2/3 and 5 more", or "no layers".
std::string KnownLayersText(const CellLayers& layers);

}  // namespace zelmo
