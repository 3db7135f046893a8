#include "results/window_places.h"

#include <fmt/format.h>

#include "model/process.h"
#include "results/readable_text.h"

namespace zelmo {

std::string WhyOutside(const ProcessSettings& settings, const Place& given) {
    if (LiesInWindow(settings, FromLayoutUnit(settings, given))) {
        return {};
    }
    const auto [low, high] = LocationWindow(settings);
    const Place first = InLayoutUnit(settings, low);
    const Place last = InLayoutUnit(settings, high);
    return fmt::format(
        "({:g}, {:g}) {} lies outside the window, which goes from ({:g}, {:g}) to ({:g}, {:g})",
        given.x, given.y, LayoutUnitName(settings), first.x, first.y, last.x, last.y);
}

std::string CutName(std::size_t number, const std::array<double, 4>& ends,
                    const ProcessSettings& settings) {
    const auto& [x0, y0, x1, y1] = ends;
    return fmt::format("cut {} from ({}, {}) to ({}, {}) {}", number, x0, y0, x1, y1,
                       LayoutUnitName(settings));
}

StepName NameOf(const ProcessStep& step, std::size_t index) {
    return {static_cast<int>(index) + 1, ReadableText(step.description)};
}

}  // namespace zelmo
