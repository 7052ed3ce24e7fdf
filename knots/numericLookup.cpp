// The knot table's lookups of a numerically decided diagram: the ordinal by the determinant's
// value with factors of 3 divided out, and the tabulated polynomial of a value at t = -3.
#include <cmath>

#include "alexander/determinant.hpp"   // for Normalize_det_double and the declarations
#include "core/outcomes.hpp"           // for the counts slots
#include "preprocessing/chainprep.hpp" // for CompareEq

using boost::math::tools::polynomial;
using tresk::kTableKnots; // rows 0..38 are searchable knots

namespace {
// A value within this of an integer is an integer (the elimination's own tolerance).
constexpr double kIntegerTolerance = 1e-5;
} // namespace

// Divides out factors of 3 and compares with the table's values at t = -3, although the
// determinant driver evaluates at t = 12: a numerically decided diagram therefore as a rule
// gives 39 (the trefoil's 133 is not its table value 13), or 40 for a non-integral value.
int WhichKnotDouble_OrdNr(double x) {
  const double fraction = std::fmod(x, 1.0);
  if (!(CompareEq(fraction, 0.0, kIntegerTolerance) ||
        CompareEq(fraction, 1.0, kIntegerTolerance) ||
        CompareEq(fraction, -1.0, kIntegerTolerance))) {
    return tresk::kProblem;
  }
  const int v = Normalize_det_double(x, 3);
  for (int k = 0; k < kTableKnots; ++k) {
    if (knots[k].valueAtMinus3 == v)
      return k;
  }
  return tresk::kUnknown;
}

polynomial<int> GivePolyByValM3(double x) {
  for (int k = 0; k < kTableKnots; ++k) {
    if (x == static_cast<double>(knots[k].valueAtMinus3))
      return knots[k].poly;
  }
  return knots[0].poly;
}
