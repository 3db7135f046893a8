#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "process_file/substitution.h"

// What a run is told in place of what its process file says. Lengths are micrometres.

namespace zelmo {

/// A window as `location` has it: its lower left corner in coordinates of the layout, and its size.
struct GivenWindow {
    float x = 0.0f;
    float y = 0.0f;
    float width = 0.0f;   ///< above 0
    float height = 0.0f;  ///< above 0; more than the width counts as the width

    bool operator==(const GivenWindow&) const = default;
};

/// The window around all that the cell draws on the masks of the process.
struct FittedWindow {
    float margin = 0.0f;  ///< to each side, 0 or more

    bool operator==(const FittedWindow&) const = default;
};

/// The first: what the process file says.
using WindowChoice = std::variant<std::monostate, GivenWindow, FittedWindow>;

struct ViewChoice {
    std::optional<std::string> cell;  ///< none: what the process file says
    WindowChoice window;
    std::optional<std::int32_t> gridColumns = std::nullopt;  ///< within the limits of process files
    std::optional<float> cameraAngle = std::nullopt;         ///< the same, in degrees
    /// Of the process file's variables; none: they are not replaced, and their defaults do not
    /// serve.
    std::optional<VariableValues> variables = std::nullopt;
};

}  // namespace zelmo
