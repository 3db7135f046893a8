#pragma once

#include <span>
#include <string>
#include <vector>

namespace zelmo {

struct Stack;

/// For each slot of the stack whether it holds a layer of one of these materials. The substrate and
/// photoresist are no materials that a type selects, whatever the names.
std::vector<bool> FindTypedLayers(const Stack& stack, std::span<const std::string> materials);

}  // namespace zelmo
