// Naming a polynomial: its normal form is compared with rows 0..38 of the knot table in order
// and the first equal row wins; the status rows 39..41 are reached only by ordinal.
#include <cstdint>
#include <vector>

#include "knots/knotTable.hpp"
#include "knots/whichKnot.hpp"

namespace {

constexpr int kSearchable = 39; // rows 0..38
constexpr int kNoMatch = 39;

// EqualPolies(normal form of raw, row), with the normal form read in place: coefficient k of
// the normal form is sign * raw[lo + k] for k < size (wrapping negation).
bool NormalFormEquals(const std::vector<int>& raw, size_t lo, size_t size, bool negate,
                      const std::vector<int>& row) {
  // The normal form ends in a non-zero coefficient, so only the row can carry extra zeros.
  if (size > row.size())
    return false;
  for (size_t k = size; k < row.size(); ++k) {
    if (row[k] != 0)
      return false;
  }
  for (size_t k = 0; k < size; ++k) {
    const uint32_t v = static_cast<uint32_t>(raw[lo + k]);
    if (static_cast<int>(negate ? 0u - v : v) != row[k])
      return false;
  }
  return true;
}

bool IsAllZero(const std::vector<int>& row) {
  for (int v : row) {
    if (v != 0)
      return false;
  }
  return true;
}

} // namespace

int KnotOrdinal(const boost::math::tools::polynomial<int>& poly) {
  const std::vector<int>& raw = poly.data();
  if (raw.empty()) {
    // The zero polynomial stays empty in normal form and equals only all-zero rows.
    for (int i = 0; i < kSearchable; ++i) {
      if (IsAllZero(knots[i].poly.data()))
        return i;
    }
    return kNoMatch;
  }
  size_t lo = 0;
  while (lo < raw.size() && raw[lo] == 0)
    ++lo;
  if (lo == raw.size()) {
    // A stored list of zeros has the normal form 1.
    static const std::vector<int> kOne{1};
    for (int i = 0; i < kSearchable; ++i) {
      if (NormalFormEquals(kOne, 0, 1, false, knots[i].poly.data()))
        return i;
    }
    return kNoMatch;
  }
  size_t hi = raw.size() - 1;
  while (raw[hi] == 0)
    --hi;
  const bool negate = raw[lo] < 0;
  for (int i = 0; i < kSearchable; ++i) {
    if (NormalFormEquals(raw, lo, hi - lo + 1, negate, knots[i].poly.data()))
      return i;
  }
  return kNoMatch;
}

std::string WhichKnot(boost::math::tools::polynomial<int> poly) {
  const int ordinal = KnotOrdinal(poly);
  return ordinal == kNoMatch ? std::string("NO") : knots[ordinal].name;
}

int WhichKnot_OrdNr(boost::math::tools::polynomial<int> poly) {
  return KnotOrdinal(poly);
}
