// Tiny chains scaled up by a power of two before naming: multiplying every coordinate by 2^k is
// exact, so the knot is the same chain's, but products of coordinates no longer underflow.
#include <algorithm>
#include <cmath>

#include "chain/naming.hpp"

namespace tresk {

bool ScaledUpIfTiny(const std::vector<ChainAtom>& chain, std::vector<ChainAtom>& out) {
  double largest = 0;
  for (const ChainAtom& a : chain)
    largest = std::max({largest, std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
  if (!(largest > 0 && largest < kTinyChain))
    return false;
  const int power = -std::ilogb(largest);
  out = chain;
  for (ChainAtom& a : out) {
    a.x = std::ldexp(a.x, power);
    a.y = std::ldexp(a.y, power);
    a.z = std::ldexp(a.z, power);
  }
  return true;
}

void ScaleUpIfTiny(std::vector<ChainAtom>& chain) {
  std::vector<ChainAtom> scaled;
  if (ScaledUpIfTiny(chain, scaled))
    chain.swap(scaled);
}

} // namespace tresk
