#include "batch/time_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>

#include "base/text.h"
#include "batch/progress.h"
#include "model/process_model.h"

namespace zelmo {

namespace {

constexpr std::size_t mostRows = 6;

double Sum(const StepSeconds& seconds) {
    return seconds.step + seconds.picture;
}

StepSeconds Add(const StepSeconds& a, const StepSeconds& b) {
    return {a.step + b.step, a.picture + b.picture};
}

/// The indices of the steps, the longest first.
std::vector<std::size_t> LongestFirst(std::span<const StepSeconds> seconds) {
    std::vector<std::size_t> order(seconds.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return Sum(seconds[a]) > Sum(seconds[b]);
    });
    return order;
}

std::string Row(const StepSeconds& seconds, std::string_view text) {
    return fmt::format("{:9.2f} {:9.2f}  {}", seconds.step, seconds.picture, text);
}

std::string StepRow(const StepSeconds& seconds, std::size_t number, const ProcessStep& step) {
    const std::string description = Utf8FromWide(WidenBytes(step.description));
    return Row(seconds, fmt::format("{}: {}", number, description));
}

}  // namespace

std::vector<std::string> TimeTable(std::span<const ProcessStep> steps,
                                   std::span<const StepSeconds> seconds, int columns) {
    const std::size_t count = std::min(steps.size(), seconds.size());
    if (count == 0) {
        return {};
    }
    seconds = seconds.first(count);
    const std::vector<std::size_t> order = LongestFirst(seconds);
    // A single one left over is told as well as "others" would be.
    const std::size_t rows = count <= mostRows + 1 ? count : mostRows;
    std::vector<std::string> lines = {fmt::format("{:>9} {:>9}", "step, s", "picture")};
    StepSeconds all;
    StepSeconds others;
    for (std::size_t place = 0; place < count; ++place) {
        const std::size_t index = order[place];
        all = Add(all, seconds[index]);
        if (place < rows) {
            lines.push_back(StepRow(seconds[index], index + 1, steps[index]));
        } else {
            others = Add(others, seconds[index]);
        }
    }
    if (rows < count) {
        lines.push_back(Row(others, fmt::format("the other {} steps", count - rows)));
    }
    lines.push_back(Row(all, "all"));
    for (std::string& line : lines) {
        line = FitToTerminal(line, columns);
    }
    return lines;
}

}  // namespace zelmo
