// The knot core of an open chain: the dominant type from the vote over closures of the whole
// chain, then the shortest subchain that keeps it, searched length by length over every
// subchain (one fixed closure) or over the fingerprint's grid and refinement windows (random
// closures).
#include "scan/core.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <numeric>

#include "chain/naming.hpp"            // for tresk::VoteOverClosures
#include "core/outcomes.hpp"           // for the counts slots
#include "knots/whichKnot.hpp"         // for GiveTheNameOfKnot_allProj
#include "knots/knotTable.hpp"         // for EnsureKnotsFilled, knots
#include "preprocessing/readChain.hpp" // for tresk::CheckCoordinates
#include "scan/subchainVotes.hpp"      // for tresk::ShortestKept, tresk::GridWindows

namespace tresk {
namespace {

constexpr int kCountSlots = tresk::kOrdinals;
constexpr int kFirstStatusRow = tresk::kUnknown; // 39..41: not in the table, failed, inside
// A closed polygon of fewer than six edges is unknotted (six is the least stick number of a
// knot), so a subchain of fewer atoms holds no knot under the direct closure; the other
// closures are held to the same floor.
constexpr int kShortestSubchain = 6;

int Steps(int n) {
  return std::clamp(n / 10, 1, 10);
}

} // namespace

std::string KnotCoreProblem(const std::vector<ChainAtom>& chain, const CoreOptions& options) {
  const std::string coordinates = CheckCoordinates(chain);
  if (!coordinates.empty())
    return coordinates;
  if (options.closureMethod < 0 || options.closureMethod > 4)
    return "the closure method must be 0 to 4";
  if (options.closures < 1)
    return "the number of closures must be at least 1";
  if (options.step < 0)
    return "the grid step must not be negative";
  return "";
}

KnotCore FindKnotCore(const std::vector<ChainAtom>& chain, const CoreOptions& options) {
  KnotCore core;
  EnsureKnotsFilled();
  int counts[kCountSlots];
  std::srand(static_cast<unsigned>(options.seed));
  VoteOverClosures(chain, counts, options.closureMethod, options.closures, options.naming);
  core.verdict = GiveTheNameOfKnot_allProj(counts);
  core.ordinal = static_cast<int>(std::max_element(counts, counts + kCountSlots) - counts);
  core.type = knots[core.ordinal].name;
  const int total = std::accumulate(counts, counts + kCountSlots, 0);
  core.share = total > 0 ? static_cast<double>(counts[core.ordinal]) / total : 0.0;
  const int n = static_cast<int>(chain.size());
  if (core.ordinal == 0 || core.ordinal >= kFirstStatusRow || n < kShortestSubchain)
    return core;

  // One closure (methods 0 and 1) makes the search exhaustive: the windows of a step-1 grid are
  // every subchain. With random closures the candidates are the fingerprint's grid and its
  // refinement windows around the coarse subchains that keep the type.
  const bool fixed = options.closureMethod == 0 || options.closureMethod == 1;
  const int step = fixed ? 1 : options.step > 0 ? options.step : Steps(n);
  SubchainVotes votes(chain, options.closureMethod, options.closures, options.seed, options.naming,
                      options.threads);
  GridWindows windows(votes, core.ordinal, step, kShortestSubchain);
  const Kept kept = ShortestKept(votes, core.ordinal, kShortestSubchain, n,
                                 [&](int length) { return windows.AtLength(length); });
  core.subchains = votes.Analysed();
  if (!kept.found)
    return core;
  core.first = kept.first, core.last = kept.last;
  const int closures = votes.Closures();
  const int got = kept.votes;
  core.found = true;
  core.firstId = chain[static_cast<std::size_t>(core.first - 1)].id;
  core.lastId = chain[static_cast<std::size_t>(core.last - 1)].id;
  core.coreShare = static_cast<double>(got) / closures;
  core.nTail = core.first - 1;
  core.cTail = n - core.last;
  core.depth = std::min(core.nTail, core.cTail);
  core.depthFraction = static_cast<double>(core.depth) / n;
  return core;
}

} // namespace tresk
