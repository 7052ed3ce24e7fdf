// The host's fast empty-triangle reduction of one closed single-precision chain: it removes
// exactly the points that the plain reduction (ReduceClosedChain) removes, in the same order,
// but remembers for every corner the segment that blocked it instead of re-testing every
// corner after every removal, and tests four segments at a time when it must test a corner.
#pragma once

#include <vector>

#include "core/points.hpp" // for fPointR3

// Working arrays of ChainReduceFast, indexed by the original position of a point; kept by the
// caller so that a batch of chains reuses one allocation.
struct ReduceScratch {
  // Cyclic neighbours of the points still present, and 0 in `alive` once a point is removed.
  std::vector<int> prev, next;
  std::vector<char> alive;
  // Corner m is blocked by the segment (witStart, witEnd), found while its neighbours were
  // (cornerPrev, cornerNext); witStart -1: not known. lastStart keeps the latest blocker's
  // start after it is forgotten, as the first segment to try next time.
  std::vector<int> witStart, witEnd, cornerPrev, cornerNext, lastStart;
  // Per segment start, the corners that it blocks, as a doubly linked list.
  std::vector<int> blockedHead, blockedNext, blockedPrev;
  // The points still present in chain order, as original positions and as coordinates.
  std::vector<int> order;
  std::vector<float> xs, ys, zs;
};

// Reduces points[0..n-1] in place and returns the new size; only points[0..result-1] are
// written, the rest of the range keeps its old contents. Chains of fewer than 4 points (and
// negative sizes) are returned unchanged.
int ChainReduceFast(fPointR3* points, int n, ReduceScratch& scratch);
// The vectorised segment-triangle test of the fast reduction: bit k of the result is set when
// intersection(triangle, segments + 2k) is not 0, for the four segments in segments[0..7].
int BlockingSegments4(const fPointR3* triangle, const fPointR3* segments);
// ChainReduceFast for a whole vector, which is shrunk to the result (capacity unchanged).
int ChainReduceFast(std::vector<fPointR3>& chain);
