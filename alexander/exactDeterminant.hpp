// Exact determinants of integer-polynomial matrices, the methods behind det_poly. Each returns
// the determinant of the leading r x r block (r = number of rows, missing entries read as 0)
// with every coefficient reduced mod 2^32 into int and trailing zeros dropped.
#pragma once

#include <vector>

#include <boost/math/tools/polynomial.hpp>

// Reducing mod 2^32 is a ring homomorphism Z -> Z/2^32, so the exact integer determinant
// reduced coefficient-wise equals what any wrapping-int evaluation of the Leibniz sum (the
// cofactor expansion included) produces.
enum class DetPolyMethod {
  // Fraction-free elimination over Z[t] with exact division, in 64-bit coefficients.
  Bareiss64,
  // The same in 128-bit coefficients.
  Bareiss128,
  // Division-free characteristic-polynomial recurrence, directly in wrapping 32-bit
  // arithmetic; exact for every matrix, O(r^4) polynomial operations.
  Berkowitz32,
};

// The fastest exact method for M. With B = product over the rows of max(1, sum of |coefficients|
// in the leading block), every minor has coefficients of absolute value <= B and every
// intermediate of the elimination stays below 3 B^2: Bareiss64 when B <= 2^30, Bareiss128 when
// B <= 2^62, Berkowitz32 otherwise. Alexander matrices of up to 16 crossings (rows of sum 4 at
// most) always get Bareiss64.
DetPolyMethod
ChooseDetPolyMethod(std::vector<std::vector<boost::math::tools::polynomial<int>>> const& M);

// Exact only when ChooseDetPolyMethod(M) is Bareiss64.
boost::math::tools::polynomial<int>
DetPolyBareiss64(std::vector<std::vector<boost::math::tools::polynomial<int>>> const& M);
// Exact when ChooseDetPolyMethod(M) is Bareiss64 or Bareiss128.
boost::math::tools::polynomial<int>
DetPolyBareiss128(std::vector<std::vector<boost::math::tools::polynomial<int>>> const& M);
// Exact for every matrix.
boost::math::tools::polynomial<int>
DetPolyBerkowitz(std::vector<std::vector<boost::math::tools::polynomial<int>>> const& M);
