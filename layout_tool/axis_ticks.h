#pragma once

#include <string>
#include <vector>

namespace zelmo {

/// A place on an axis.
struct AxisTick {
    double at = 0.0;
    std::string label;
};

/// Round numbers between two, about `count` of them; none if there is no range between the ends.
/// The same on every platform.
std::vector<AxisTick> AxisTicks(double from, double to, int count);

}  // namespace zelmo
