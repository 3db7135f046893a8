#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <string_view>

#include "gds/run_pool.h"

namespace zelmo {

/// Keeps names of references, each of which many references have. Those that it has kept of late
/// are not kept again.
class NameCache {
public:
    /// The name, to stay as long as the pool.
    std::string_view Keep(std::string_view name, RunPool<char>& pool) {
        std::string_view& slot = slots_[std::hash<std::string_view>()(name) % slots_.size()];
        if (slot != name) {
            const std::span<const char> kept = pool.Keep(name);
            slot = {kept.data(), kept.size()};
        }
        return slot;
    }

private:
    std::array<std::string_view, 4096> slots_;
};

}  // namespace zelmo
