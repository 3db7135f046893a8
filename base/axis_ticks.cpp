#include "base/axis_ticks.h"

#include <fmt/format.h>

#include <cmath>

namespace zelmo {

namespace {

constexpr double least = 1e-12;
constexpr double greatest = 1e12;
constexpr double mostTicks = 1e5;

/// The distance of ticks, and the decimals that they need.
struct TickStep {
    double step = 1.0;
    int decimals = 0;
};

/// The least of 1, 2 and 5 times a power of ten that is not below `wanted`.
TickStep StepFor(double wanted) {
    double power = 1.0;
    int decimals = 0;
    for (; power > wanted; power /= 10.0) {
        ++decimals;
    }
    for (; power * 10.0 <= wanted; power *= 10.0) {
    }
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (power * factor >= wanted) {
            return {power * factor, decimals};
        }
    }
    return {power * 10.0, decimals > 0 ? decimals - 1 : 0};
}

}  // namespace

std::vector<AxisTick> AxisTicks(double from, double to, double leastStep) {
    std::vector<AxisTick> ticks;
    const double range = to - from;
    const bool fits = range > least && range < greatest && std::abs(from) < greatest &&
                      std::abs(from) < range * greatest && leastStep > range / mostTicks &&
                      leastStep < greatest;
    if (!fits) {
        return ticks;
    }
    const TickStep step = StepFor(leastStep);
    // Ends that are round numbers themselves have a tick, whatever their division is rounded to.
    constexpr double nearly = 1e-9;
    const double last = to + nearly * step.step;
    for (double number = std::ceil(from / step.step - nearly); number * step.step <= last;
         number += 1.0) {
        const double at = number * step.step + 0.0;
        ticks.push_back({at, fmt::format("{:.{}f}", at, step.decimals)});
    }
    return ticks;
}

}  // namespace zelmo
