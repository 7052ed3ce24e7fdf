// The plain state sum of the Kauffman bracket over all 2^n smoothings of a planar-diagram code:
// the reference of the contracted Jones polynomial (knots/jones.hpp) for small diagrams.
#pragma once

#include <vector>

#include "knots/jones.hpp" // for tresk::PdCrossing, tresk::JonesPolynomial

namespace reference {

tresk::JonesPolynomial JonesByStateSum(const std::vector<tresk::PdCrossing>& pd);

} // namespace reference
