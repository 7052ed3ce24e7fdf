// Cofactor expansion of a polynomial matrix, one recursion level per column, every coefficient
// operation done in uint32_t so that int overflow wraps with defined behaviour.
#include "tests/support/det_reference.hpp"

#include <algorithm>
#include <cstdint>

using boost::math::tools::polynomial;

namespace reference {
namespace {

// sign * e * m, coefficient convolution in uint32_t; empty when either factor is empty.
std::vector<uint32_t> SignedProduct(polynomial<int> const& e, polynomial<int> const& m, int sign) {
  if (e.size() == 0 || m.size() == 0)
    return {};
  std::vector<uint32_t> sum(e.size() + m.size() - 1, 0u);
  for (std::size_t i = 0; i < e.size(); ++i)
    for (std::size_t j = 0; j < m.size(); ++j)
      sum[i + j] += uint32_t(sign) * uint32_t(e[i]) * uint32_t(m[j]);
  return sum;
}

} // namespace

polynomial<int> CofactorDeterminant(std::vector<std::vector<polynomial<int>>> const& M) {
  const int r = static_cast<int>(M.size());
  if (r == 1)
    return M[0][0];
  if (r < 1) {
    const int zero[] = {0};
    return polynomial<int>(zero, 0);
  }
  std::vector<uint32_t> D(r + 1, 0u);
  int sign = (r % 2 == 1) ? 1 : -1;
  for (int i = 0; i < r; ++i, sign = -sign) {
    const polynomial<int>& e = M[i][r - 1];
    if (std::all_of(e.data().begin(), e.data().end(), [](int c) { return c == 0; }))
      continue;
    std::vector<std::vector<polynomial<int>>> minor = M;
    minor.erase(minor.begin() + i);
    const std::vector<uint32_t> term = SignedProduct(e, CofactorDeterminant(minor), sign);
    D.resize(std::max(D.size(), term.size()), 0u);
    for (std::size_t k = 0; k < term.size(); ++k)
      D[k] += term[k];
  }
  while (!D.empty() && D.back() == 0)
    D.pop_back();
  polynomial<int> out;
  for (uint32_t c : D)
    out.data().push_back(static_cast<int32_t>(c));
  return out;
}

} // namespace reference
