#include "batch/step_list.h"

#include <fmt/format.h>

#include <cstddef>
#include <string>

#include "base/text.h"
#include "model/process.h"

namespace zelmo {

std::string StepList(std::span<const ProcessStep> steps) {
    std::string list;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        list += fmt::format("{:>4}  {}", i + 1, Utf8FromWide(WideFromUtf8(steps[i].description)));
        if (steps[i].line > 0) {
            list += fmt::format(" (line {})", steps[i].line);
        }
        list += '\n';
    }
    return list;
}

}  // namespace zelmo
