#pragma once

namespace zelmo {

struct ProcessModel;

/// The cover update cell by cell, from the topmost layer down, with nine looks at each layer.
void UpdateCoverMapPlain(ProcessModel& model);

}  // namespace zelmo
