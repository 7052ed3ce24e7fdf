// Fraction-free (Bareiss) elimination over Z[t] with exact polynomial division in 64-bit
// coefficients; the fast exact determinant of Alexander matrices.
#include "alexander/exactDeterminant.hpp"

#include <algorithm>
#include <cstdint>
#include <numeric>

using boost::math::tools::polynomial;

namespace {

// Coefficients of the elimination; every intermediate stays below 3 B^2 <= 3 * 2^60.
using Coef = int64_t;

// After step k every entry (i, j) with i, j > k is the (k+2)-minor on the pivot rows and
// columns 0..k plus row i and column j, and the pivot of step k divides the next numerators
// exactly (Sylvester's identity). A minor's degree is at most the sum of its rows' degrees, so
// every entry fits in `cap` coefficients.
class Elimination {
public:
  explicit Elimination(std::vector<std::vector<polynomial<int>>> const& M)
      : r_(static_cast<int>(M.size())) {
    cap_ = 1;
    for (int i = 0; i < r_; ++i) {
      int rowDegree = 0;
      for (int j = 0; j < r_ && j < static_cast<int>(M[i].size()); ++j) {
        rowDegree = std::max(rowDegree, Degree(M[i][j].data()));
      }
      cap_ += rowDegree;
    }
    coef_.assign(static_cast<std::size_t>(r_) * r_ * cap_, Coef(0));
    degree_.assign(static_cast<std::size_t>(r_) * r_, -1);
    for (int i = 0; i < r_; ++i) {
      for (int j = 0; j < r_ && j < static_cast<int>(M[i].size()); ++j) {
        const std::vector<int>& c = M[i][j].data();
        const int d = Degree(c);
        degree_[Index(i, j)] = d;
        Coef* out = Entry(i, j);
        for (int l = 0; l <= d; ++l)
          out[l] = Coef(c[l]);
      }
    }
    num_.assign(2 * static_cast<std::size_t>(cap_), Coef(0));
  }

  polynomial<int> Determinant() {
    if (r_ == 0)
      return polynomial<int>(std::vector<int>{1});
    std::vector<int> order(r_); // logical row -> stored row
    std::iota(order.begin(), order.end(), 0);
    std::vector<Coef> previous(cap_, Coef(0));
    previous[0] = Coef(1);
    int previousDegree = 0;
    bool negate = false;
    for (int k = 0; k + 1 < r_; ++k) {
      // Pivot: the lowest-degree non-zero entry of column k keeps the numerators short.
      int best = -1;
      for (int i = k; i < r_; ++i) {
        const int d = degree_[Index(order[i], k)];
        if (d >= 0 && (best < 0 || d < degree_[Index(order[best], k)]))
          best = i;
      }
      if (best < 0)
        return polynomial<int>();
      if (best != k) {
        std::swap(order[best], order[k]);
        negate = !negate;
      }
      const int pk = order[k];
      const Coef* pivot = Entry(pk, k);
      const int pivotDegree = degree_[Index(pk, k)];
      for (int i = k + 1; i < r_; ++i) {
        const int pi = order[i];
        const Coef* below = Entry(pi, k);
        const int belowDegree = degree_[Index(pi, k)];
        for (int j = k + 1; j < r_; ++j) {
          // (pivot * M[i][j] - M[i][k] * M[k][j]) / previous pivot.
          const int ij = Index(pi, j);
          const int kjDegree = degree_[Index(pk, j)];
          int top = -1;
          if (degree_[ij] >= 0) {
            top = pivotDegree + degree_[ij];
            std::fill(num_.begin(), num_.begin() + top + 1, Coef(0));
            AddProduct(pivot, pivotDegree, Entry(pi, j), degree_[ij], false);
          }
          if (belowDegree >= 0 && kjDegree >= 0) {
            const int extra = belowDegree + kjDegree;
            if (extra > top) {
              std::fill(num_.begin() + (top + 1), num_.begin() + extra + 1, Coef(0));
              top = extra;
            }
            AddProduct(below, belowDegree, Entry(pk, j), kjDegree, true);
          }
          while (top >= 0 && num_[top] == Coef(0))
            --top;
          if (top < 0) {
            degree_[ij] = -1;
            continue;
          }
          degree_[ij] = DivideExactly(top, previous.data(), previousDegree, Entry(pi, j));
        }
      }
      std::copy(pivot, pivot + pivotDegree + 1, previous.begin());
      previousDegree = pivotDegree;
    }
    const int last = order[r_ - 1];
    const int d = degree_[Index(last, r_ - 1)];
    std::vector<int> result(d + 1);
    const Coef* det = Entry(last, r_ - 1);
    for (int l = 0; l <= d; ++l) {
      // Two's-complement reduction mod 2^32; unsigned conversion is modular by definition.
      const uint32_t wrapped = static_cast<uint32_t>(negate ? Coef(0) - det[l] : det[l]);
      result[l] = static_cast<int32_t>(wrapped);
    }
    return polynomial<int>(std::move(result));
  }

private:
  static int Degree(std::vector<int> const& c) {
    int d = static_cast<int>(c.size()) - 1;
    while (d >= 0 && c[d] == 0)
      --d;
    return d;
  }
  int Index(int i, int j) const { return i * r_ + j; }
  Coef* Entry(int i, int j) { return coef_.data() + static_cast<std::size_t>(Index(i, j)) * cap_; }

  // num_ += a * b, or -= when `subtract`.
  void AddProduct(const Coef* a, int da, const Coef* b, int db, bool subtract) {
    for (int x = 0; x <= da; ++x) {
      const Coef ax = subtract ? Coef(0) - a[x] : a[x];
      if (ax == Coef(0))
        continue;
      Coef* out = num_.data() + x;
      for (int y = 0; y <= db; ++y)
        out[y] += ax * b[y];
    }
  }

  // out = num_[0..top] / divisor, known to divide exactly; returns the quotient's degree.
  int DivideExactly(int top, const Coef* divisor, int divisorDegree, Coef* out) {
    const Coef lead = divisor[divisorDegree];
    const int quotientDegree = top - divisorDegree;
    for (int m = quotientDegree; m >= 0; --m) {
      const Coef rest = num_[m + divisorDegree];
      const Coef q = lead == Coef(1) ? rest : lead == Coef(-1) ? Coef(0) - rest : rest / lead;
      out[m] = q;
      if (q == Coef(0))
        continue;
      Coef* row = num_.data() + m;
      for (int l = 0; l < divisorDegree; ++l)
        row[l] -= q * divisor[l];
    }
    return quotientDegree;
  }

  int r_;
  int cap_;
  std::vector<Coef> coef_;
  std::vector<int> degree_;
  std::vector<Coef> num_;
};

} // namespace

polynomial<int> tresk::DetPolyBareiss(PolyMatrix const& M) {
  return Elimination(M).Determinant();
}
