#include "base/version.h"

namespace zelmo {

const char* const programVersion = ZELMO_VERSION;

}  // namespace zelmo
