// The knot of one closed chain seen along one projection direction: crossings of the
// projection, then the exact Alexander polynomial (up to a crossing bound) or the numeric
// determinant at t = 12 (above it), looked up in the knot table.
#include "chain/direction.hpp"

#include <cmath>
#include <cstddef>
#include <sstream>

#include "alexander/determinant.hpp"      // for CreateFoxMatrix_double, det_double, ...
#include "alexander/exactDeterminant.hpp" // for tresk::ExactAlexanderDeterminant
#include "alexander/polynomial.hpp"       // for CreateFoxMatrix, det_poly, NormalizePoly
#include "chain/naming.hpp"
#include "core/log.hpp"                // for tresk::Log
#include "crossings/crossings.hpp"     // for FindAllCrossings, FillCrossings
#include "knots/knotTable.hpp"         // for EnsureKnotsFilled
#include "knots/whichKnot.hpp"         // for WhichKnot_OrdNr, removeTrailingZeros
#include "preprocessing/chainprep.hpp" // for ProjectChain
#include "core/outcomes.hpp"           // for the counts slots

namespace {

// Diagrams with at most this many crossings are decided by the exact polynomial in the
// documented calls; the numeric determinant, evaluated at kNumericT, takes over above it.
constexpr int kExactCrossingBound = 16;
constexpr int kNumericT = 12;
constexpr int kProblemWithProjecting = tresk::kProblem;

using Poly = boost::math::tools::polynomial<int>;

// The crossings of one projection; false when the projection is degenerate.
bool Diagram(std::vector<ChainAtom> const& chain, int direction, std::vector<Crossing>& crossings) {
  // The table is filled once per process and never changes afterwards, so projections may run
  // on several threads at once; refilling it here would race with their lookups.
  tresk::EnsureKnotsFilled();
  std::vector<Edge> edges = ProjectChain(chain, direction, true);
  if (FindAllCrossings(edges, crossings, true) != 0)
    return false;
  FillCrossings(edges, crossings);
  return true;
}

// The numeric matrix is dense: n crossings take 8 n^2 bytes. Beyond this many (2 GiB) the
// projection is given up before anything is allocated, like one whose value is not an integer
// ("Problem with projecting"), so the vote tries the next direction.
constexpr std::size_t kMaxNumericCrossings = 16384;

double NumericValue(std::vector<Crossing> const& crossings) {
  if (crossings.size() > kMaxNumericCrossings) {
    tresk::Log() << "PROBLEM with one projection. " << crossings.size()
                 << " crossings are too many for the numeric determinant.\n";
    return std::nan("");
  }
  std::vector<std::vector<double>> numeric = CreateFoxMatrix_double(crossings, kNumericT);
  return numeric.empty() ? 1.0 : det_double(numeric, kNumericT);
}

} // namespace

bool FindTheKnotInParticularDirection_poly(std::vector<ChainAtom> chain, Poly& poly, double& value,
                                           int direction, int maxPolyCrossings) {
  std::vector<Crossing> crossings;
  if (!Diagram(chain, direction, crossings))
    return true; // degenerate: outputs untouched
  if (static_cast<int>(crossings.size()) <= maxPolyCrossings) {
    std::vector<std::vector<Poly>> matrix = CreateFoxMatrix(crossings);
    poly = matrix.empty() ? Poly(std::vector<int>{1}) : NormalizePoly(det_poly(matrix));
    return true;
  }
  value = NumericValue(crossings);
  return false;
}

bool tresk::PolynomialInDirection(std::vector<ChainAtom> chain, int direction,
                                  const NamingOptions& naming, Poly& poly, double& value,
                                  int& crossingCount) {
  std::vector<Crossing> crossings;
  crossingCount = -1;
  if (naming.robust)
    ScaleUpIfTiny(chain);
  if (!Diagram(chain, direction, crossings))
    return true; // degenerate: outputs untouched
  crossingCount = static_cast<int>(crossings.size());
  if (crossingCount <= naming.numericAbove) {
    // Up to 16 crossings this is det_poly's Bareiss elimination, bit for bit.
    std::vector<std::vector<Poly>> matrix = CreateFoxMatrix(crossings);
    Poly det;
    if (matrix.empty())
      poly = Poly(std::vector<int>{1});
    else
      poly = ExactAlexanderDeterminant(matrix, det) ? NormalizePoly(det) : Poly();
    return true;
  }
  value = NumericValue(crossings);
  return false;
}

// The ordinal of the result of one projection: the polynomial when the exact way was taken
// (an empty polynomial after a degenerate projection, which matches no row), else the number.
int tresk::KnotInDirection(std::vector<ChainAtom> chain, int direction,
                           const NamingOptions& naming) {
  Poly poly;
  double value = 0.0;
  int crossings = 0;
  if (PolynomialInDirection(std::move(chain), direction, naming, poly, value, crossings)) {
    if (crossings < 0 && naming.robust)
      return kProblemWithProjecting; // degenerate: the caller tries the next direction
    return WhichKnot_OrdNr(poly);
  }
  return WhichKnotDouble_OrdNr(value);
}

int FindTheKnotInParticularDirection(std::vector<ChainAtom> chain, int direction) {
  // C++ remainder keeps the dividend's sign: -1 stays -1, 60 becomes 0.
  return tresk::KnotInDirection(std::move(chain), direction % 60,
                                tresk::NamingOptions{kExactCrossingBound, false});
}

int FindTheKnotInParticularDirection_True(std::vector<ChainAtom> chain, int direction) {
  return tresk::KnotInDirection(std::move(chain), direction,
                                tresk::NamingOptions{kExactCrossingBound, false});
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
