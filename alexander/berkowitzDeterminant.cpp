// Division-free determinant (Samuelson-Berkowitz) in wrapping 32-bit arithmetic: exact mod 2^32
// for any integer-polynomial matrix, used when the elimination's intermediates could overflow.
#include "alexander/exactDeterminant.hpp"

#include "core/wrapInt.hpp" // for WrapAdd, WrapMul, WrapNeg

using boost::math::tools::polynomial;

namespace {

// Coefficients mod 2^32 from t^0 upward, no trailing zeros; empty is zero.
using WrappedPoly = std::vector<int>;

void Trim(WrappedPoly& p) {
  while (!p.empty() && p.back() == 0)
    p.pop_back();
}

// acc += a * b
void AddProduct(WrappedPoly& acc, WrappedPoly const& a, WrappedPoly const& b) {
  if (a.empty() || b.empty())
    return;
  if (acc.size() < a.size() + b.size() - 1)
    acc.resize(a.size() + b.size() - 1, 0);
  for (std::size_t x = 0; x < a.size(); ++x) {
    for (std::size_t y = 0; y < b.size(); ++y)
      acc[x + y] = tresk::WrapAdd(acc[x + y], tresk::WrapMul(a[x], b[y]));
  }
}

WrappedPoly Negated(WrappedPoly p) {
  for (int& c : p)
    c = tresk::WrapNeg(c);
  return p;
}

} // namespace

// With A = [[a, R], [C, A1]], det(x I - A) = T * det(x I - A1) where T is the lower-triangular
// Toeplitz matrix with first column 1, -a, -R C, -R A1 C, -R A1^2 C, ... The recurrence runs
// from the bottom-right 1 x 1 block up to the whole matrix; det A = (-1)^r times the constant
// term of the characteristic polynomial.
polynomial<int> tresk::DetPolyBerkowitz(PolyMatrix const& M) {
  const int r = static_cast<int>(M.size());
  std::vector<std::vector<WrappedPoly>> A(r, std::vector<WrappedPoly>(r));
  for (int i = 0; i < r; ++i) {
    for (int j = 0; j < r && j < static_cast<int>(M[i].size()); ++j) {
      A[i][j] = M[i][j].data();
      Trim(A[i][j]);
    }
  }
  // Characteristic polynomial of the trailing block, highest power of x first.
  std::vector<WrappedPoly> charPoly{WrappedPoly{1}};
  for (int k = r - 1; k >= 0; --k) {
    const int m = r - 1 - k; // size of the trailing block A1 = A[k+1.., k+1..]
    std::vector<WrappedPoly> toeplitz(m + 2);
    toeplitz[0] = WrappedPoly{1};
    toeplitz[1] = Negated(A[k][k]);
    std::vector<WrappedPoly> v(m); // A1^j C
    for (int l = 0; l < m; ++l)
      v[l] = A[k + 1 + l][k];
    for (int j = 0; j < m; ++j) {
      WrappedPoly dot;
      for (int l = 0; l < m; ++l)
        AddProduct(dot, A[k][k + 1 + l], v[l]);
      Trim(dot);
      toeplitz[j + 2] = Negated(std::move(dot));
      if (j + 1 == m)
        break;
      std::vector<WrappedPoly> next(m);
      for (int l = 0; l < m; ++l) {
        for (int c = 0; c < m; ++c)
          AddProduct(next[l], A[k + 1 + l][k + 1 + c], v[c]);
        Trim(next[l]);
      }
      v.swap(next);
    }
    std::vector<WrappedPoly> grown(m + 2);
    for (int i = 0; i < m + 2; ++i) {
      for (int j = 0; j <= m && j <= i; ++j)
        AddProduct(grown[i], toeplitz[i - j], charPoly[j]);
      Trim(grown[i]);
    }
    charPoly.swap(grown);
  }
  const WrappedPoly det = (r % 2 == 1) ? Negated(charPoly[r]) : charPoly[r];
  return polynomial<int>(det.begin(), det.end());
}
