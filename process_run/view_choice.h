#pragma once

#include <optional>
#include <string>
#include <variant>

// What a run is told to look at in place of what its process file says. Lengths are micrometres.

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
};

}  // namespace zelmo
