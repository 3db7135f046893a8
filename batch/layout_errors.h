#pragma once

#include <cstdint>

namespace zelmo {

/// What an error code of the layout reader means, in words.
const char* LayoutErrorReason(std::int32_t code);

}  // namespace zelmo
