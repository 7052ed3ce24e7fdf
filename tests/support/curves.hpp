// The zoo of test chains: parametric knots of known type, connected sums, knots cut open with
// tails, and random rotations. Everything is generated, with fixed seeds.
#pragma once

#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace zoo {

using Chain = std::vector<ChainAtom>;

// Closed polygons (first point not repeated), ids 1..n.
Chain Circle(int n, double radius = 10.0);
// Torus knot T(p, q) on a torus of radii R, r: T(2,3) trefoil, T(2,5) 5_1, T(2,7) 7_1,
// T(3,4) 8_19.
Chain TorusKnot(int p, int q, int n, double R = 10.0, double r = 4.0);
// Figure-eight knot 4_1 from its standard trigonometric parametrisation.
Chain FigureEight(int n, double scale = 5.0);
// The connected sum of two closed curves: each cut at its outermost point in x, `b` mirrored
// in x and set beside `a`, the cut arcs joined by two bridges.
Chain ConnectedSum(const Chain& a, Chain b);

// A closed knot cut open at its outermost vertex, with a tail of `tail` beads pulled away from
// each cut end, straight or as an outward-drifting random coil. The knot's vertices are
// positions tail+1 .. tail+knot.size() of the result; ids are positions.
Chain KnottedCore(const Chain& knot, int tail, bool coil, unsigned seed);

// A slipknot: the open trefoil KnottedCore(TorusKnot(2, 3, 60), tail) whose C end turns back
// and runs beside the whole chain, `offset` away, out past its N end: the returning strand
// retraces the knot, so the chain as a whole is unknotted while positions 1 .. 2 tail + 60 form
// a trefoil. The turn lies between positions 2 tail + 60 and 2 tail + 61; ids are positions.
Chain Slipknot(int tail, double offset);

// The chain turned by a random rotation (fixed seed) and shifted.
Chain RandomlyRotated(const Chain& chain, unsigned seed);

} // namespace zoo
