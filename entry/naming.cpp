// Naming a chain over closures for every front end, with its dominant type and shares, and the
// polynomial of a closed chain in one projection as `tresk poly` reports it.
#include "entry/naming.hpp"

#include "alexander/determinant.hpp"   // for WhichKnotDouble_OrdNr
#include "alexander/polynomial.hpp"    // for tresk::PolyText
#include "core/outcomes.hpp"           // for the counts slots
#include "crossings/crossings.hpp"     // for FindAllCrossings
#include "entry/entry.hpp"             // for FindMajorKnot, GiveTheNameOfKnot
#include "knots/extendedTable.hpp"     // for the extended table's outcomes and verdict
#include "knots/jones.hpp"             // for tresk::JonesOfClosedChain, tresk::HandedName
#include "knots/knotTable.hpp"         // for tresk::EnsureKnotsFilled, tresk::KnotOrdinal
#include "preprocessing/chainprep.hpp" // for ChainReduce, ProjectChain
#include "preprocessing/readChain.hpp" // for tresk::CheckCoordinates

namespace tresk {
namespace {

// The slot with the most closures (the lower slot on ties), INSIDE never; -1 when none counted.
int DominantSlot(const std::vector<int>& counts, int inside) {
  int best = -1;
  for (int k = 0; k < static_cast<int>(counts.size()); ++k)
    if (k != inside && counts[k] > 0 && (best < 0 || counts[k] > counts[best]))
      best = k;
  return best;
}

} // namespace

ChainVote NameChain(const std::vector<ChainAtom>& chain, const VoteOptions& o) {
  ChainVote vote;
  vote.error = CheckCoordinates(chain);
  const bool usable = vote.error.empty();
  int inside = -1;
  if (usable && o.handed) {
    const HandedVote handed = HandedVoteOverClosures(chain, o.closureMethod, o.closures, o.naming);
    vote.verdict = handed.verdict;
    for (const auto& [name, count] : handed.counts) {
      vote.names.push_back(name);
      vote.counts.push_back(count);
    }
    inside = -1;
  } else if (usable && o.naming.table == KnotTable::extended) {
    vote.counts = ExtendedVoteOverClosures(chain, o.closureMethod, o.closures, o.naming);
    vote.verdict = ExtendedVerdict(vote.counts);
    for (int k = 0; k < ExtendedOutcomes(); ++k)
      vote.names.push_back(ExtendedOutcomeName(k));
  } else {
    vote.counts.assign(kOrdinals, 0);
    // The documented call where it names the same way, and for its message on coordinates it
    // cannot use.
    if (o.documented || !usable)
      FindMajorKnot(chain, vote.counts.data(), o.closureMethod, o.closures);
    else
      VoteOverClosures(chain, vote.counts.data(), o.closureMethod, o.closures, o.naming);
    vote.verdict = GiveTheNameOfKnot(vote.counts.data());
    EnsureKnotsFilled();
    for (int k = 0; k < kOrdinals; ++k)
      vote.names.push_back(knots[k].name);
    inside = kInside;
  }
  for (const int count : vote.counts)
    vote.total += count;
  vote.dominantSlot = DominantSlot(vote.counts, inside);
  if (vote.dominantSlot >= 0) {
    vote.dominant = vote.names[static_cast<std::size_t>(vote.dominantSlot)];
    vote.share =
        static_cast<double>(vote.counts[static_cast<std::size_t>(vote.dominantSlot)]) / vote.total;
  }
  return vote;
}

std::vector<std::pair<std::string, double>> Shares(const ChainVote& vote) {
  std::vector<std::pair<std::string, double>> shares;
  for (std::size_t k = 0; k < vote.counts.size(); ++k)
    if (vote.counts[k] > 0)
      shares.emplace_back(vote.names[k], static_cast<double>(vote.counts[k]) / vote.total);
  return shares;
}

ClosedChainPolynomial PolynomialOfClosedChain(std::vector<ChainAtom> chain, int direction,
                                              bool reduce, const NamingOptions& naming) {
  ClosedChainPolynomial out;
  ScaleUpIfTiny(chain);
  // Ring files often repeat the first atom at the end; the projection wants each atom once.
  if (chain.size() >= 4) {
    const ChainAtom& a = chain.front();
    const ChainAtom& b = chain.back();
    if (a.x == b.x && a.y == b.y && a.z == b.z)
      chain.pop_back();
  }
  out.atoms = chain.size();
  if (reduce)
    ChainReduce(chain, true);
  out.reducedAtoms = chain.size();

  std::vector<Edge> edges = ProjectChain(chain, direction, true);
  std::vector<Crossing> crossings;
  if (FindAllCrossings(edges, crossings, true) != 0) {
    out.degenerate = true;
    return out;
  }
  out.crossings = static_cast<int>(crossings.size());

  const bool extended = naming.table == KnotTable::extended;
  boost::math::tools::polynomial<int> poly;
  int ordinal;
  int counted = 0;
  out.exact = PolynomialInDirection(chain, direction, naming, poly, out.value, counted);
  if (out.exact) {
    out.coefficients.assign(poly.data().begin(), poly.data().end());
    out.polynomial = PolyText(poly);
    EnsureKnotsFilled();
    ordinal = extended ? ExtendedOrdinal(poly) : KnotOrdinal(poly);
  } else {
    EnsureKnotsFilled();
    ordinal = extended ? ExtendedNumericOrdinal(out.value) : WhichKnotDouble_OrdNr(out.value);
  }
  out.name = extended ? ExtendedOutcomeName(ordinal) : knots[ordinal].name;
  out.inTable = extended ? ordinal != ExtendedUnknown() : ordinal != kUnknown;
  JonesPolynomial jones;
  const JonesStatus status = JonesOfClosedChain(chain, direction, jones);
  out.jonesKnown = status == JonesStatus::ok;
  if (out.jonesKnown)
    out.jones = JonesText(jones);
  out.handed = HandedName(out.inTable ? out.name : knots[kUnknown].name, status, jones);
  return out;
}

} // namespace tresk
