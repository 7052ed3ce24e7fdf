// The exact polynomial determinant: the 0 x 0 and 1 x k cases as the cofactor expansion
// defines them, larger blocks by Bareiss elimination in 64 bits where its intermediates fit and
// by the wrapping Berkowitz recurrence otherwise (alexander/exactDeterminant.hpp).
#include "alexander/polynomial.hpp"

#include <algorithm>
#include <cstdint>

#include "alexander/exactDeterminant.hpp"

using boost::math::tools::polynomial;

bool tresk::BareissIsExact(PolyMatrix const& M) {
  const std::size_t r = M.size();
  const uint64_t limit = uint64_t{1} << 30;
  uint64_t bound = 1;
  for (std::size_t i = 0; i < r; ++i) {
    // Sum of |coefficient| over the leading r entries; |INT_MIN| = 2^31 is exact here.
    uint64_t norm = 0;
    for (std::size_t j = 0; j < std::min(r, M[i].size()); ++j) {
      for (int c : M[i][j].data())
        norm += c < 0 ? 0u - static_cast<uint32_t>(c) : static_cast<uint32_t>(c);
    }
    if (norm > limit)
      return false;
    // Both factors are at most 2^30 here, so the product cannot wrap.
    bound *= std::max<uint64_t>(1, norm);
    if (bound > limit)
      return false;
  }
  return true;
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
  return tresk::BareissIsExact(M) ? tresk::DetPolyBareiss(M) : tresk::DetPolyBerkowitz(M);
}
