#pragma once

#include <string>

#include "gds/gds_database.h"

namespace zelmo {

/// All that a database holds, in words, to compare two of them.
std::string TextOf(const GdsDatabase& database);

}  // namespace zelmo
