#pragma once

namespace zelmo {

struct ProcessModel;
struct HeightMarkers;

/// Sets up `model.heightMarkers` for the model's grid, once its cover map exists: counts, pitch,
/// vertices, and the GL objects where the model has graphics.
void InitHeightMarkers(ProcessModel& model);

/// Samples the cover map at every marker and uploads the vertices.
void UpdateHeightMarkers(HeightMarkers& markers);

}  // namespace zelmo
