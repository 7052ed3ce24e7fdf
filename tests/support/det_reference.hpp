// The polynomial determinant written straight as a recursive cofactor expansion along the last
// column, in wrapping 32-bit arithmetic: the reference that the fast det_poly is tested against.
#pragma once

#include <vector>

#include <boost/math/tools/polynomial.hpp>

namespace reference {

// Determinant of the leading r x r block (r = rows). One row: a copy of entry [0][0] as stored;
// no rows: the zero polynomial. Exponential in r; meant for small or sparse matrices.
boost::math::tools::polynomial<int>
CofactorDeterminant(std::vector<std::vector<boost::math::tools::polynomial<int>>> const& M);

} // namespace reference
