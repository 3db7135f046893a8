#pragma once

namespace zelmo {

struct ProcessModel;
struct ProcessStep;

// One function for each kind of step; ExecuteStep calls them. Each rewrites the layers and leaves
// the cover map up to date.

/// Lays the substrate on the empty grid, as layer 0.
void ExecuteSubstrate(ProcessModel& model, const ProcessStep& step);
/// Adds a levelled film.
void ExecuteCoating(ProcessModel& model, const ProcessStep& step);
/// Adds a film that follows the surface.
void ExecuteDeposition(ProcessModel& model, const ProcessStep& step);
/// Adds photoresist in the pattern of a mask.
void ExecutePhoto(ProcessModel& model, const ProcessStep& step);
/// Removes exposed material down to a front.
void ExecuteEtch(ProcessModel& model, const ProcessStep& step);
/// Deletes all photoresist.
void ExecuteStrip(ProcessModel& model, const ProcessStep& step);
/// Removes whole materials, wherever they lie.
void ExecuteRelease(ProcessModel& model, const ProcessStep& step);
/// Writes the stack to "VertexData.txt" in the current directory. Says nothing if it cannot.
void ExecuteDump(ProcessModel& model, const ProcessStep& step);

}  // namespace zelmo
