// The vote over many closures of one open chain: every closure is reduced and projected until
// one of 30 directions gives a usable determinant, and that knot ordinal is counted.
#include "chain/manyClosures.hpp"

#include <algorithm>
#include <map>
#include <memory>

#include "chain/closing.hpp"           // for tresk::CloseByMethod, tresk::FirstUsableOrdinal
#include "chain/naming.hpp"            // for tresk::KnotInDirection
#include "knots/extendedTable.hpp"     // for the extended table's ordinals and verdict
#include "knots/jones.hpp"             // for tresk::JonesOfClosedChain, tresk::HandedName
#include "knots/knotTable.hpp"         // for tresk::EnsureKnotsFilled
#include "knots/verdictText.hpp"       // for tresk::VerdictText
#include "knots/whichKnot.hpp"         // for GiveTheNameOfKnot_allProj
#include "preprocessing/chainprep.hpp" // for the closures and ChainReduce
#include "preprocessing/open_cut.hpp"  // for tresk::OpenChainCut
#include "core/outcomes.hpp"           // for the counts slots

namespace {

constexpr int kCountSlots = tresk::kOrdinals;
constexpr int kProblemWithProjecting = tresk::kProblem; // the numeric value is not an integer
constexpr int kUnknotOrdinal = tresk::kUnknot;
// Random closures in a row without a usable direction before a robust vote stops drawing again:
// from then on such a closure is counted as "Problem with projecting" (a chain that touches
// itself is degenerate in every direction, whatever the closure).
constexpr int kMaxFailedDraws = 10;
// The documented vote names diagrams of more crossings numerically.
constexpr int kDocumentedNumericAbove = 16;

// Whether the closed chain visits at most three distinct points (a triangle or less).
bool AtMostThreePoints(const std::vector<ChainAtom>& chain) {
  std::vector<const ChainAtom*> seen;
  for (const ChainAtom& a : chain) {
    auto same = [&a](const ChainAtom* b) { return a.x == b->x && a.y == b->y && a.z == b->z; };
    if (std::none_of(seen.begin(), seen.end(), same)) {
      if (seen.size() == 3)
        return false;
      seen.push_back(&a);
    }
  }
  return true;
}

} // namespace

int FindOneKnot(const std::vector<ChainAtom>& chain, int* counts, int closureMethod, int closures) {
  return tresk::VoteOverClosures(chain, counts, closureMethod, closures,
                                 tresk::NamingOptions{kDocumentedNumericAbove, false});
}

namespace {

// The vote itself: `ordinalOf(closed chain, direction)` names one projection, `problem` is its
// outcome for a numeric value that is not an integer (and, when robust, a degenerate
// projection), `unknot` the unknot's; counts has room for every outcome.
template <typename OrdinalOf>
void Vote(const std::vector<ChainAtom>& chain, int* counts, int closureMethod, int closures,
          bool robust, int problem, int unknot, OrdinalOf ordinalOf) {
  // Methods 0 and 1 are deterministic: one closure says everything. Compared unsigned, so a
  // negative method counts as unknown and makes `closures` passes.
  if (static_cast<unsigned>(closureMethod) <= 1u) {
    closures = 1;
  } else if (closures < 1) {
    return;
  }

  const std::vector<ChainAtom>* source = &chain;
  std::vector<ChainAtom> scaled;
  if (robust && tresk::ScaledUpIfTiny(chain, scaled))
    source = &scaled;

  // Random closures of one chain share the chain: its corners are cut once, and each closure
  // replays those cuts wherever its closing path leaves them valid (the same knot; see
  // OpenChainCut) before its own reduction.
  const bool random = closureMethod >= 2 && closureMethod <= 4;
  std::unique_ptr<tresk::OpenChainCut> shared;
  if (random && closures > 1)
    shared = std::make_unique<tresk::OpenChainCut>(*source);
  std::vector<ChainAtom> working;
  int failedDraws = 0;
  for (int pass = 0; pass < closures;) {
    working = *source;
    tresk::CloseByMethod(working, closureMethod, tresk::ClosureRetry::drawAgain);
    if (shared)
      shared->Apply(working);
    ChainReduce(working, true);
    int ordinal = problem;
    if (robust && AtMostThreePoints(working))
      ordinal = unknot; // a triangle, however flat, bounds a disc
    if (ordinal == problem)
      ordinal = tresk::FirstUsableOrdinal(working, problem, ordinalOf);
    // Every direction failed numerically. A random closure is drawn again and casts no vote; a
    // deterministic one (methods 0 and 1, and the unclosed chain of unknown methods) would give
    // the same closed chain for ever, so it is counted as "Problem with projecting" instead, as
    // is every failed random closure of a robust vote after the tenth.
    if (ordinal == problem && random && !(robust && ++failedDraws >= kMaxFailedDraws))
      continue;
    ++counts[ordinal];
    ++pass;
  }
}

} // namespace

int tresk::VoteOverClosures(const std::vector<ChainAtom>& chain, int* counts, int closureMethod,
                            int closures, const NamingOptions& naming) {
  std::fill(counts, counts + kCountSlots, 0);
  Vote(chain, counts, closureMethod, closures, naming.robust, kProblemWithProjecting,
       kUnknotOrdinal, [&naming](const std::vector<ChainAtom>& closed, int d) {
         return KnotInDirection(closed, d, naming);
       });
  return 0;
}

std::vector<int> tresk::ExtendedVoteOverClosures(const std::vector<ChainAtom>& chain,
                                                 int closureMethod, int closures,
                                                 const NamingOptions& naming) {
  std::vector<int> counts(ExtendedOutcomes(), 0);
  Vote(chain, counts.data(), closureMethod, closures, naming.robust, ExtendedProblem(),
       ExtendedOrdinal(boost::math::tools::polynomial<int>(std::vector<int>{1})),
       [&naming](const std::vector<ChainAtom>& closed, int d) {
         boost::math::tools::polynomial<int> poly;
         double value = 0.0;
         int crossings = 0;
         if (PolynomialInDirection(closed, d, naming, poly, value, crossings)) {
           if (crossings < 0 && naming.robust)
             return ExtendedProblem(); // degenerate: the next direction is tried
           return ExtendedOrdinal(poly);
         }
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

tresk::HandedVote tresk::HandedVoteOverClosures(const std::vector<ChainAtom>& chain,
                                                int closureMethod, int closures,
                                                const NamingOptions& naming) {
  EnsureKnotsFilled();
  // Outcomes are numbered as they first appear; slot 0 is the failed projection.
  std::vector<std::string> names = {knots[kProblemWithProjecting].name, "01"};
  std::map<std::string, int> slots = {{names[0], 0}, {names[1], 1}};
  auto slotOf = [&](const std::string& name) {
    const auto found = slots.emplace(name, static_cast<int>(names.size()));
    if (found.second)
      names.push_back(name);
    return found.first->second;
  };
  // Vote counts into a fixed array; the names are few, so a generous one is given and trimmed.
  std::vector<int> tally(4096, 0);
  Vote(chain, tally.data(), closureMethod, closures, naming.robust, 0, 1,
       [&](const std::vector<ChainAtom>& closed, int d) {
         const int ordinal = KnotInDirection(closed, d, naming);
         if (ordinal == kProblemWithProjecting)
           return 0;
         JonesPolynomial jones;
         const JonesStatus status = JonesOfClosedChain(closed, d, jones);
         const int slot = slotOf(HandedName(knots[ordinal].name, status, jones));
         return slot < static_cast<int>(tally.size()) ? slot : slotOf("UNKNOWN");
       });
  HandedVote vote;
  tally.resize(names.size());
  for (std::size_t k = 0; k < names.size(); ++k)
    if (tally[k] > 0)
      vote.counts.emplace_back(names[k], tally[k]);
  vote.verdict = VerdictText(
      tally.data(), static_cast<int>(names.size()), [&](int k) { return names[k]; }, 0, -1);
  return vote;
}
