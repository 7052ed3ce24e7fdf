// Naming a polynomial: its normal form is compared with rows 0..38 of the knot table in order
// and the first equal row wins; the status rows 39..41 are reached only by ordinal.
#include "alexander/polynomial.hpp" // for NormalizePoly, EqualCoefficients
#include "knots/knotTable.hpp"
#include "knots/whichKnot.hpp"
#include "core/outcomes.hpp" // for the counts slots

namespace {
constexpr int kSearchable = tresk::kTableKnots; // rows 0..38
constexpr int kNoMatch = tresk::kUnknown;
} // namespace

int tresk::KnotOrdinal(const boost::math::tools::polynomial<int>& poly) {
  tresk::EnsureKnotsFilled(); // names and polynomials exist before any explicit load
  const boost::math::tools::polynomial<int> normal = NormalizePoly(poly);
  for (int i = 0; i < kSearchable; ++i) {
    if (tresk::EqualCoefficients(normal.data(), knots[i].poly.data()))
      return i;
  }
  return kNoMatch;
}

std::string WhichKnot(boost::math::tools::polynomial<int> poly) {
  const int ordinal = tresk::KnotOrdinal(poly);
  return ordinal == kNoMatch ? std::string("NO") : knots[ordinal].name;
}

int WhichKnot_OrdNr(boost::math::tools::polynomial<int> poly) {
  return tresk::KnotOrdinal(poly);
}
