#pragma once

#include <string>

namespace zelmo {

/// A name with "_" for the characters that files cannot bear on some platform, so that it is the
/// same on all.
std::wstring SafeFileName(std::wstring name);

}  // namespace zelmo
