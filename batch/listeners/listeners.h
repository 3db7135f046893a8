#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "batch/listeners/step_listener.h"

namespace zelmo {

class NoteTeller;
class UnfinishedFiles;
struct BatchOptions;
struct Reporting;

using Listeners = std::vector<std::unique_ptr<StepListener>>;

/// Whoever takes something of a run, as the options ask for. What the listeners are given outlives
/// them.
Listeners MakeListeners(const BatchOptions& given,
                        const std::vector<std::filesystem::path>& assetFolders,
                        Reporting& reporting, NoteTeller& notes, UnfinishedFiles& files);

}  // namespace zelmo
