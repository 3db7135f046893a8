#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "gds/growing_array.h"

namespace zelmo {

/// Memory for a great many runs of plain values, such as the points of polygons, which all stay
/// where they are until the pool goes. Takes a few large blocks from the system, each twice as
/// large as the last one.
template <typename T>
class RunPool {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    RunPool() = default;
    RunPool(RunPool&& other) noexcept
        : blocks_(std::move(other.blocks_)),
          longRuns_(std::move(other.longRuns_)),
          free_(std::exchange(other.free_, {})) {}
    RunPool& operator=(RunPool&& other) noexcept {
        blocks_ = std::move(other.blocks_);
        longRuns_ = std::move(other.longRuns_);
        free_ = std::exchange(other.free_, {});
        return *this;
    }

    /// Room for `count` values, whose content is anything.
    std::span<T> Take(std::size_t count) {
        if (count > free_.size()) {
            AddBlock(count);
        }
        const std::span<T> run = free_.first(count);
        free_ = free_.subspan(count);
        return run;
    }

    /// A copy of the values.
    std::span<T> Keep(std::span<const T> values) {
        const std::span<T> run = Take(values.size());
        std::copy(values.begin(), values.end(), run.begin());
        return run;
    }

    /// The values of a list, which is empty then. Short lists are copied and keep their memory for
    /// other values; long ones give theirs to the pool.
    std::span<T> KeepAll(GrowingArray<T>& list) {
        if (list.size() < shortestLongRun) {
            const std::span<T> run = Keep(list.Items());
            list.clear();
            return run;
        }
        list.shrink_to_fit();
        longRuns_.push_back(std::move(list));
        return longRuns_.back().Items();
    }

private:
    static constexpr std::size_t smallestBlock = (std::size_t{1} << 12) / sizeof(T);
    static constexpr std::size_t largestBlock = (std::size_t{1} << 22) / sizeof(T);
    static constexpr std::size_t shortestLongRun = (std::size_t{1} << 16) / sizeof(T);

    struct Release {
        void operator()(T* values) const { std::allocator<T>().deallocate(values, count); }
        std::size_t count;
    };
    using Block = std::unique_ptr<T, Release>;

    /// What remains of the last block is lost.
    void AddBlock(std::size_t count) {
        const std::size_t last = blocks_.empty() ? 0 : blocks_.back().get_deleter().count;
        const std::size_t size = std::max(count, std::clamp(2 * last, smallestBlock, largestBlock));
        Block block(std::allocator<T>().allocate(size), Release{size});
        const std::span<T> all(block.get(), size);
        blocks_.push_back(std::move(block));
        free_ = all;
    }

    std::vector<Block> blocks_;
    std::vector<GrowingArray<T>> longRuns_;
    std::span<T> free_;  ///< of the last block
};

}  // namespace zelmo
