#pragma once

namespace zelmo {

/// The program's version as users see it, for instance "1.2.3": the project's in the top
/// CMakeLists.txt, which is the one place where it stands.
extern const char* const programVersion;

}  // namespace zelmo
