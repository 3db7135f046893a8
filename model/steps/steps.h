#pragma once

#include <span>

namespace zelmo {

struct Grid;
struct MaskPolygon;
struct ProcessStep;
struct Stack;

// One function for each kind of step; ExecuteStep calls them. Each rewrites the layers and leaves
// the cover map up to date. Where memory runs out, layers and cover map are what they were.

/// Lays the substrate on the empty grid, as layer 0: a twentieth of the location window's width
/// thick, in micrometres.
void ExecuteSubstrate(Stack& stack, const Grid& grid, float windowWidth, const ProcessStep& step);
/// Adds a levelled film.
void ExecuteCoating(Stack& stack, const Grid& grid, const ProcessStep& step);
/// Adds a film that follows the surface.
void ExecuteDeposition(Stack& stack, const Grid& grid, const ProcessStep& step);
/// Adds photoresist in the pattern of a mask.
void ExecutePhoto(Stack& stack, const Grid& grid, std::span<const MaskPolygon> polygons,
                  const ProcessStep& step);
/// Removes exposed material down to a front.
void ExecuteEtch(Stack& stack, const Grid& grid, const ProcessStep& step);
/// Deletes all photoresist.
void ExecuteStrip(Stack& stack, const Grid& grid, const ProcessStep& step);
/// Removes whole materials, wherever they lie.
void ExecuteRelease(Stack& stack, const Grid& grid, const ProcessStep& step);

}  // namespace zelmo
