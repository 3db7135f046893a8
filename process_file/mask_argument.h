#pragma once

#include <string_view>
#include <vector>

#include "model/process.h"

namespace zelmo {

struct ReaderState;

/// Reads the layers of a mask behind `argument`: numbers as "66", which stand for all datatypes of
/// a layer, and pairs of layer and datatype as "66/20", with commas between. None where it is no
/// such list.
std::vector<MaskLayer> ReadMask(ReaderState& state, std::string_view line,
                                std::string_view argument);

}  // namespace zelmo
