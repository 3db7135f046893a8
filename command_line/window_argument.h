#pragma once

#include <string>
#include <string_view>

#include "process_run/view_choice.h"

namespace zelmo {

/// The window that an argument asks for, or what is wrong with it.
struct WindowArgument {
    WindowChoice window;
    std::string failure;  ///< one line; empty if there is a window
};

/// Reads "X,Y,DX,DY", "fit" or "fit:MARGIN": decimal numbers in micrometres, of which DX and DY are
/// above 0 and the margin is not below.
WindowArgument ParseWindowArgument(std::string_view text);

}  // namespace zelmo
