// Comparison within a tolerance, used by the numeric determinant.
#include "preprocessing/chainprep.hpp"

#include <cmath>

// Non-strict bound: a value exactly `tolerance` away still compares equal. NaN never does.
bool CompareEq(double a, double b, double tolerance) {
  return std::fabs(a - b) <= tolerance;
}
