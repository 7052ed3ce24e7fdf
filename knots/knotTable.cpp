// The table of 42 known knots: rows 0..38 knots with their Alexander polynomials (normal form)
// and tabulated values at t = -2 and t = -3, rows 39..41 the status rows. The stored values are
// the tabulated ones, five of which deliberately differ from the polynomial's true value.
#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "knots/knotTable.hpp"
#include "knots/whichKnot.hpp"
#include "core/outcomes.hpp" // for the counts slots

KnownKnot knots[tresk::kOrdinals];

namespace {

struct TableRow {
  int coefficients[9];
  int count;
  int valueAtMinus2;
  int valueAtMinus3;
  const char* name; // nullptr: a status string, filled from the status constants
};

// Stored as tabulated: "7_2" at -3 is 5, "8_1" 17, "8_15" 65, "7_5" at -2 is 104, "3_1#5_1"
// at -2 is 112 (the value of row 38's polynomial) and "3_1#5_2" at -2 is 0.
constexpr TableRow kRows[tresk::kOrdinals] = {
    {{1}, 1, 1, 1, nullptr},
    {{1, -1, 1}, 3, 7, 13, "3_1"},
    {{1, -3, 1}, 3, 11, 19, "4_1"},
    {{1, -1, 1, -1, 1}, 5, 31, 121, "5_1"},
    {{2, -3, 2}, 3, 16, 29, "5_2"},
    {{2, -5, 2}, 3, 20, 35, "6_1"},
    {{1, -3, 3, -3, 1}, 5, 59, 199, "6_2"},
    {{1, -3, 5, -3, 1}, 5, 67, 217, "6_3"},
    {{1, -1, 1, -1, 1, -1, 1}, 7, 127, 1093, "7_1"},
    {{3, -5, 3}, 3, 25, 5, "7_2"},
    {{2, -3, 3, -3, 2}, 5, 76, 281, "7_3"},
    {{4, -7, 4}, 3, 34, 61, "7_4"},
    {{2, -4, 5, -4, 2}, 5, 104, 329, "7_5"},
    {{1, -5, 7, -5, 1}, 5, 95, 295, "7_6"},
    {{1, -5, 9, -5, 1}, 5, 103, 313, "7_7"},
    {{3, -7, 3}, 3, 0, 17, "8_1"},
    {{1, -3, 3, -3, 3, -3, 1}, 7, 0, 1819, "8_2"},
    {{4, -9, 4}, 3, 0, 67, "8_3"},
    {{2, -5, 5, -5, 2}, 5, 0, 359, "8_4"},
    {{1, -3, 4, -5, 4, -3, 1}, 7, 0, 1963, "8_5"},
    {{2, -6, 7, -6, 2}, 5, 0, 407, "8_6"},
    {{1, -3, 5, -5, 5, -3, 1}, 7, 0, 2053, "8_7"},
    {{2, -6, 9, -6, 2}, 5, 0, 425, "8_8"},
    {{1, -3, 5, -7, 5, -3, 1}, 7, 0, 2107, "8_9"},
    {{1, -3, 6, -7, 6, -3, 1}, 7, 0, 2197, "8_10"},
    {{2, -7, 9, -7, 2}, 5, 0, 455, "8_11"},
    {{1, -7, 13, -7, 1}, 5, 0, 409, "8_12"},
    {{2, -7, 11, -7, 2}, 5, 0, 473, "8_13"},
    {{2, -8, 11, -8, 2}, 5, 0, 503, "8_14"},
    {{3, -8, 11, -8, 3}, 5, 0, 65, "8_15"},
    {{1, -4, 8, -9, 8, -4, 1}, 7, 0, 2677, "8_16"},
    {{1, -4, 8, -11, 8, -4, 1}, 7, 0, 2731, "8_17"},
    {{1, -5, 10, -13, 10, -5, 1}, 7, 0, 3211, "8_18"},
    {{1, -1, 0, 1, 0, -1, 1}, 7, 0, 949, "8_19"},
    {{1, -2, 3, -2, 1}, 5, 0, 169, "8_20|3_1#3_1"},
    {{1, -4, 5, -4, 1}, 5, 0, 247, "8_21|3_1#4_1"},
    {{1, -1, 1, -1, 1, -1, 1, -1, 1}, 9, 0, 9841, "9_1"},
    {{1, -2, 3, -3, 3, -2, 1}, 7, 112, 1573, "3_1#5_1"},
    {{2, -5, 7, -5, 2}, 5, 0, 377, "3_1#5_2"},
    {{1}, 1, 0, 0, nullptr},
    {{1}, 1, 0, 0, "Problem with projecting"},
    {{1}, 1, 0, 0, nullptr},
};

// Rows 0, 39 and 41 are named by the status strings.
const std::string& StatusName(int i) {
  return i == 0 ? UNKNOT : i == 39 ? UNKNOWN : INSIDE;
}

// Overwrites row i with its tabulated values, writing only fields that differ: once the table
// is filled, a refill only reads, so it neither allocates nor races with lookups.
void FillRow(int i) {
  const TableRow& r = kRows[i];
  KnownKnot& k = knots[i];
  std::vector<int>& c = k.poly.data();
  if (!std::equal(c.begin(), c.end(), r.coefficients, r.coefficients + r.count)) {
    c.assign(r.coefficients, r.coefficients + r.count);
  }
  if (k.valueAtMinus2 != r.valueAtMinus2)
    k.valueAtMinus2 = r.valueAtMinus2;
  if (k.valueAtMinus3 != r.valueAtMinus3)
    k.valueAtMinus3 = r.valueAtMinus3;
  if (r.name != nullptr) {
    if (k.name != r.name)
      k.name = r.name;
  } else if (k.name != StatusName(i)) {
    k.name = StatusName(i);
  }
}

} // namespace

void FillKnotsArray() {
  for (int i = 0; i < tresk::kOrdinals; ++i)
    FillRow(i);
}

void tresk::EnsureKnotsFilled() {
  static std::once_flag once;
  std::call_once(once, FillKnotsArray);
}
