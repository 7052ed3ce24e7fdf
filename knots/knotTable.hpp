// Thread-safe one-time filling of the knot table and the lookup by polynomial, for hot paths
// that run on several threads or name many projections.
#pragma once

#include <boost/math/tools/polynomial.hpp>

namespace tresk {

// Fills `knots` exactly once per process (std::call_once); later calls return at once. Use it
// instead of FillKnotsArray where several threads may name knots at the same time.
void EnsureKnotsFilled();

// The ordinal (0..38) of the first table row equal to the normal form of `poly`, or 39 when
// none is: what WhichKnot_OrdNr returns, without copying the argument.
int KnotOrdinal(const boost::math::tools::polynomial<int>& poly);

} // namespace tresk
