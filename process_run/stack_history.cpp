#include "process_run/stack_history.h"

#include <iterator>
#include <limits>
#include <memory>
#include <set>

namespace zelmo {

namespace {

/// Counts arrays, each once however many stacks share it.
class ArrayBytes {
public:
    void Add(const Stack& stack) {
        Add(stack.coverMap);
        for (const std::unique_ptr<Layer>& layer : stack.layers) {
            if (layer != nullptr) {
                Add(layer->top);
                Add(layer->bottom);
            }
        }
    }
    std::uint64_t Sum() const { return sum_; }

private:
    template <typename T>
    void Add(const SharedArray<T>& array) {
        if (seen_.insert(array.data()).second) {
            sum_ += array.size() * sizeof(T);
        }
    }

    std::set<const void*> seen_;
    std::uint64_t sum_ = 0;
};

}  // namespace

void StackHistory::Keep(std::size_t index, const Stack& stack) {
    stacks_.insert_or_assign(index, CopyStack(stack));
    while (stacks_.size() > 2 && Bytes() > memoryLimit_) {
        DropOne();
    }
}

const Stack* StackHistory::Find(std::size_t index) const {
    const auto found = stacks_.find(index);
    return found != stacks_.end() ? &found->second : nullptr;
}

std::optional<std::size_t> StackHistory::LastUpTo(std::size_t index) const {
    const auto after = stacks_.upper_bound(index);
    return after != stacks_.begin() ? std::optional(std::prev(after)->first) : std::nullopt;
}

void StackHistory::ForgetFrom(std::size_t index) {
    stacks_.erase(stacks_.lower_bound(index), stacks_.end());
}

std::uint64_t StackHistory::Bytes() const {
    ArrayBytes bytes;
    for (const auto& [index, stack] : stacks_) {
        bytes.Add(stack);
    }
    return bytes.Sum();
}

void StackHistory::DropOne() {
    const std::size_t last = std::prev(stacks_.end())->first;
    auto worst = std::next(stacks_.begin());
    double smallest = std::numeric_limits<double>::infinity();
    for (auto it = worst; std::next(it) != stacks_.end(); ++it) {
        // How many steps there would be to do again, against how far back that would be.
        const std::size_t gap = std::next(it)->first - std::prev(it)->first;
        const double cost = static_cast<double>(gap) / static_cast<double>(last - it->first + 1);
        if (cost < smallest) {
            smallest = cost;
            worst = it;
        }
    }
    stacks_.erase(worst);
}

}  // namespace zelmo
