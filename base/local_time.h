#pragma once

#include <ctime>

namespace zelmo {

/// The present date and time on the user's clock.
std::tm LocalTime();

}  // namespace zelmo
