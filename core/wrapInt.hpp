// Wrapping 32-bit int arithmetic (results mod 2^32, done in unsigned so overflow is defined) and
// conversions that are defined for every input: the integer behaviour the polynomials, counts
// and percentages of the engine are specified with.
#pragma once

#include <climits>
#include <cstdint>

namespace tresk {

inline int WrapAdd(int a, int b) {
  return static_cast<int>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
inline int WrapSub(int a, int b) {
  return static_cast<int>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}
inline int WrapMul(int a, int b) {
  return static_cast<int>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}
inline int WrapNeg(int a) {
  return static_cast<int>(0u - static_cast<uint32_t>(a));
}

// Truncating int division. A zero divisor gives 0 instead of trapping, and INT_MIN / -1 wraps
// to INT_MIN.
inline int WrapDiv(int n, int d) {
  if (d == 0)
    return 0;
  if (d == -1)
    return WrapNeg(n);
  return n / d;
}

// Truncation toward zero; NaN and values outside the int range give INT_MIN, as the x86-64
// conversion instruction does, instead of undefined behaviour.
inline int TruncToInt(double v) {
  if (!(v > -2147483649.0 && v < 2147483648.0))
    return INT_MIN;
  return static_cast<int>(v);
}

} // namespace tresk
