// How a diagram is named in the library's own API: exact Alexander polynomial up to a crossing
// bound of the caller's choice, numeric determinant at t = 12 above it; one direction and the
// vote over closures under that choice.
#pragma once

#include <string>
#include <vector>

#include <boost/math/tools/polynomial.hpp>

#include "core/records.hpp" // for ChainAtom

namespace tresk {

// Which table names the polynomials: the 42-row table of the documented calls, or the extended
// one (every prime knot up to 10 crossings, knots/extendedTable.hpp).
enum class KnotTable { standard, extended };

struct NamingOptions {
  // A diagram with more crossings than this is decided by the numeric determinant at t = 12
  // (which may give "Problem with projecting" or a false name); up to it the polynomial is
  // exact, so one missing from the table is "not in the table". 16 is what the documented
  // entry points do.
  int numericAbove = 200;
  // Our vote never ends on a verdict that a better projection would have avoided: a degenerate
  // projection (segments meeting end to end or overlapping in the plane) tries the next
  // direction instead of counting as "-3"; a closed copy reduced to a triangle is the unknot
  // without projecting; a chain smaller than 1e-50 is first scaled up by a power of two (exact)
  // so that products do not underflow; and after 10 random closures with no usable direction a
  // failed closure counts as "Problem with projecting" instead of being drawn again. false: the
  // documented entry points, which count a degenerate projection as "-3".
  bool robust = true;
  KnotTable table = KnotTable::standard;
};

// A chain whose largest |coordinate| is positive and below this is scaled up before a robust
// naming: squared lengths would approach the smallest doubles.
constexpr double kTinyChain = 1e-50;

// Writes to `out` the chain multiplied by the power of two that brings its largest |coordinate|
// into [1, 2) and returns true when it is tiny (above); false, with `out` untouched, otherwise.
// Scaling by 2^k is exact, so every comparison of the scaled chain is the original's.
bool ScaledUpIfTiny(const std::vector<ChainAtom>& chain, std::vector<ChainAtom>& out);
void ScaleUpIfTiny(std::vector<ChainAtom>& chain);

// One projection of a closed chain along `direction` (0 to 59): true with the normalised exact
// polynomial (left untouched after a degenerate projection, empty when a coefficient exceeds
// int), false with the numeric determinant at t = 12 in `value`. `crossings` receives the
// diagram's crossing count, -1 when the projection is degenerate.
bool PolynomialInDirection(std::vector<ChainAtom> chain, int direction, const NamingOptions& naming,
                           boost::math::tools::polynomial<int>& poly, double& value,
                           int& crossings);

// The knot ordinal of that projection (39 = not in the table or, unless `robust`, a degenerate
// projection; 40 = the numeric determinant was not an integer or, when `robust`, a degenerate
// projection).
int KnotInDirection(std::vector<ChainAtom> chain, int direction, const NamingOptions& naming);

// FindOneKnot under a naming choice: closes `chain` `closures` times by `closureMethod`, reduces
// each closure and counts the first usable ordinal of 30 directions in counts[0..41].
int VoteOverClosures(const std::vector<ChainAtom>& chain, int* counts, int closureMethod,
                     int closures, const NamingOptions& naming);

// VoteOverClosures counted under the extended table: tresk::ExtendedOutcomes() counts indexed
// by the extended ordinals (knots/extendedTable.hpp), whatever `naming.table` says.
std::vector<int> ExtendedVoteOverClosures(const std::vector<ChainAtom>& chain, int closureMethod,
                                          int closures, const NamingOptions& naming);

// The vote over closures under `naming`, its table included, as the verdict text of the
// documented calls ("3_1(70%) 01(30%) "); with the standard table it is exactly
// GiveTheNameOfKnot after VoteOverClosures.
std::string NameOverClosures(const std::vector<ChainAtom>& chain, int closureMethod, int closures,
                             const NamingOptions& naming);

// The vote over closures with handed names: each closed copy is named by its Alexander
// polynomial (as VoteOverClosures names it) and by its Jones polynomial in the same direction
// (knots/jones.hpp, HandedName). Returns the counts per name and the verdict text.
struct HandedVote {
  std::vector<std::pair<std::string, int>> counts; // by first appearance
  std::string verdict;                             // "+3_1(86%) 01(9%) "
};
HandedVote HandedVoteOverClosures(const std::vector<ChainAtom>& chain, int closureMethod,
                                  int closures, const NamingOptions& naming);

} // namespace tresk
