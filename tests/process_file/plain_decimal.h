#pragma once

#include <cstdint>
#include <string>

namespace zelmo {

/// The single-precision number nearest to digits * 10^exponent, ties to even, by exact arithmetic
/// on whole numbers. Slow.
float PlainDecimal(const std::string& digits, std::int32_t exponent);

}  // namespace zelmo
