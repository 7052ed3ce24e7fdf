// The exact polynomial determinant: the 0 x 0 and 1 x k cases as the cofactor expansion
// defines them, larger blocks by the fastest exact method (alexander/exactDeterminant.hpp).
#include "alexander/polynomial.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "alexander/exactDeterminant.hpp"

using boost::math::tools::polynomial;

namespace {

using u128 = unsigned __int128;

// Sum of |coefficient| over the leading r entries of a row; |INT_MIN| = 2^31 is exact here.
u128 RowNorm(std::vector<polynomial<int>> const& row, std::size_t r) {
  u128 sum = 0;
  const std::size_t width = std::min(r, row.size());
  for (std::size_t j = 0; j < width; ++j) {
    for (int c : row[j].data()) {
      sum += static_cast<u128>(c < 0 ? 0u - static_cast<uint32_t>(c) : static_cast<uint32_t>(c));
    }
  }
  return sum;
}

} // namespace

DetPolyMethod ChooseDetPolyMethod(std::vector<std::vector<polynomial<int>>> const& M) {
  const std::size_t r = M.size();
  const u128 limit64 = u128{1} << 30;
  const u128 limit128 = u128{1} << 62;
  // Saturate above both limits; a row norm is far below 2^64, so the product cannot wrap.
  const u128 saturation = u128{1} << 63;
  u128 bound = 1;
  for (std::size_t i = 0; i < r; ++i) {
    bound *= std::max<u128>(1, RowNorm(M[i], r));
    bound = std::min(bound, saturation);
  }
  if (bound <= limit64)
    return DetPolyMethod::Bareiss64;
  if (bound <= limit128)
    return DetPolyMethod::Bareiss128;
  return DetPolyMethod::Berkowitz32;
}

// One row: the row's first entry as stored (trailing zeros and all). No rows: the zero
// polynomial. A row without entries is read as holding the zero polynomial.
polynomial<int> det_poly(std::vector<std::vector<polynomial<int>>> const& M) {
  if (M.size() == 1) {
    return M[0].empty() ? polynomial<int>() : M[0][0];
  }
  if (M.empty()) {
    return polynomial<int>();
  }
  switch (ChooseDetPolyMethod(M)) {
  case DetPolyMethod::Bareiss64:
    return DetPolyBareiss64(M);
  case DetPolyMethod::Bareiss128:
    return DetPolyBareiss128(M);
  case DetPolyMethod::Berkowitz32:
    break;
  }
  return DetPolyBerkowitz(M);
}
