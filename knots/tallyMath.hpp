// The ordinals of the counts array (0 unknot, 1..38 knots, 39 unknown, 40 failed projection,
// 41 inside) and the percentage of the verdicts, in wrapping int arithmetic.
#pragma once

#include "core/outcomes.hpp" // for the ordinals
#include "core/wrapInt.hpp"  // for WrapAdd, WrapMul, WrapDiv

namespace tresk {

// value * 100 / total in int arithmetic: a percentage, truncated; 0 for a zero total.
inline int Percent(int value, int total) {
  return WrapDiv(WrapMul(value, 100), total);
}

} // namespace tresk
