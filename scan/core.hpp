// Where the knot of an open chain sits: its dominant knot type, the knot core (the shortest
// subchain that keeps that type for the majority of closures), the tails on both sides and how
// deep the core lies.
#pragma once

#include <string>
#include <vector>

#include "chain/naming.hpp" // for tresk::NamingOptions
#include "core/records.hpp" // for ChainAtom

namespace tresk {

struct CoreOptions {
  // How every chain and subchain is closed (1 to 4, as in VoteOverClosures; 4 = both ends
  // extended in one random direction) and how many closures decide each of them.
  int closureMethod = 4;
  int closures = 100;
  // Seed of the closures: the same seed gives the same result, whatever `threads` is.
  unsigned long long seed = 1;
  // Step of the coarse grid of subchains (random closures only; one fixed closure searches
  // every subchain); 0 picks one from the chain's length (10 for 100 atoms and more).
  int step = 0;
  NamingOptions naming;
  // Threads that reduce and name the closed subchains: 1 = the caller's, 0 = every core.
  int threads = 1;
};

struct KnotCore {
  // The vote over closures of the whole chain: its text ("3_1(88%) 01(12%) "), the dominant
  // ordinal of the knot table (0 = unknot; the most frequent one, ties to the lower), its name
  // and its share of the closures.
  std::string verdict;
  int ordinal = 0;
  std::string type;
  double share = 0.0;
  // True when a subchain keeps the dominant knot type for the majority of its closures (the
  // dominant type being a knot of the table); the fields below are then filled.
  bool found = false;
  // The core: 1-based positions of its first and last atom, and their ids.
  int first = 0, last = 0;
  int firstId = 0, lastId = 0;
  // Share of the core's closures that give the dominant type (above 0.5).
  double coreShare = 0.0;
  // Atoms before and after the core; depth = the shorter tail, and that as a fraction of the
  // chain's atoms.
  int nTail = 0, cTail = 0;
  int depth = 0;
  double depthFraction = 0.0;
  // Subchains whose closures were analysed.
  int subchains = 0;
};

// "" when a core search with these options can run, otherwise why not.
std::string KnotCoreProblem(const std::vector<ChainAtom>& chain, const CoreOptions& options);

// The knot core of `chain`. The dominant type comes from VoteOverClosures on the whole chain
// (rand() seeded from options.seed first). Every subchain is then closed the same `closures`
// ways (closure k draws from a generator seeded by the seed and k alone), reduced in single
// precision and named; it keeps the type when more than half its closures give it. Subchains
// are visited by ascending length and the first length with a kept one gives the core (ties:
// the higher share, then the earlier start). With one fixed closure (methods 0, 1) every
// subchain is a candidate, so the core is the shortest kept subchain of the chain. With random
// closures the candidates are the fingerprint's grid of `step` and every subchain within
// step - 1 of a grid subchain that keeps the type: the core is exact over those. rand() is
// left reseeded.
KnotCore FindKnotCore(const std::vector<ChainAtom>& chain, const CoreOptions& options = {});

} // namespace tresk
