// The one closure switch of the engine and the one loop over projection directions: every path
// that closes an open chain (the vote over closures, the fingerprint's batches, the knot-core
// search) goes through CloseByMethod, and every closed copy is named by the first usable of 30
// directions through FirstUsableOrdinal.
#pragma once

#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace tresk {

// The distance parameter of the sphere closures (methods 1 to 3): the sphere's radius as a
// multiple of the chain's extent, as the preprocessing library reads it.
constexpr double kClosureParameter = 1.25;
// Directions of a closed copy tried in order until one gives a usable outcome.
constexpr int kDirectionsPerClosure = 30;

// What to do when a sphere closure answers -1 ("the closing path was rejected, draw again"):
// the vote over closures draws again on the same, already changed chain until one is accepted;
// the documented batch preparation uses the chain as it stands (its contract: a closure is not
// examined), so that its sequence of rand() draws is fixed.
enum class ClosureRetry { useAsIs, drawAgain };

// Closes `chain` in place: 1 out to a sphere (deterministic), 2 two random points of it, 3 one
// random point, 4 both ends extended in one random direction — only when `directionClosure`;
// the documented batch preparation leaves a method-4 subchain open — and any other method
// leaves the chain as it is (0: already closed; the reduction joins the last point to the first).
void CloseByMethod(std::vector<ChainAtom>& chain, int method, ClosureRetry retry,
                   bool directionClosure = true);

// The outcome of a closed copy: `ordinalOf(closed, d)` for d = 0, 1, ... until it is not
// `problem` (a degenerate or numerically failed projection) or 30 directions are spent.
template <class OrdinalOf>
int FirstUsableOrdinal(const std::vector<ChainAtom>& closed, int problem, OrdinalOf ordinalOf) {
  int ordinal = problem;
  for (int d = 0; d < kDirectionsPerClosure && ordinal == problem; ++d)
    ordinal = ordinalOf(closed, d);
  return ordinal;
}

} // namespace tresk
