// The Alexander matrix of a knot diagram over integer polynomials: one row per crossing, one
// column per arc, the last crossing's row dropped.
#include "alexander/polynomial.hpp"

#include <cstddef>

using boost::math::tools::polynomial;

// Crossing convention: a = over-arc, b = incoming and c = outgoing under-arc, both strands drawn
// in chain direction; s = `sign` is 1 when the under strand turns counter-clockwise from the
// over strand, 0 when it turns clockwise.
//
//            c                                 b
//            ^                                 |
//     a -----|----> a   s = 1           a -----|----> a   s = 0
//            |                                 v
//            b                                 c
//
//   row (1-t) x_a - x_b + t x_c          row (1-t) x_a + t x_b - x_c
//
// Terms of equal arcs are added together, so a kink (a = b or a = c) yields a two-entry row and
// a = b = c an all-zero row. Any non-zero `sign` is read as 1.
std::vector<std::vector<polynomial<int>>> CreateFoxMatrix(std::vector<Crossing> const& crossings) {
  const int zeroCoefs[] = {0};
  const int oneCoefs[] = {1, 0};
  const int minusOneCoefs[] = {-1, 0};
  const int tCoefs[] = {0, 1};
  const int minusTCoefs[] = {0, -1};
  const int oneMinusTCoefs[] = {1, -1};
  const polynomial<int> zero(zeroCoefs, 0);
  const polynomial<int> one(oneCoefs, 1);
  const polynomial<int> minusOne(minusOneCoefs, 1);
  const polynomial<int> t(tCoefs, 1);
  const polynomial<int> minusT(minusTCoefs, 1);
  const polynomial<int> oneMinusT(oneMinusTCoefs, 1);

  // Indexed by sign: general row, then the a = b and a = c kinks.
  const polynomial<int> overGeneral[2] = {oneMinusT, oneMinusT};
  const polynomial<int> inGeneral[2] = {t, minusOne};
  const polynomial<int> outGeneral[2] = {minusOne, t};
  const polynomial<int> overWhenAEqB[2] = {one, minusT};
  const polynomial<int> outWhenAEqB[2] = {minusOne, t};
  const polynomial<int> overWhenAEqC[2] = {minusT, one};
  const polynomial<int> inWhenAEqC[2] = {t, minusOne};

  const std::size_t n = crossings.size();
  std::vector<std::vector<polynomial<int>>> M(n, std::vector<polynomial<int>>(n, zero));
  for (std::size_t k = 0; k < n; ++k) {
    const Crossing& x = crossings[k];
    const int a = x.arcOver;
    const int b = x.arcIn;
    const int c = x.arcOut;
    const int s = x.sign != 0 ? 1 : 0;
    std::vector<polynomial<int>>& row = M[k];
    if (a != b && a != c) {
      row[a] = overGeneral[s];
      row[b] = inGeneral[s];
      row[c] = outGeneral[s];
    } else if (a == b && a != c) {
      row[a] = overWhenAEqB[s];
      row[c] = outWhenAEqB[s];
    } else if (a == c && a != b) {
      row[a] = overWhenAEqC[s];
      row[b] = inWhenAEqC[s];
    } else {
      row[a] = zero;
    }
  }
  if (!M.empty()) {
    M.pop_back();
  }
  return M;
}
