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
        std::string_view& place = places_[std::hash<std::string_view>()(name) % places_.size()];
        if (place != name) {
            const std::span<const char> kept = pool.Keep(name);
            place = {kept.data(), kept.size()};
        }
        return place;
    }

private:
    std::array<std::string_view, 4096> places_;
};

}  // namespace zelmo
