// The extended knot table: every prime knot up to 10 crossings, the composites of the standard
// table and the unknot, keyed by the normalised Alexander polynomial; embedded into the library
// from knots/data/extended_table.tsv. Lookups by polynomial and by numeric value, the verdict.
#pragma once

#include <string>
#include <vector>

#include <boost/math/tools/polynomial.hpp>

namespace tresk {

// One line of the table: the polynomial in normal form (constant term first, positive), the
// names of every knot sharing it joined by '|', the determinant |Δ(-1)| the file states, and
// |Δ(-3)| with factors of 3 divided out (for numerically decided diagrams).
struct ExtendedEntry {
  std::vector<int> coefficients;
  std::string name;
  int determinant = 0;
  int valueAtMinus3 = 0;
};

// The text of knots/data/extended_table.tsv as it was when the library was built.
extern const char* const kExtendedTableText;

// Reads table text: '#' lines are comments, every other line is "coefficients TAB names TAB
// determinant" with the coefficients separated by blanks. "" on success, else what is wrong
// (and on which line).
std::string ParseExtendedTable(const std::string& text, std::vector<ExtendedEntry>& entries);

// The embedded table, read once per process (thread-safe); entry 0 is the unknot.
const std::vector<ExtendedEntry>& ExtendedTable();

// The outcomes a vote under the extended table counts: 0 .. size-1 the entries, then these two.
int ExtendedUnknown();  // the polynomial is not in the table: "-3"
int ExtendedProblem();  // the numeric determinant was not an integer
int ExtendedOutcomes(); // the size of a counts vector
std::string ExtendedOutcomeName(int ordinal);

// The entry whose polynomial equals the normal form of `poly`, else ExtendedUnknown() (also
// for an empty polynomial: a degenerate projection or a coefficient beyond int).
int ExtendedOrdinal(const boost::math::tools::polynomial<int>& poly);
// The name of that entry, or "-3".
std::string ExtendedName(const boost::math::tools::polynomial<int>& poly);
// A numerically decided diagram, matched as the standard table matches it: ExtendedProblem()
// for a value that is not an integer, else the first entry whose |Δ(-3)| with factors of 3
// divided out equals the value's, else ExtendedUnknown().
int ExtendedNumericOrdinal(double value);

// The verdict text over a counts vector of ExtendedOutcomes() slots, in the format of the
// documented verdict: "3_1(70%) 01(30%) ", outcomes by descending count (ties by ascending
// ordinal), failed projections also summed as "IN(n) ".
std::string ExtendedVerdict(const std::vector<int>& counts);

} // namespace tresk
