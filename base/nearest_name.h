#pragma once

#include <span>
#include <string_view>

namespace zelmo {

/// Of some known names the one that `name` is probably a slip of: where the fewest characters were
/// left out, put in, replaced or exchanged with their neighbour, letters of the other case counting
/// as next to nothing. The first of several; empty where none is near, which is more than a third
/// of the longer name's characters away, or where `name` is longer than any slip is looked for.
std::string_view NearestName(std::string_view name, std::span<const std::string_view> known);

}  // namespace zelmo
