// The knot of one closed chain in one projection direction: exact Alexander polynomial up to
// maxPolyCrossings crossings, numeric determinant at t = 12 above.
#pragma once

#include <string>
#include <vector>

#include <boost/math/tools/polynomial.hpp>

#include "core/records.hpp" // for ChainAtom

bool FindTheKnotInParticularDirection_poly(std::vector<ChainAtom> chain,
                                           boost::math::tools::polynomial<int>& poly, double& value,
                                           int direction, int maxPolyCrossings);
int FindTheKnotInParticularDirection(std::vector<ChainAtom> chain, int direction);
int FindTheKnotInParticularDirection_True(std::vector<ChainAtom> chain, int direction);
std::string FindTheKnotInParticularDirection_poly_string(std::vector<ChainAtom> chain,
                                                         int maxPolyCrossings, bool numeric);
