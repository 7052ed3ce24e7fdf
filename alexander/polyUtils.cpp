// Small utilities on integer polynomials: the normal form (lowest power of t divided out,
// constant term positive, no symmetrisation), zero and equality tests, evaluation at an
// integer with wrapping 32-bit arithmetic, and the console prints of a polynomial and a matrix.
#include <iostream>
#include <sstream>

#include "alexander/polynomial.hpp"
#include "core/wrapInt.hpp" // for WrapAdd, WrapMul, WrapNeg

using boost::math::tools::polynomial;

using tresk::WrapAdd;
using tresk::WrapMul;
using tresk::WrapNeg;

polynomial<int> NormalizePoly(polynomial<int> const& p) {
  const std::vector<int>& c = p.data();
  if (c.empty())
    return p;
  size_t lo = 0;
  while (lo < c.size() && c[lo] == 0)
    ++lo;
  // A stored list of zeros is not the zero polynomial here: it stands for the unknot.
  if (lo == c.size())
    return polynomial<int>{1};
  size_t hi = c.size() - 1;
  while (c[hi] == 0)
    --hi;
  const bool negate = c[lo] < 0;
  std::vector<int> out(c.begin() + lo, c.begin() + hi + 1);
  if (negate) {
    for (int& v : out)
      v = WrapNeg(v);
  }
  return polynomial<int>(std::move(out));
}

bool NonZeroPoly(polynomial<int> p) {
  for (int v : p.data()) {
    if (v != 0)
      return true;
  }
  return false;
}

// Equal up to high-order zero coefficients; an empty list equals any all-zero list.
bool tresk::EqualCoefficients(std::vector<int> const& x, std::vector<int> const& y) {
  const std::vector<int>& longer = x.size() < y.size() ? y : x;
  const size_t common = x.size() < y.size() ? x.size() : y.size();
  for (size_t k = common; k < longer.size(); ++k) {
    if (longer[k] != 0)
      return false;
  }
  for (size_t k = 0; k < common; ++k) {
    if (x[k] != y[k])
      return false;
  }
  return true;
}

bool EqualPolies(polynomial<int> a, polynomial<int> b) {
  return tresk::EqualCoefficients(a.data(), b.data());
}

// Sum of p[k] * x^k over ascending k with a running power; every step wraps modulo 2^32.
int CalculatePoly(polynomial<int> p, int x) {
  int sum = 0;
  int power = 1;
  for (int c : p.data()) {
    sum = WrapAdd(sum, WrapMul(c, power));
    power = WrapMul(power, x);
  }
  return sum;
}

// Writes e.g. "1 - t + t^2" or "2 - 3*t" (no newline); "0" when no coefficient is non-zero.
// A first term that is negative and of degree >= 1 is written with a leading " - ".
std::string tresk::PolyText(const polynomial<int>& p) {
  std::ostringstream out;
  const std::vector<int>& c = p.data();
  int printed = 0;
  for (size_t k = 0; k < c.size(); ++k) {
    const int v = c[k];
    if (v == 0)
      continue;
    if (v > 0) {
      if (k > 0 && printed > 0)
        out << " + ";
      if (k == 0 || v != 1)
        out << v;
    } else if (k > 0) {
      out << " - ";
      if (WrapNeg(v) != 1)
        out << WrapNeg(v);
    } else {
      out << "-" << WrapNeg(v);
    }
    if (k > 0) {
      if (WrapMul(v, v) != 1)
        out << "*";
      out << "t";
      if (k > 1)
        out << "^" << k;
    }
    ++printed;
  }
  if (printed == 0)
    out << "0";
  return out.str();
}

void ShowPoly(polynomial<int> p) {
  std::cout << tresk::PolyText(p);
}

void ShowMatrix(std::vector<std::vector<polynomial<int>>> const& M) {
  std::cout << "Macierz:\n";
  for (const std::vector<polynomial<int>>& row : M) {
    for (const polynomial<int>& entry : row) {
      ShowPoly(entry);
      std::cout << ",   ";
    }
    std::cout << std::endl;
  }
}
