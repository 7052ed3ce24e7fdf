// The one call that names a chain over closures for every front end (the `tresk` command, the
// Python module, surveys), and the polynomial of a closed chain in one projection with
// everything `tresk poly` prints. Part of the installed API (entry/api.hpp).
#pragma once

#include <string>
#include <vector>

#include "chain/naming.hpp" // for tresk::NamingOptions, tresk::KnotTable
#include "core/records.hpp" // for ChainAtom

namespace tresk {

struct VoteOptions {
  int closureMethod = 3; // 0 none, 1 out to a sphere, 2 two random points, 3 one, 4 one direction
  int closures = 100;    // random closures (methods 0 and 1 always make one)
  NamingOptions naming;  // table, exact-polynomial bound, robust projections
  // true: exactly what FindMajorKnot counts (standard table, exact up to 16 crossings, a
  // degenerate projection counts as "-3"); `naming` is then not read for the standard table.
  bool documented = false;
  // true: handed names by the Alexander and the Jones polynomial of each closed copy ("+3_1",
  // "-5_2", "4_1"; tresk::HandedVoteOverClosures); `documented` and the table are then not read.
  bool handed = false;
};

// The outcome of a vote: the counts per outcome of the table used, the outcome names, the
// verdict text as the documented calls write it, and the dominant type.
struct ChainVote {
  std::vector<int> counts;        // one slot per outcome of the table
  std::vector<std::string> names; // the name of each slot
  int total = 0;                  // closures counted
  std::string verdict;            // e.g. "3_1(70%) 01(30%) "
  std::string dominant;           // most closures (lower slot on ties), never INSIDE; "" if none
  int dominantSlot = -1;          // its slot
  double share = 0.0;             // its share of the closures, 0 to 1
  std::string error;              // coordinates the engine cannot use; the counts are then 0
};

// Names `chain` over closures. rand() is used as the documented calls use it: seed it first for
// a repeatable vote. Coordinates the engine cannot use (NaN, beyond 1e9) give `error` and, as
// FindMajorKnot does, its message on the standard error stream.
ChainVote NameChain(const std::vector<ChainAtom>& chain, const VoteOptions& options);

// The fraction of the vote's closures per outcome name, outcomes with no closure left out.
std::vector<std::pair<std::string, double>> Shares(const ChainVote& vote);

// One projection of a closed chain, as `tresk poly` reports it, with its Jones polynomial.
struct ClosedChainPolynomial {
  std::size_t atoms = 0;         // after dropping a last atom equal to the first
  std::size_t reducedAtoms = 0;  // after the reduction (= atoms without it)
  bool degenerate = false;       // the projection is degenerate: nothing below is set
  int crossings = 0;             // of the diagram in that direction
  bool exact = false;            // the polynomial is exact (else the numeric value below)
  std::vector<int> coefficients; // normal form, constant term first; empty beyond int
  std::string polynomial;        // the polynomial as ShowPoly writes it
  double value = 0.0;            // numeric determinant at t = 12 when not exact
  std::string name;              // the knot it names in the chosen table
  bool inTable = true;           // false: the polynomial is in no row of the chosen table
  bool jonesKnown = false;       // the Jones polynomial below was computed (diagram not too wide)
  std::string jones;             // its text in A (t = A^-4), e.g. "-A^-16 + A^-12 + A^-4"
  std::string handed;            // the handed name by both polynomials, e.g. "+3_1"
};

// Scales a tiny chain up, drops a repeated last atom, reduces it unless `reduce` is false,
// projects it in `direction` (0..59) and names the diagram under `naming`.
ClosedChainPolynomial PolynomialOfClosedChain(std::vector<ChainAtom> chain, int direction,
                                              bool reduce, const NamingOptions& naming);

} // namespace tresk
