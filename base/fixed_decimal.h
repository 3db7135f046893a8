#pragma once

#include <cstddef>

namespace zelmo {

/// The most bytes that WriteFixedDecimal writes: a sign, 39 digits, a point and 12 decimals.
constexpr std::size_t longestFixedDecimal = 53;

/// Writes `value` with 10 or 12 decimals to `out` and returns the end of the text, which no zero
/// byte follows. The text is that of printf's "%.10f" and "%.12f" in the GNU C library, of all
/// floats and on every platform: of the value's exact decimals the nearest text, of two that are
/// equally near the one with the even last digit; "inf" and "nan", each with its sign.
template <int decimals>
char* WriteFixedDecimal(float value, char* out);

extern template char* WriteFixedDecimal<10>(float value, char* out);
extern template char* WriteFixedDecimal<12>(float value, char* out);

}  // namespace zelmo
