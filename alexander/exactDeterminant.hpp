// Determinants of integer-polynomial matrices: the two methods behind det_poly, each giving the
// leading r x r block's determinant (r = number of rows, missing entries 0) reduced mod 2^32 into
// int, trailing zeros dropped; and the exact determinant of an Alexander matrix of any size.
#pragma once

#include <vector>

#include <boost/math/tools/polynomial.hpp>

namespace tresk {

using PolyMatrix = std::vector<std::vector<boost::math::tools::polynomial<int>>>;

// Reducing mod 2^32 is a ring homomorphism Z -> Z/2^32, so the exact integer determinant
// reduced coefficient-wise equals what any wrapping-int evaluation of the Leibniz sum (the
// cofactor expansion included) produces.

// With B = product over the rows of max(1, sum of |coefficients| in the leading block), every
// minor has coefficients of absolute value <= B and every intermediate of the elimination stays
// below 3 B^2. True when B <= 2^30, so that DetPolyBareiss is exact; always true for Alexander
// matrices of up to 16 crossings (rows of sum 4 at most).
bool BareissIsExact(PolyMatrix const& M);

// Fraction-free elimination over Z[t] with exact division in 64-bit coefficients; exact only
// when BareissIsExact(M).
boost::math::tools::polynomial<int> DetPolyBareiss(PolyMatrix const& M);

// Division-free characteristic-polynomial recurrence (Samuelson-Berkowitz), directly in
// wrapping 32-bit arithmetic; exact for every matrix, O(r^4) polynomial operations.
boost::math::tools::polynomial<int> DetPolyBerkowitz(PolyMatrix const& M);

// The exact integer determinant of the leading r x r block when every entry has degree <= 1
// (an Alexander matrix of any size): det_poly itself where BareissIsExact, otherwise the
// determinant modulo enough 31-bit primes to exceed twice the Hadamard bound, joined by the
// Chinese remainder theorem. False, with `out` untouched, when a coefficient does not fit int
// or an entry has a higher degree; never a wrapped value.
bool ExactAlexanderDeterminant(PolyMatrix const& M, boost::math::tools::polynomial<int>& out);

} // namespace tresk
