// The numeric Alexander determinant: the matrix at one integer t, Gaussian elimination, factors
// of t divided out (the lookups by the table's values live in knots/numericLookup.cpp).
#include "alexander/determinant.hpp"

#include <cmath>
#include <cstddef>
#include <iostream>

#include "alexander/foxRow.hpp"        // for tresk::FoxRowOf
#include "preprocessing/chainprep.hpp" // for CompareEq
#include "core/outcomes.hpp"           // for the counts slots

using boost::math::tools::polynomial;

namespace {

constexpr double kPivotTolerance = 1e-5;
constexpr double kDivisibilityTolerance = 0.005;
constexpr double kRescaleAbove = 1e8;

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

// Same layout and rows as CreateFoxMatrix (tresk::FoxRowOf), with the entries evaluated at t.
std::vector<std::vector<double>> CreateFoxMatrix_double(std::vector<Crossing> const& crossings,
                                                        int t) {
  const std::size_t n = crossings.size();
  const double td = t;
  std::vector<std::vector<double>> M(n, std::vector<double>(n, 0.0));
  for (std::size_t k = 0; k < n; ++k) {
    const tresk::FoxRow row = tresk::FoxRowOf(crossings[k]);
    for (int e = 0; e < row.count; ++e) {
      const tresk::FoxTerm& term = row.terms[e];
      M[k][term.arc] = term.constant + term.linear * td; // exact: the terms are 0 or +-1
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
