// Crossing lists for the Alexander-matrix tests, arcs numbered as the crossing pass numbers them:
// closed braids of known knots, random knot braids, and random arc lists of a given size.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "core/records.hpp" // for Crossing

namespace zoo {

// The closure of a braid word on `strands` strands: letter +i is sigma_i (the strand moving from
// position i-1 to i passes over), -i its inverse. One crossing per letter, in word order; arcs
// numbered along the knot from the top of strand 0, an arc ending at each under-passing.
// Empty when the closure is not a knot (the word's permutation is not one cycle).
std::vector<Crossing> BraidClosure(int strands, std::vector<int> const& word);

// A random braid word of `crossings` (>= 1) letters on 2 to 5 strands whose closure is a knot.
std::vector<int> RandomKnotBraid(int crossings, uint32_t seed, int& strands);

// `n` crossings shaped like the crossing pass's output: every arc ends at exactly one
// under-passing (arcIn a permutation, arcOut = arcIn + 1 wrapping); over-arcs and signs at random,
// so kinks (over-arc equal to arcIn or arcOut) occur too.
std::vector<Crossing> RandomArcList(int n, std::mt19937& rng);

} // namespace zoo
