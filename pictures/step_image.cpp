#include "pictures/step_image.h"

#include <fmt/format.h>

#include "base/text.h"

namespace zelmo {

std::wstring StepImageName(std::int32_t imageNumber, std::string_view description) {
    return WidenBytes(fmt::format("{:03d} {}", imageNumber, description));
}

}  // namespace zelmo
