// The knot of one closed chain seen along one projection direction: crossings of the
// projection, then the exact Alexander polynomial (few crossings) or the numeric determinant at
// t = 12 (many crossings), looked up in the knot table.
#include "chain/direction.hpp"

#include <sstream>

#include "alexander/determinant.hpp"   // for CreateFoxMatrix_double, det_double, ...
#include "alexander/polynomial.hpp"    // for CreateFoxMatrix, det_poly, NormalizePoly
#include "crossings/crossings.hpp"     // for FindAllCrossings, FillCrossings
#include "knots/knotTable.hpp"         // for EnsureKnotsFilled
#include "knots/whichKnot.hpp"         // for WhichKnot_OrdNr, removeTrailingZeros
#include "preprocessing/chainprep.hpp" // for ProjectChain

namespace {

// Diagrams with at most this many crossings are decided by the exact polynomial; the numeric
// determinant, evaluated at kNumericT, takes over above it.
constexpr int kExactCrossingBound = 16;
constexpr int kNumericT = 12;

using Poly = boost::math::tools::polynomial<int>;

// The ordinal of the result of one projection: the polynomial when the exact way was taken
// (an empty polynomial after a degenerate projection, which matches no row), else the number.
int OrdinalInDirection(std::vector<ChainAtom> chain, int direction) {
  Poly poly;
  double value = 0.0;
  bool isPoly = FindTheKnotInParticularDirection_poly(std::move(chain), poly, value, direction,
                                                      kExactCrossingBound);
  if (isPoly)
    return WhichKnot_OrdNr(poly);
  return WhichKnotDouble_OrdNr(value);
}

} // namespace

bool FindTheKnotInParticularDirection_poly(std::vector<ChainAtom> chain, Poly& poly, double& value,
                                           int direction, int maxPolyCrossings) {
  const Poly one(std::vector<int>{1});
  // The table is filled once per process and never changes afterwards, so projections may run
  // on several threads at once; refilling it here would race with their lookups.
  tresk::EnsureKnotsFilled();

  std::vector<Edge> edges = ProjectChain(chain, direction, true);
  std::vector<Crossing> crossings;
  if (FindAllCrossings(edges, crossings, true) != 0)
    return true; // degenerate: outputs untouched
  FillCrossings(edges, crossings);

  const int n = static_cast<int>(crossings.size());
  if (n <= maxPolyCrossings) {
    std::vector<std::vector<Poly>> matrix = CreateFoxMatrix(crossings);
    poly = matrix.empty() ? one : NormalizePoly(det_poly(matrix));
    return true;
  }
  std::vector<std::vector<double>> numeric = CreateFoxMatrix_double(crossings, kNumericT);
  value = numeric.empty() ? 1.0 : det_double(numeric, kNumericT);
  return false;
}

int FindTheKnotInParticularDirection(std::vector<ChainAtom> chain, int direction) {
  // C++ remainder keeps the dividend's sign: -1 stays -1, 60 becomes 0.
  return OrdinalInDirection(std::move(chain), direction % 60);
}

int FindTheKnotInParticularDirection_True(std::vector<ChainAtom> chain, int direction) {
  return OrdinalInDirection(std::move(chain), direction);
}

std::string FindTheKnotInParticularDirection_poly_string(std::vector<ChainAtom> chain,
                                                         int maxPolyCrossings, bool numeric) {
  // A bound of -1 sends every diagram, even one without crossings, the numeric way.
  if (numeric)
    maxPolyCrossings = -1;
  Poly poly;
  double value = 0.0; // also the answer after a degenerate projection: "0"
  FindTheKnotInParticularDirection_poly(std::move(chain), poly, value, 0, maxPolyCrossings);
  std::ostringstream text;
  if (numeric) {
    text << std::fixed << removeTrailingZeros(static_cast<float>(value));
    return text.str();
  }
  // Coefficients from the constant term up, one blank between; "" for no coefficients.
  for (std::size_t k = 0; k < poly.size(); ++k) {
    if (k > 0)
      text << ' ';
    text << poly[k];
  }
  return text.str();
}
