#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "render/visible/layer_stack.h"

namespace zelmo {

// What a square of a mesh has to draw, as bits beside those of what it has at all
// (mesh/mesh_numbers.h).
constexpr std::uint8_t drawLowerFront = 4;
constexpr std::uint8_t drawUpperFront = 8;
constexpr std::uint8_t drawLowerBack = 16;
constexpr std::uint8_t drawUpperBack = 32;

/// A byte for every square of a window, row of squares by row of squares from the front. They hold
/// nothing at first.
class SquareBytes {
public:
    explicit SquareBytes(const LayerStack& stack)
        : squares_(stack.Squares()),
          bytes_(std::make_unique_for_overwrite<std::uint8_t[]>(Start(stack.rows - 1))) {}

    std::uint8_t* Row(std::int32_t row) { return bytes_.get() + Start(row); }
    const std::uint8_t* Row(std::int32_t row) const { return bytes_.get() + Start(row); }

private:
    std::size_t Start(std::int32_t row) const { return static_cast<std::size_t>(row) * squares_; }

    std::size_t squares_;
    std::unique_ptr<std::uint8_t[]> bytes_;
};

/// The triangles of a stack that a picture needs.
struct ChosenTriangles {
    LayerStack stack;
    std::vector<SquareBytes> layers;  ///< of `stack`: what the squares have and what is drawn
};

}  // namespace zelmo
