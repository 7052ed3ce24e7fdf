// The vote over many closures of one open chain: every closure is reduced and projected until
// one of 30 directions gives a usable determinant, and that knot ordinal is counted.
#include "chain/manyClosures.hpp"

#include <algorithm>

#include "chain/naming.hpp"            // for tresk::KnotInDirection
#include "knots/extendedTable.hpp"     // for the extended table's ordinals and verdict
#include "knots/whichKnot.hpp"         // for GiveTheNameOfKnot_allProj
#include "preprocessing/chainprep.hpp" // for the closures and ChainReduce

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

namespace {

// The vote itself: `ordinalOf(closed chain, direction)` names one projection, `problem` is its
// outcome for a numeric value that is not an integer, counts has room for every outcome.
template <typename OrdinalOf>
void Vote(const std::vector<ChainAtom>& chain, int* counts, int closureMethod, int closures,
          int problem, OrdinalOf ordinalOf) {
  // Methods 0 and 1 are deterministic: one closure says everything. Compared unsigned, so a
  // negative method counts as unknown and makes `closures` passes.
  if (static_cast<unsigned>(closureMethod) <= 1u) {
    closures = 1;
  } else if (closures < 1) {
    return;
  }

  std::vector<ChainAtom> working;
  for (int pass = 0; pass < closures;) {
    working = chain;
    Close(working, closureMethod);
    ChainReduce(working, true);
    int ordinal = problem;
    for (int d = 0; d < kDirectionsPerClosure && ordinal == problem; ++d) {
      ordinal = ordinalOf(working, d);
    }
    // Every direction failed numerically. A random closure is drawn again and casts no vote; a
    // deterministic one (methods 0 and 1, and the unclosed chain of unknown methods) would give
    // the same closed chain for ever, so it is counted as "Problem with projecting" instead.
    const bool random = closureMethod >= 2 && closureMethod <= 4;
    if (ordinal == problem && random)
      continue;
    ++counts[ordinal];
    ++pass;
  }
}

} // namespace

int tresk::VoteOverClosures(const std::vector<ChainAtom>& chain, int* counts, int closureMethod,
                            int closures, const NamingOptions& naming) {
  std::fill(counts, counts + kCountSlots, 0);
  Vote(chain, counts, closureMethod, closures, kProblemWithProjecting,
       [&naming](const std::vector<ChainAtom>& closed, int d) {
         return KnotInDirection(closed, d, naming);
       });
  return 0;
}

std::vector<int> tresk::ExtendedVoteOverClosures(const std::vector<ChainAtom>& chain,
                                                 int closureMethod, int closures,
                                                 const NamingOptions& naming) {
  std::vector<int> counts(ExtendedOutcomes(), 0);
  Vote(chain, counts.data(), closureMethod, closures, ExtendedProblem(),
       [&naming](const std::vector<ChainAtom>& closed, int d) {
         boost::math::tools::polynomial<int> poly;
         double value = 0.0;
         int crossings = 0;
         if (PolynomialInDirection(closed, d, naming, poly, value, crossings))
           return ExtendedOrdinal(poly);
         return ExtendedNumericOrdinal(value);
       });
  return counts;
}

std::string tresk::NameOverClosures(const std::vector<ChainAtom>& chain, int closureMethod,
                                    int closures, const NamingOptions& naming) {
  if (naming.table == KnotTable::extended)
    return ExtendedVerdict(ExtendedVoteOverClosures(chain, closureMethod, closures, naming));
  int counts[kCountSlots];
  VoteOverClosures(chain, counts, closureMethod, closures, naming);
  return GiveTheNameOfKnot_allProj(counts);
}
