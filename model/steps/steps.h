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
/// Levels everything on the substrate to a plane. False if the plane was to be measured from a stop
/// that holds no square of 3 by 3 cells: then nothing has changed.
bool ExecutePolish(Stack& stack, const Grid& grid, const ProcessStep& step);
/// Turns exposed material into doped material, down to a depth.
void ExecuteImplant(Stack& stack, const Grid& grid, const ProcessStep& step);

}  // namespace zelmo
