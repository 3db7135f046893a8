#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

namespace zelmo {

/// How many random cases a comparison runs: `usual`, or what the environment's ZELMO_CASES says.
inline std::uint32_t CaseCount(std::uint32_t usual) {
    const char* cases = std::getenv("ZELMO_CASES");
    return cases != nullptr ? static_cast<std::uint32_t>(std::stoul(cases)) : usual;
}

}  // namespace zelmo
