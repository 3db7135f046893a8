#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "model/stack.h"

namespace zelmo {

/// Stacks of a run as they were after its steps. They share the surfaces that no step between them
/// has rewritten. Where they need more memory than they may, some go: of neighbours those that lie
/// close together, the early ones first; the first and the last stay.
class StackHistory {
public:
    /// The limit counts the surfaces and cover maps of all kept stacks, in bytes.
    explicit StackHistory(std::uint64_t memoryLimit) : memoryLimit_(memoryLimit) {}

    /// Keeps a stack as that after the step with this index.
    void Keep(std::size_t index, const Stack& stack);

    /// The stack after the step with this index, or null.
    const Stack* Find(std::size_t index) const;

    /// The last step up to this one whose stack is kept.
    std::optional<std::size_t> LastUpTo(std::size_t index) const;

    /// Forgets the stacks after the step with this index, and after those that follow it.
    void ForgetFrom(std::size_t index);

    /// What the kept stacks take, in bytes.
    std::uint64_t Bytes() const;

private:
    void DropOne();

    std::uint64_t memoryLimit_;
    std::map<std::size_t, Stack> stacks_;
};

}  // namespace zelmo
