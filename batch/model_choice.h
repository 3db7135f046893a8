#pragma once

#include <filesystem>
#include <optional>

#include "results/models/stack_model.h"

namespace zelmo {

/// The models of the stack that are asked for.
struct ModelChoice {
    std::optional<std::filesystem::path> file;  ///< its extension is that of a known format
    ModelAccuracy accuracy;
};

}  // namespace zelmo
