// The numeric Alexander determinant: the matrix at one integer t, Gaussian elimination, factors
// of t divided out, and the lookups by the knot table's values at t = -3.
#include "alexander/determinant.hpp"

#include <cmath>
#include <cstddef>
#include <iostream>

#include "preprocessing/chainprep.hpp" // for CompareEq

using boost::math::tools::polynomial;

namespace {

constexpr double kPivotTolerance = 1e-5;
constexpr double kDivisibilityTolerance = 0.005;
constexpr double kRescaleAbove = 1e8;
constexpr int kTableKnots = 39; // rows 0..38 are searchable knots

// fmod(det, t) within 0.005 of 0, t or -t. Never true for a zero det or |t| <= 1: dividing
// those by t would not shrink them and the division loops would not end.
bool DivisibleBy(double det, int t) {
  if (det == 0.0 || (t >= -1 && t <= 1))
    return false;
  const double rest = std::fmod(det, t);
  return CompareEq(rest, 0.0, kDivisibilityTolerance) ||
         CompareEq(rest, t, kDivisibilityTolerance) || CompareEq(rest, -t, kDivisibilityTolerance);
}

} // namespace

// Same layout and crossing convention as CreateFoxMatrix (alexander/foxMatrix.cpp), with the
// entries evaluated at t; `sign` is tested as zero / non-zero.
std::vector<std::vector<double>> CreateFoxMatrix_double(std::vector<Crossing> const& crossings,
                                                        int t) {
  const std::size_t n = crossings.size();
  const double td = t;
  std::vector<std::vector<double>> M(n, std::vector<double>(n, 0.0));
  for (std::size_t k = 0; k < n; ++k) {
    const Crossing& x = crossings[k];
    const int a = x.arcOver;
    const int b = x.arcIn;
    const int c = x.arcOut;
    const bool s = x.sign != 0;
    std::vector<double>& row = M[k];
    if (a != b && a != c) {
      row[a] = 1.0 - td;
      row[b] = s ? -1.0 : td;
      row[c] = s ? td : -1.0;
    } else if (a == b && a != c) {
      row[a] = s ? -td : 1.0;
      row[c] = s ? td : -1.0;
    } else if (a == c && a != b) {
      row[a] = s ? 1.0 : -td;
      row[b] = s ? -1.0 : td;
    } else {
      row[a] = 0.0;
    }
  }
  if (!M.empty())
    M.pop_back();
  return M;
}

// Determinant of the leading r x r block by elimination with the first usable pivot, then
// |det| with factors of t divided out. While the running product is large (> 1e8) factors of t
// are divided out before each multiplication so that it keeps its integer digits.
double det_double(std::vector<std::vector<double>>& M, int t) {
  const std::size_t r = M.size();
  double det = 1.0;
  if (r >= 1) {
    for (std::size_t p = 0; p < r; ++p) {
      std::size_t i = p;
      while (i + 1 < r && !(std::fabs(M[i][p]) > kPivotTolerance))
        ++i;
      if (std::fabs(M[i][p]) <= kPivotTolerance)
        return 0.0;
      if (i > p) {
        M[i].swap(M[p]);
        det = -det;
      }
      for (std::size_t j = p + 1; j < r; ++j) {
        if (!(std::fabs(M[j][p]) > kPivotTolerance))
          continue;
        const double f = M[j][p] / M[p][p];
        for (std::size_t col = p; col < r; ++col)
          M[j][col] -= f * M[p][col];
      }
    }
    for (std::size_t q = 0; q < r; ++q) {
      while (std::fabs(det) > kRescaleAbove && DivisibleBy(det, t))
        det /= t;
      det *= M[q][q];
    }
  }
  while (DivisibleBy(det, t))
    det /= t;
  return std::fabs(det);
}

// Halves round away from zero. A divisor of 0, 1 or -1 divides nothing out (the loop would
// never end); a negative divisor acts as its absolute value.
int Normalize_det_double(double x, int d) {
  const long rounded = std::lround(x);
  if (rounded == 0)
    return 0;
  unsigned long v =
      rounded < 0 ? 0UL - static_cast<unsigned long>(rounded) : static_cast<unsigned long>(rounded);
  const unsigned long divisor =
      d < 0 ? 0UL - static_cast<unsigned long>(d) : static_cast<unsigned long>(d);
  if (divisor > 1) {
    while (v % divisor == 0)
      v /= divisor;
  }
  return static_cast<int>(static_cast<unsigned int>(v));
}

// Divides out factors of 3 and compares with the table's values at t = -3, although the
// determinant driver evaluates at t = 12: a numerically decided diagram therefore as a rule
// gives 39 (the trefoil's 133 is not its table value 13), or 40 for a non-integral value.
int WhichKnotDouble_OrdNr(double x) {
  const double fraction = std::fmod(x, 1.0);
  if (!(CompareEq(fraction, 0.0, kPivotTolerance) || CompareEq(fraction, 1.0, kPivotTolerance) ||
        CompareEq(fraction, -1.0, kPivotTolerance))) {
    return 40;
  }
  const int v = Normalize_det_double(x, 3);
  for (int k = 0; k < kTableKnots; ++k) {
    if (knots[k].valueAtMinus3 == v)
      return k;
  }
  return 39;
}

polynomial<int> GivePolyByValM3(double x) {
  for (int k = 0; k < kTableKnots; ++k) {
    if (x == static_cast<double>(knots[k].valueAtMinus3))
      return knots[k].poly;
  }
  return knots[0].poly;
}

void ShowMatrix_double(std::vector<std::vector<double>> const& M) {
  std::cout << "Macierz:\n";
  for (const std::vector<double>& row : M) {
    for (double v : row)
      std::cout << v << ",   ";
    std::cout << std::endl;
  }
}

// A leftover check routine: builds a small fixed matrix and releases it. Not called by the
// library.
void main2() {
  std::vector<std::vector<double>> M = {{2.0, -1.0, 1.0}, {1.0, 2.0, -1.0}, {-1.0, 1.0, 2.0}};
  M.clear();
}
