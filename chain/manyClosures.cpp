// The vote over many closures of one open chain: every closure is reduced and projected until
// one of 30 directions gives a usable determinant, and that knot ordinal is counted.
#include "chain/manyClosures.hpp"

#include <algorithm>
#include <memory>

#include "chain/naming.hpp"            // for tresk::KnotInDirection
#include "preprocessing/chainprep.hpp" // for the closures and ChainReduce
#include "preprocessing/open_cut.hpp"  // for tresk::OpenChainCut

namespace {

constexpr int kCountSlots = 42;
constexpr int kProblemWithProjecting = 40; // the numeric determinant was not an integer
constexpr int kDirectionsPerClosure = 30;
constexpr double kClosureParameter = 1.25;
// The documented vote names diagrams of more crossings numerically.
constexpr int kDocumentedNumericAbove = 16;

// Closes `chain` in place by closure method `method`; methods 1 to 3 are asked again on the
// same, already changed chain for as long as they answer -1.
void Close(std::vector<ChainAtom>& chain, int method) {
  switch (method) {
  case 1:
    while (CloseChain_OUT(chain, kClosureParameter) == -1) {
    }
    break;
  case 2:
    while (CloseChain_2points(chain, kClosureParameter) == -1) {
    }
    break;
  case 3:
    while (CloseChain_1point(chain, kClosureParameter) == -1) {
    }
    break;
  case 4:
    CloseChain_1direction(chain);
    break;
  default: // 0 (the chain is already closed) and unknown methods use the chain as it is
    break;
  }
}

} // namespace

int FindOneKnot(const std::vector<ChainAtom>& chain, int* counts, int closureMethod, int closures) {
  return tresk::VoteOverClosures(chain, counts, closureMethod, closures,
                                 tresk::NamingOptions{kDocumentedNumericAbove});
}

int tresk::VoteOverClosures(const std::vector<ChainAtom>& chain, int* counts, int closureMethod,
                            int closures, const NamingOptions& naming) {
  std::fill(counts, counts + kCountSlots, 0);
  // Methods 0 and 1 are deterministic: one closure says everything. Compared unsigned, so a
  // negative method counts as unknown and makes `closures` passes.
  if (static_cast<unsigned>(closureMethod) <= 1u) {
    closures = 1;
  } else if (closures < 1) {
    return 0;
  }

  // Random closures of one chain share the chain: its corners are cut once, and each closure
  // replays those cuts wherever its closing path leaves them valid (the same knot; see
  // OpenChainCut) before its own reduction.
  const bool random = closureMethod >= 2 && closureMethod <= 4;
  std::unique_ptr<OpenChainCut> shared;
  if (random && closures > 1)
    shared = std::make_unique<OpenChainCut>(chain);
  std::vector<ChainAtom> working;
  for (int pass = 0; pass < closures;) {
    working = chain;
    Close(working, closureMethod);
    if (shared)
      shared->Apply(working);
    ChainReduce(working, true);
    int ordinal = kProblemWithProjecting;
    for (int d = 0; d < kDirectionsPerClosure && ordinal == kProblemWithProjecting; ++d) {
      ordinal = KnotInDirection(working, d, naming);
    }
    // Every direction failed numerically. A random closure is drawn again and casts no vote; a
    // deterministic one (methods 0 and 1, and the unclosed chain of unknown methods) would give
    // the same closed chain for ever, so it is counted as "Problem with projecting" instead.
    if (ordinal == kProblemWithProjecting && random)
      continue;
    ++counts[ordinal];
    ++pass;
  }
  return 0;
}
