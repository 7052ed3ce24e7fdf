// Ranking of the 30 projection planes for one closed chain by the crossings of its diagram:
// the adaptive direction order of ProjectChain.
#pragma once

#include <array>
#include <vector>

#include "core/records.hpp"             // for ChainAtom
#include "preprocessing/directions.hpp" // for ProjectionFrame

namespace tresk {

// Proper crossings of the closed chain's diagram in the frame's plane (pairs of non-adjacent
// segments). `nearDegenerate` is set when some pair, or a segment, is within a hair of a
// degenerate configuration (a crossing at a vertex, an overlap, a segment seen end-on).
int CountDiagramCrossings(const std::vector<ChainAtom>& chain, const ProjectionFrame& frame,
                          bool& nearDegenerate);
// The same, but counting stops once `limit` crossings are found (the result is then `limit`
// and `nearDegenerate` tells only about the pairs looked at).
int CountDiagramCrossingsUpTo(const std::vector<ChainAtom>& chain, const ProjectionFrame& frame,
                              int limit, bool& nearDegenerate);
// The same again; with `stopWhenDegenerate` the count is abandoned (result 0) as soon as
// `nearDegenerate` is set, for callers that ignore near-degenerate planes.
int CountCrossings(const std::vector<ChainAtom>& chain, const ProjectionFrame& frame, int limit,
                   bool stopWhenDegenerate, bool& nearDegenerate);

// Base plane indices 0..29 ordered by (near-degenerate last, fewer crossings, lower index).
std::array<int, 30> RankPlanes(const std::vector<ChainAtom>& chain);
// Only the first `wanted` entries of that order are guaranteed; the rest follow in some order.
std::array<int, 30> RankPlanesTop(const std::vector<ChainAtom>& chain, int wanted);

} // namespace tresk
