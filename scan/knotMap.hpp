// The knot map of an open chain, read from its fingerprint: the knot of the whole chain with its
// core and tails, and every slipknot (a knotted subchain that a longer subchain containing it
// undoes) with its core, its slipknot loop and its slipknotting segment; the chain's class
// K/S/U and its list of types as the knotted-protein databases write them.
#pragma once

#include <string>
#include <vector>

#include "chain/naming.hpp" // for tresk::NamingOptions
#include "core/records.hpp" // for ChainAtom

namespace tresk {

struct MapOptions {
  // How every subchain is closed (0 to 4, as in VoteOverClosures) and how many closures decide
  // each; closure k of every subchain is the same draw (seeded from `seed` and k).
  int closureMethod = 4;
  int closures = 50;
  unsigned long long seed = 1;
  // Step of the fingerprint's coarse grid; 0 picks min(10, n / 10).
  int step = 0;
  NamingOptions naming;
  // Threads that reduce and name the closed subchains (0 = every core); the map does not
  // depend on it.
  int threads = 1;
};

// Where a slipknot is undone on one side of its core (1-based positions; 0 when that side
// undoes nothing). The loop runs from the atom after the core (C side; before it on the N side)
// to the first atom whose addition to the core unties it; the segment is the loop's returning
// half, from its turning point (the loop atom farthest from the core's end) to that atom.
struct SlipknotLoop {
  int loopFirst = 0, loopLast = 0;
  int segmentFirst = 0, segmentLast = 0;
};

struct KnottedRegion {
  int ordinal = 0;  // row of the knot table
  std::string type; // KnotTypeText(ordinal)
  // False for the knot of the whole chain (class K), true for a slipknot.
  bool slipknot = false;
  // The knot core (the shortest subchain of the region that keeps the type for more than half
  // of its closures): positions, ids, its share; found = false when no subchain keeps it.
  bool found = false;
  int first = 0, last = 0, firstId = 0, lastId = 0;
  double coreShare = 0.0;
  int nTail = 0, cTail = 0;
  // Slipknots only: the sides whose extension of the core unties it.
  SlipknotLoop nSide, cSide;
  // Coarse grid subchains of the region.
  int cells = 0;
};

struct KnotMap {
  // 'K': the whole chain's dominant type is a knot; 'S': it is not, but a subchain is knotted;
  // 'U': no knotted subchain.
  char chainClass = 'U';
  // The whole chain's type first (class K), then each slipknot's, by core position: "3_1 3_1".
  std::string types;
  // The whole chain's vote over the map's closures ("3_1(88%) 01(12%) "), dominant ordinal and
  // its share.
  std::string verdict;
  int ordinal = 0;
  double share = 0.0;
  // The knot of the whole chain first (class K), then the slipknots by core position.
  std::vector<KnottedRegion> regions;
  int atoms = 0;
  int subchains = 0; // subchains analysed
  int step = 0;      // step of the coarse grid used
};

// The text of a knot type in maps and type lists ("3_1"); the one place that writes it.
std::string KnotTypeText(int ordinal);

// "" when a map with these options can run, otherwise why not.
std::string MapProblem(const std::vector<ChainAtom>& chain, const MapOptions& options);

// The map of `chain`. The coarse grid of subchains (first atoms 1, 1 + step, ..., last atoms n,
// n - step, ...) is analysed; a grid subchain belongs to a knotted region when a knot is its
// dominant outcome for more than half its closures, and regions are the connected sets of such
// subchains of one type (neighbours one grid step apart). The region holding the whole chain
// (or, when the whole chain's own share is not a majority, the longest subchains of its type)
// is its knot; any other region is a slipknot when the core extended to the end of the chain on
// one side loses the type. Cores are exact over the grid's refinement windows (ShortestKept).
KnotMap MapKnots(const std::vector<ChainAtom>& chain, const MapOptions& options = {});

// The class letter and the types string of MapKnots, for tables of many chains.
struct ChainClass {
  char chainClass = 'U';
  std::string types;
};
ChainClass ClassifyChain(const std::vector<ChainAtom>& chain, const MapOptions& options = {});

} // namespace tresk
