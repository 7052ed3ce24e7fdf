// Cofactor expansion of a polynomial matrix, one recursion level per column, every coefficient
// operation done in uint32_t so that int overflow wraps with defined behaviour.
#include "tests/support/det_reference.hpp"

#include <cstdint>

using boost::math::tools::polynomial;

namespace reference {
namespace {

int Wrap(uint32_t v) {
  return static_cast<int32_t>(v);
}

bool NonZero(polynomial<int> const& p) {
  for (int c : p.data()) {
    if (c != 0)
      return true;
  }
  return false;
}

// Every coefficient times sign (+1 or -1), then trailing zeros dropped.
polynomial<int> Signed(polynomial<int> p, int sign) {
  if (sign < 0) {
    for (int& c : p.data())
      c = Wrap(0u - static_cast<uint32_t>(c));
  }
  p.normalize();
  return p;
}

// Coefficient convolution; a product with the empty polynomial is empty.
polynomial<int> Product(polynomial<int> const& a, polynomial<int> const& b) {
  if (a.size() == 0 || b.size() == 0)
    return polynomial<int>();
  std::vector<uint32_t> sum(a.size() + b.size() - 1, 0u);
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < b.size(); ++j) {
      sum[i + j] += static_cast<uint32_t>(a[i]) * static_cast<uint32_t>(b[j]);
    }
  }
  polynomial<int> out;
  for (uint32_t c : sum)
    out.data().push_back(Wrap(c));
  return out;
}

// Padded sum, then trailing zeros dropped.
polynomial<int> Sum(polynomial<int> const& a, polynomial<int> const& b) {
  polynomial<int> out;
  const std::size_t n = a.size() > b.size() ? a.size() : b.size();
  for (std::size_t i = 0; i < n; ++i) {
    const uint32_t x = i < a.size() ? static_cast<uint32_t>(a[i]) : 0u;
    const uint32_t y = i < b.size() ? static_cast<uint32_t>(b[i]) : 0u;
    out.data().push_back(Wrap(x + y));
  }
  out.normalize();
  return out;
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
  const std::vector<int> zeros(r + 1, 0);
  polynomial<int> D(zeros.begin(), zeros.end());
  int sign = (r % 2 == 1) ? 1 : -1;
  for (int i = 0; i < r; ++i) {
    const polynomial<int>& e = M[i][r - 1];
    if (NonZero(e)) {
      std::vector<std::vector<polynomial<int>>> minor = M;
      minor.erase(minor.begin() + i);
      const polynomial<int> minorDet = CofactorDeterminant(minor);
      D = Sum(D, Product(Signed(e, sign), minorDet));
    }
    sign = -sign;
  }
  return D;
}

} // namespace reference
