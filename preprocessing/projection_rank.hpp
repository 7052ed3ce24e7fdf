// Ranking of the 30 projection planes for one closed chain by the crossings of its diagram (the
// adaptive direction order of ProjectChain), and the fewest crossings over those planes.
#pragma once

#include <array>
#include <climits>
#include <cstdint>
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
// RankPlanes(chain)[0], counting the plane `hint` first: a good guess (the best plane of a
// similar chain) makes every other count stop early. The answer does not depend on the hint.
int BestPlane(const std::vector<ChainAtom>& chain, int hint);

// The least number of crossings over the 30 planes, near-degenerate planes left out, capped at
// `below` (`below` when no clean plane has fewer; INT_MAX when every plane is near-degenerate).
// The result does not depend on the order the planes are tried in (`order`, identity when
// null): a plane matters only when it is clean and under the running minimum, so each count
// stops there.
int FewestCrossings(const std::vector<ChainAtom>& chain, int below = INT_MAX,
                    const std::array<int, 30>* order = nullptr);

// Every pair of segments of one closed chain (4 to 64 vertices) classified in each of the 30
// planes. A chain made from it by replacing some stretches keeps most of its segments, and two
// kept segments meet in a plane exactly as they did (the same points, and the same hair when
// the diagram's coordinate scale is unchanged): its FewestCrossings then tests only the pairs
// with a new segment.
class DiagramPairs {
public:
  static constexpr int kMaxVertices = 64;
  // False (nothing kept) for a chain outside 4..64 vertices.
  bool Build(const std::vector<ChainAtom>& chain);
  // RankPlanes of the chain built on.
  std::array<int, 30> Rank() const;
  // FewestCrossings(other, below, &order), bit for bit.
  int Fewest(const std::vector<ChainAtom>& other, int below, const std::array<int, 30>& order);

private:
  // A trial whose diagram has another scale has another hair. Each pair is also classified at
  // kHairRange times narrower and wider hairs; where both agree, every hair in between gives
  // the same answer (each tolerance test is monotone in the hair), so only the other pairs
  // ("unsteady") are classified again for a trial whose hair lies in that range.
  static constexpr double kHairRange = 4.0;
  struct Plane {
    double scale, hair, narrowHair, wideHair;
    int widest;          // a vertex whose coordinate sets the scale
    int crossings;       // clean crossing pairs of the whole diagram
    int degeneratePairs; // pairs too close to call
    uint64_t shortSegments;
    std::array<uint64_t, kMaxVertices> cross, degenerate, unsteady; // pairs, by segment
    std::array<int, kMaxVertices> crossCount, degenerateCount;
  };
  std::vector<ChainAtom> chain_;
  std::vector<std::array<double, 2>> points_; // projected vertices, plane by plane
  std::vector<double> lengths_;               // projected segment lengths, plane by plane
  std::array<Plane, 30> planes_;
  // Scratch of Fewest.
  std::vector<int> from_;
};

} // namespace tresk
