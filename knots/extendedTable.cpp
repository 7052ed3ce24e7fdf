// The extended knot table: parsing the embedded text once, the lookups by polynomial and by
// numeric value, and the verdict text over a vote counted under it.
#include "knots/extendedTable.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>

#include "alexander/determinant.hpp" // for Normalize_det_double, WhichKnotDouble_OrdNr
#include "alexander/polynomial.hpp"  // for NormalizePoly
#include "core/records.hpp"          // for UNKNOWN, Knocik
#include "knots/knotTable.hpp"       // for EnsureKnotsFilled
#include "knots/verdictText.hpp"     // for VerdictText
#include "knots/whichKnot.hpp"       // for WayToSortKnociki

namespace tresk {
namespace {

const char* const kProblemName = "Problem with projecting";

// |p(-3)| with factors of 3 divided out, as the numeric lookup compares it; exact in long long
// for the table's small polynomials, 0 for the zero value.
int ValueAtMinus3(const std::vector<int>& c) {
  long long value = 0;
  for (std::size_t k = c.size(); k-- > 0;)
    value = value * -3 + c[k];
  value = std::llabs(value);
  if (value == 0)
    return 0;
  while (value % 3 == 0)
    value /= 3;
  return static_cast<int>(value);
}

struct Lookup {
  std::vector<ExtendedEntry> entries;
  std::map<std::vector<int>, int> byPolynomial;
};

const Lookup& TheLookup() {
  static const Lookup lookup = [] {
    Lookup l;
    const std::string error = ParseExtendedTable(kExtendedTableText, l.entries);
    if (!error.empty()) // the build embeds a checked file; a damaged one is a build fault
      std::abort();
    for (std::size_t i = 0; i < l.entries.size(); ++i)
      l.byPolynomial.emplace(l.entries[i].coefficients, static_cast<int>(i));
    return l;
  }();
  return lookup;
}

} // namespace

std::string ParseExtendedTable(const std::string& text, std::vector<ExtendedEntry>& entries) {
  entries.clear();
  std::istringstream in(text);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.empty() || line[0] == '#')
      continue;
    const std::string where = "line " + std::to_string(number) + ": ";
    const std::size_t tab1 = line.find('\t');
    const std::size_t tab2 = tab1 == std::string::npos ? tab1 : line.find('\t', tab1 + 1);
    if (tab2 == std::string::npos)
      return where + "expected three tab-separated columns";
    ExtendedEntry e;
    std::istringstream coefficients(line.substr(0, tab1));
    for (long long c; coefficients >> c;) {
      if (c < -1000000 || c > 1000000)
        return where + "coefficient out of range";
      e.coefficients.push_back(static_cast<int>(c));
    }
    if (!coefficients.eof() || e.coefficients.empty() || e.coefficients.front() <= 0 ||
        e.coefficients.back() == 0)
      return where + "coefficients not in normal form";
    e.name = line.substr(tab1 + 1, tab2 - tab1 - 1);
    if (e.name.empty())
      return where + "no name";
    char* end = nullptr;
    e.determinant = static_cast<int>(std::strtol(line.c_str() + tab2 + 1, &end, 10));
    if (e.determinant <= 0 || *end != '\0')
      return where + "bad determinant";
    e.valueAtMinus3 = ValueAtMinus3(e.coefficients);
    entries.push_back(std::move(e));
  }
  if (entries.empty() || entries[0].coefficients != std::vector<int>{1})
    return "the first entry must be the unknot";
  return "";
}

const std::vector<ExtendedEntry>& ExtendedTable() {
  return TheLookup().entries;
}

int ExtendedUnknown() {
  return static_cast<int>(ExtendedTable().size());
}

int ExtendedProblem() {
  return ExtendedUnknown() + 1;
}

int ExtendedOutcomes() {
  return ExtendedUnknown() + 2;
}

std::string ExtendedOutcomeName(int ordinal) {
  if (ordinal >= 0 && ordinal < ExtendedUnknown())
    return ExtendedTable()[ordinal].name;
  return ordinal == ExtendedProblem() ? kProblemName : UNKNOWN;
}

int ExtendedOrdinal(const boost::math::tools::polynomial<int>& poly) {
  if (poly.data().empty())
    return ExtendedUnknown();
  const Lookup& l = TheLookup();
  const auto found = l.byPolynomial.find(NormalizePoly(poly).data());
  return found == l.byPolynomial.end() ? ExtendedUnknown() : found->second;
}

std::string ExtendedName(const boost::math::tools::polynomial<int>& poly) {
  return ExtendedOutcomeName(ExtendedOrdinal(poly));
}

int ExtendedNumericOrdinal(double value) {
  EnsureKnotsFilled();                    // the documented lookup reads the standard table
  if (WhichKnotDouble_OrdNr(value) == 40) // the documented test of a non-integral value
    return ExtendedProblem();
  const int v = Normalize_det_double(value, 3);
  const std::vector<ExtendedEntry>& entries = ExtendedTable();
  for (std::size_t k = 0; k < entries.size(); ++k)
    if (entries[k].valueAtMinus3 == v)
      return static_cast<int>(k);
  return ExtendedUnknown();
}

std::string ExtendedVerdict(const std::vector<int>& counts) {
  return VerdictText(counts.data(), static_cast<int>(counts.size()), ExtendedOutcomeName,
                     ExtendedProblem(), -1);
}

} // namespace tresk
