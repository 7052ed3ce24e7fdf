// The Alexander matrix of a knot diagram over integer polynomials: one row per crossing, one
// column per arc, the last crossing's row dropped.
#include "alexander/polynomial.hpp"

#include <cstddef>

#include "alexander/foxRow.hpp" // for tresk::FoxRowOf

using boost::math::tools::polynomial;

// The rows come from tresk::FoxRowOf (alexander/foxRow.hpp), which states the crossing
// convention; each entry a + b t is the polynomial with those two coefficients.
std::vector<std::vector<polynomial<int>>> CreateFoxMatrix(std::vector<Crossing> const& crossings) {
  const int zeroCoefs[] = {0};
  const polynomial<int> zero(zeroCoefs, 0);
  const std::size_t n = crossings.size();
  std::vector<std::vector<polynomial<int>>> M(n, std::vector<polynomial<int>>(n, zero));
  for (std::size_t k = 0; k < n; ++k) {
    const tresk::FoxRow row = tresk::FoxRowOf(crossings[k]);
    for (int e = 0; e < row.count; ++e) {
      const tresk::FoxTerm& term = row.terms[e];
      const int coefficients[] = {term.constant, term.linear};
      M[k][term.arc] =
          term.constant == 0 && term.linear == 0 ? zero : polynomial<int>(coefficients, 1);
    }
  }
  if (!M.empty()) {
    M.pop_back();
  }
  return M;
}
