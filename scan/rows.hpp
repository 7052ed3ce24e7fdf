// Output rows of a scan; the short decimal text of a float (removeTrailingZeros) comes with
// the knots header.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "core/records.hpp"    // for RowFile, Job
#include "knots/whichKnot.hpp" // for removeTrailingZeros

namespace tresk {

// The fingerprint file. Names mode: a header line "# firstId lastId >90 >87 ... >0 IN 1 atoms",
// then one row per knotted subchain ("firstId lastId" 31 bands, inside share, "first last") or
// "UNKNOT". Polynomial mode: one dictionary "{(firstId, lastId): {...}, ...}" without a header.

// The header line of a names-mode fingerprint, without its line end; an empty chain shows 0 for
// both end ids.
std::string FingerprintHeader(const std::vector<ChainAtom>& chain);
// The rows in their layout: one per line in names mode, one dictionary otherwise.
void WriteFingerprintRows(std::ostream& out, const std::vector<RowFile>& rows, int namesMode);

// One knotted subchain as read back from a names-mode fingerprint.
struct FingerprintCell {
  int first; // 1-based positions of the subchain's ends
  int last;
  int firstId; // the end atoms' own numbers (residue numbers)
  int lastId;
  std::string knot; // dominant knot type; "IN" when no knot reached a band
  double percent;   // estimated probability of that knot (middle of its band), or inside share
};

// A names-mode fingerprint: the chain's end ids and length from the header, and its rows.
struct Fingerprint {
  int firstId = 0;
  int lastId = 0;
  int atoms = 0;
  std::vector<FingerprintCell> cells;
};

// The longest chain a fingerprint may claim: far beyond any chain that can be scanned, small
// enough that a picture's per-atom loops stay quick.
constexpr int kMaxFingerprintAtoms = 1000000;

// Reads one names-mode row (a RowFile's text, or a line of the file) of a chain of `atoms`
// atoms. Returns "" on success, otherwise what is wrong with it.
std::string ReadFingerprintRow(const std::string& line, int atoms, FingerprintCell& cell);

// Reads a names-mode fingerprint (header line, then rows or "UNKNOT"). Returns "" on success,
// otherwise a message naming the offending line.
std::string ReadFingerprint(std::istream& in, Fingerprint& out);

} // namespace tresk

RowFile MakeRowFromJob(std::string verdict, Job job, int strength, int namesMode);
