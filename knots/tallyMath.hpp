// Integer helpers for the verdicts and result texts: percentages with wrapping 32-bit
// arithmetic and no trap on a zero divisor, and float-to-int truncation defined for every input.
#pragma once

#include <climits>
#include <cstdint>

namespace tally {

// a * b modulo 2^32.
inline int WrapMul(int a, int b) {
  return static_cast<int>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}
inline int WrapAdd(int a, int b) {
  return static_cast<int>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
inline int WrapSub(int a, int b) {
  return static_cast<int>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// Truncating int division. A zero divisor gives 0 instead of trapping, and INT_MIN / -1 wraps
// to INT_MIN.
inline int Divide(int n, int d) {
  if (d == 0)
    return 0;
  if (d == -1)
    return static_cast<int>(0u - static_cast<uint32_t>(n));
  return n / d;
}

// value * 100 / total in int arithmetic: a percentage, truncated.
inline int Percent(int value, int total) {
  return Divide(WrapMul(value, 100), total);
}

// Truncation toward zero; NaN and values outside the int range give INT_MIN, as the x86-64
// conversion instruction does, instead of undefined behaviour.
inline int TruncToInt(double v) {
  if (!(v > -2147483649.0 && v < 2147483648.0))
    return INT_MIN;
  return static_cast<int>(v);
}

} // namespace tally
