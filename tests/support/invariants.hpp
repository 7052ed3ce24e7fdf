// Knot invariants computed independently of the library's engine, as test oracles: crossings of
// a projected diagram and the knot determinant |Alexander(-1)|.
#pragma once

#include <vector>

#include "core/records.hpp" // for Edge

namespace zoo {

// Proper crossings of non-adjacent edges of a closed diagram (edges in chain order).
int CountCrossings(const std::vector<Edge>& edges);

// |det| of the colouring matrix of the diagram with one row and column struck out, i.e. the
// knot determinant: 1 for the unknot, 3 for the trefoil, 5 for the figure-eight. -1 when the
// diagram is degenerate (a crossing exactly at a vertex, or equal heights at a crossing).
long KnotDeterminant(const std::vector<Edge>& edges);

} // namespace zoo
