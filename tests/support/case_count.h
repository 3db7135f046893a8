#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace zelmo {

/// How many random cases a comparison runs: `usual`, or more if the environment's ZELMO_CASES says
/// so.
inline std::uint32_t CaseCount(std::uint32_t usual) {
    const char* cases = std::getenv("ZELMO_CASES");
    return cases != nullptr ? std::max(usual, static_cast<std::uint32_t>(std::stoul(cases)))
                            : usual;
}

}  // namespace zelmo
