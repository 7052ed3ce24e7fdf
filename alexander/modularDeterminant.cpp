// The exact integer determinant of an Alexander matrix of any size: det(A + tB) modulo several
// 31-bit primes, each by one characteristic polynomial, joined by the Chinese remainder theorem.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "alexander/exactDeterminant.hpp"
#include "alexander/polynomial.hpp" // for det_poly

using boost::math::tools::polynomial;

namespace {

using u64 = uint64_t;
using u128 = unsigned __int128;

// Enough primes for a coefficient bound of about 30 * kPrimeCount bits (several thousand rows).
constexpr int kPrimeCount = 256;

// Arithmetic modulo one prime p < 2^31 with Barrett reduction of products below 2^62.
struct Field {
  explicit Field(u64 prime) : p(prime), m(~u64{0} / prime) {}
  u64 Reduce(u64 x) const {
    u64 r = x - static_cast<u64>((static_cast<u128>(x) * m) >> 64) * p;
    return r >= p ? r - p : r;
  }
  u64 Mul(u64 a, u64 b) const { return Reduce(a * b); }
  u64 Neg(u64 a) const { return a == 0 ? 0 : p - a; }
  u64 Pow(u64 a, u64 e) const {
    u64 r = 1;
    for (; e != 0; e >>= 1, a = Mul(a, a))
      if (e & 1)
        r = Mul(r, a);
    return r;
  }
  u64 Inv(u64 a) const { return Pow(a, p - 2); }
  u64 p;
  u64 m;
};

// Deterministic Miller-Rabin for n < 2^32 (bases 2, 7, 61).
bool IsPrime(u64 n) {
  const Field f(n);
  u64 d = n - 1;
  int s = 0;
  for (; (d & 1) == 0; d >>= 1)
    ++s;
  for (u64 a : {2u, 7u, 61u}) {
    u64 x = f.Pow(a % n, d);
    if (x == 0 || x == 1 || x == n - 1)
      continue;
    bool composite = true;
    for (int k = 1; k < s && composite; ++k) {
      x = f.Mul(x, x);
      composite = x != n - 1;
    }
    if (composite)
      return false;
  }
  return true;
}

// The largest primes below 2^31, each above 2^30.99.
const std::vector<u64>& Primes() {
  static const std::vector<u64> primes = [] {
    std::vector<u64> v;
    for (u64 n = (u64{1} << 31) - 1; static_cast<int>(v.size()) < kPrimeCount; n -= 2)
      if (IsPrime(n))
        v.push_back(n);
    return v;
  }();
  return primes;
}

// Characteristic polynomial det(xI - H) of the r x r matrix H (row-major, destroyed): similarity
// reduction to Hessenberg form, then the Hessenberg recurrence. Coefficients from x^0 upward.
std::vector<u64> CharPoly(std::vector<u64>& H, int r, const Field& f) {
  auto at = [&](int i, int j) -> u64& { return H[static_cast<std::size_t>(i) * r + j]; };
  for (int k = 0; k + 2 < r; ++k) {
    int piv = k + 1;
    while (piv < r && at(piv, k) == 0)
      ++piv;
    if (piv == r)
      continue;
    if (piv != k + 1) {
      for (int j = 0; j < r; ++j)
        std::swap(at(piv, j), at(k + 1, j));
      for (int i = 0; i < r; ++i)
        std::swap(at(i, piv), at(i, k + 1));
    }
    const u64 inv = f.Inv(at(k + 1, k));
    for (int i = k + 2; i < r; ++i) {
      const u64 u = f.Mul(at(i, k), inv);
      if (u == 0)
        continue;
      const u64 minusU = f.Neg(u);
      for (int j = k; j < r; ++j) // row i -= u * row k+1
        at(i, j) = f.Reduce(at(i, j) + minusU * at(k + 1, j));
      for (int row = 0; row < r; ++row) // column k+1 += u * column i
        at(row, k + 1) = f.Reduce(at(row, k + 1) + u * at(row, i));
    }
  }
  // p_m = (x - h_mm) p_{m-1} - sum_i h_{m-i,m} h_{m,m-1} ... h_{m-i+1,m-i} p_{m-i-1} (1-based).
  std::vector<std::vector<u64>> p(r + 1);
  p[0] = {1};
  for (int m = 1; m <= r; ++m) {
    std::vector<u64>& pm = p[m];
    pm.assign(m + 1, 0);
    const u64 diag = f.Neg(at(m - 1, m - 1));
    for (int l = 0; l < m; ++l) {
      pm[l + 1] = f.Reduce(pm[l + 1] + p[m - 1][l]);
      pm[l] = f.Reduce(pm[l] + diag * p[m - 1][l]);
    }
    u64 product = 1;
    for (int i = 1; i < m && product != 0; ++i) {
      product = f.Mul(product, at(m - i, m - i - 1));
      const u64 c = f.Neg(f.Mul(at(m - i - 1, m - 1), product));
      for (std::size_t l = 0; l < p[m - i - 1].size(); ++l)
        pm[l] = f.Reduce(pm[l] + c * p[m - i - 1][l]);
    }
  }
  return p[r];
}

// det(A + tB) mod p, r + 1 coefficients. With a shift c such that A + cB is invertible:
// det(A + cB + sB) = det(A + cB) det(I + sC), C = (A + cB)^-1 B, whose coefficients are those of
// det(xI + C) reversed; then s = t - c. A non-zero determinant has at most r roots, so when
// r + 1 shifts all fail the determinant is 0 mod p.
std::vector<u64> PencilDeterminant(const std::vector<u64>& A, const std::vector<u64>& B, int r,
                                   const Field& f) {
  const int w = 2 * r;
  std::vector<u64> G(static_cast<std::size_t>(r) * w);
  for (int attempt = 0; attempt <= r; ++attempt) {
    // t = 1 first: an Alexander matrix of a knot has determinant +-1 there.
    const u64 c = attempt == 0 ? 1 : attempt == 1 ? 0 : static_cast<u64>(attempt);
    for (int i = 0; i < r; ++i)
      for (int j = 0; j < r; ++j) {
        const std::size_t ij = static_cast<std::size_t>(i) * r + j;
        G[static_cast<std::size_t>(i) * w + j] = f.Reduce(A[ij] + c * B[ij]);
        G[static_cast<std::size_t>(i) * w + r + j] = B[ij];
      }
    // Gauss-Jordan on [A + cB | B] leaves C on the right.
    u64 det = 1;
    bool singular = false;
    for (int k = 0; k < r && !singular; ++k) {
      int piv = k;
      while (piv < r && G[static_cast<std::size_t>(piv) * w + k] == 0)
        ++piv;
      if (piv == r) {
        singular = true;
        break;
      }
      u64* pk = &G[static_cast<std::size_t>(k) * w];
      if (piv != k) {
        std::swap_ranges(pk + k, pk + w, &G[static_cast<std::size_t>(piv) * w + k]);
        det = f.Neg(det);
      }
      det = f.Mul(det, pk[k]);
      const u64 inv = f.Inv(pk[k]);
      for (int j = k; j < w; ++j)
        pk[j] = f.Mul(pk[j], inv);
      for (int i = 0; i < r; ++i) {
        u64* pi = &G[static_cast<std::size_t>(i) * w];
        if (i == k || pi[k] == 0)
          continue;
        const u64 minusU = f.Neg(pi[k]);
        for (int j = k; j < w; ++j)
          pi[j] = f.Reduce(pi[j] + minusU * pk[j]);
      }
    }
    if (singular)
      continue;
    std::vector<u64> minusC(static_cast<std::size_t>(r) * r);
    for (int i = 0; i < r; ++i)
      for (int j = 0; j < r; ++j)
        minusC[static_cast<std::size_t>(i) * r + j] =
            f.Neg(G[static_cast<std::size_t>(i) * w + r + j]);
    const std::vector<u64> chi = CharPoly(minusC, r, f);
    // q(s) = det * sum_j chi[r - j] s^j; det(A + tB) = q(t - c) by Horner's rule.
    std::vector<u64> out(r + 1, 0);
    const u64 minusC0 = f.Neg(c);
    for (int j = r; j >= 0; --j) {
      for (int l = r - j; l >= 0; --l) { // out = out * (t - c) + q_j
        const u64 shifted = l > 0 ? out[l - 1] : 0;
        out[l] = f.Reduce(shifted + minusC0 * out[l]);
      }
      out[0] = f.Reduce(out[0] + f.Mul(det, chi[r - j]));
    }
    return out;
  }
  return std::vector<u64>(r + 1, 0);
}

} // namespace

bool tresk::ExactAlexanderDeterminant(PolyMatrix const& M, polynomial<int>& out) {
  const int r = static_cast<int>(M.size());
  if (r <= 1 || BareissIsExact(M)) {
    out = det_poly(M);
    return true;
  }
  // |coefficient| <= max over |t| = 1 of |det| <= product over rows of the row's Euclidean norm
  // there (Hadamard), and |entry(t)| <= the sum of its |coefficients|.
  double log2Bound = 0.0;
  for (int i = 0; i < r; ++i) {
    double squares = 0.0;
    for (int j = 0; j < r && j < static_cast<int>(M[i].size()); ++j) {
      const std::vector<int>& c = M[i][j].data();
      if (c.size() > 2 && std::any_of(c.begin() + 2, c.end(), [](int x) { return x != 0; }))
        return false; // not a pencil A + tB
      double norm = 0.0;
      for (int x : c)
        norm += std::fabs(static_cast<double>(x));
      squares += norm * norm;
    }
    if (squares == 0.0) {
      out = polynomial<int>();
      return true;
    }
    log2Bound += 0.5 * std::log2(squares);
  }
  // The product of the primes must exceed twice the bound; a margin covers rounding.
  const int count = std::max(2, static_cast<int>((log2Bound + 3.0) / 30.9) + 1);
  const std::vector<u64>& primes = Primes();
  if (count > kPrimeCount)
    return false;

  std::vector<std::vector<u64>> residues(count);
  std::vector<u64> A(static_cast<std::size_t>(r) * r), B(A.size());
  for (int k = 0; k < count; ++k) {
    const Field f(primes[k]);
    const int64_t p = static_cast<int64_t>(primes[k]);
    for (int i = 0; i < r; ++i)
      for (int j = 0; j < r; ++j) {
        const std::vector<int> none;
        const std::vector<int>& c = j < static_cast<int>(M[i].size()) ? M[i][j].data() : none;
        const std::size_t ij = static_cast<std::size_t>(i) * r + j;
        A[ij] = c.size() > 0 ? static_cast<u64>(((c[0] % p) + p) % p) : 0;
        B[ij] = c.size() > 1 ? static_cast<u64>(((c[1] % p) + p) % p) : 0;
      }
    residues[k] = PencilDeterminant(A, B, r, f);
  }

  // Every |coefficient| is below half the product of all primes. The candidate from the first
  // two primes (symmetric residue below 2^61) is the coefficient exactly when it agrees with
  // every other prime; a coefficient that does not is too large for int.
  const u64 p0 = primes[0], p1 = primes[1];
  const Field f1(p1);
  const u64 inv0 = f1.Inv(p0 % p1);
  std::vector<int> coefficients(r + 1, 0);
  for (int l = 0; l <= r; ++l) {
    const u64 r0 = residues[0][l], r1 = residues[1][l];
    const u64 lift = f1.Mul(f1.Reduce(r1 + p1 - r0 % p1), inv0);
    const u64 y = r0 + p0 * lift;
    const u64 modulus = p0 * p1;
    const int64_t value =
        y > modulus / 2 ? -static_cast<int64_t>(modulus - y) : static_cast<int64_t>(y);
    for (int k = 2; k < count; ++k) {
      const int64_t p = static_cast<int64_t>(primes[k]);
      if (static_cast<u64>(((value % p) + p) % p) != residues[k][l])
        return false;
    }
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
      return false;
    coefficients[l] = static_cast<int>(value);
  }
  while (!coefficients.empty() && coefficients.back() == 0)
    coefficients.pop_back();
  out = coefficients.empty() ? polynomial<int>() : polynomial<int>(std::move(coefficients));
  return true;
}
