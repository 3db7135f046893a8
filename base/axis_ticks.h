#pragma once

#include <string>
#include <vector>

namespace zelmo {

/// A place on an axis.
struct AxisTick {
    double at = 0.0;
    std::string label;
};

/// Round numbers between two, 1, 2 or 5 times a power of ten apart, and `leastStep` at least; none
/// if there is no range between the ends, or far too many would fit. The same on every platform.
std::vector<AxisTick> AxisTicks(double from, double to, double leastStep);

}  // namespace zelmo
