#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

// How the vertices of a layer's mesh are numbered: by first use in the order of its triangles,
// square by square along a band between two rows, band by band from the front. A square has two
// triangles; where one is there, both sheets have it, the lower sheet first.

namespace zelmo {

constexpr std::uint32_t unnumbered = std::numeric_limits<std::uint32_t>::max();

/// The numbers of a mesh position's vertices on the two sheets. They are given together.
struct VertexNumbers {
    std::uint32_t lower = unnumbered;
    std::uint32_t upper = unnumbered;

    bool Given() const { return lower != unnumbered; }
};

using NumberRow = std::vector<VertexNumbers>;

/// What a square of a mesh has, as bits.
constexpr std::uint8_t hasFrontTriangle = 1;  ///< its lower left half
constexpr std::uint8_t hasBackTriangle = 2;   ///< its upper right half
constexpr std::uint8_t hasSquare = hasFrontTriangle | hasBackTriangle;

/// Gives numbers from `next` on to the corners of a triangle that have none; returns the next one.
inline std::uint32_t NumberCorners(VertexNumbers& a, VertexNumbers& b, VertexNumbers& c,
                                   std::uint32_t next) {
    std::uint32_t count = 0;
    for (VertexNumbers* corner : {&a, &b, &c}) {
        if (!corner->Given()) {
            corner->lower = next + count;
            ++count;
        }
    }
    for (VertexNumbers* corner : {&a, &b, &c}) {
        if (corner->upper == unnumbered) {
            corner->upper = corner->lower + count;
        }
    }
    return next + 2 * count;
}

/// Numbers the vertices of a band's squares. `front` holds the row's numbers so far and receives
/// the new ones, `back` is to hold none. Returns the next number.
inline std::uint32_t NumberBand(const std::uint8_t* squares, std::size_t count, NumberRow& front,
                                NumberRow& back, std::uint32_t next) {
    for (std::size_t i = 0; i < count; ++i) {
        const bool isWhole = (squares[i] & hasSquare) == hasSquare;
        if (isWhole && front[i].Given() && front[i + 1].Given() && back[i].Given()) {
            // What most squares are: only their last corner is new.
            back[i + 1] = {next, next + 1};
            next += 2;
            continue;
        }
        if ((squares[i] & hasFrontTriangle) != 0) {
            next = NumberCorners(front[i], front[i + 1], back[i], next);
        }
        if ((squares[i] & hasBackTriangle) != 0) {
            next = NumberCorners(front[i + 1], back[i + 1], back[i], next);
        }
    }
    return next;
}

}  // namespace zelmo
