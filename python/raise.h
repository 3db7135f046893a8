#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zelmo {

struct LayoutError;

// Exceptions of the package, which stand in zelmo/_errors.py. To be called with the interpreter
// lock; each throws pybind11::error_already_set.

/// Another one of the package's, by its name.
[[noreturn]] void RaiseError(const char* name, const std::string& message);

/// `error` can be null.
[[noreturn]] void RaiseLayoutError(const std::string& message, const std::string& file,
                                   const LayoutError* error);

[[noreturn]] void RaiseProcessError(
    const std::string& message, const std::string& file,
    const std::vector<std::pair<std::int32_t, std::string>>& errors);

}  // namespace zelmo
