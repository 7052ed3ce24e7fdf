// Alexander matrix over integer polynomials, its exact determinant and the normal form of the
// polynomial. Polynomials hold coefficients from t^0 upward; int arithmetic wraps mod 2^32.
// Normal form: lowest power of t divided out, constant term positive, no symmetrisation.
#pragma once

#include <string>
#include <vector>

#include <boost/math/tools/polynomial.hpp>

#include "core/records.hpp" // for Crossing

// (n-1) x n matrix: one row per crossing except the last, one column per arc.
std::vector<std::vector<boost::math::tools::polynomial<int>>>
CreateFoxMatrix(std::vector<Crossing> const& crossings);
// Determinant of the leading r x r block (r = number of rows).
boost::math::tools::polynomial<int>
det_poly(std::vector<std::vector<boost::math::tools::polynomial<int>>> const& M);
boost::math::tools::polynomial<int> NormalizePoly(boost::math::tools::polynomial<int> const& p);
bool NonZeroPoly(boost::math::tools::polynomial<int> p);
bool EqualPolies(boost::math::tools::polynomial<int> a, boost::math::tools::polynomial<int> b);
int CalculatePoly(boost::math::tools::polynomial<int> p, int x);
void ShowPoly(boost::math::tools::polynomial<int> p);
void ShowMatrix(std::vector<std::vector<boost::math::tools::polynomial<int>>> const& M);

namespace tresk {
// EqualPolies on coefficient lists, without copying them.
bool EqualCoefficients(std::vector<int> const& a, std::vector<int> const& b);
// What ShowPoly writes, e.g. "1 - t + t^2" or "2 - 3*t"; "0" when no coefficient is non-zero.
std::string PolyText(const boost::math::tools::polynomial<int>& p);
} // namespace tresk
