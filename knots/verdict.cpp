// The verdict over many closures, read from a counts array of 42 ints indexed by knot ordinal
// (0 unknot, 1..38 knots, 39 unknown, 40 failed projection, 41 inside): one name, a strength in
// percent, or the list of all outcomes with their shares. Percentages are truncated int
// divisions; a zero total gives 0 instead of a division trap.
#include <algorithm>
#include <string>
#include <vector>

#include "knots/tallyMath.hpp" // for Percent, the ordinals
#include "knots/whichKnot.hpp"
#include "knots/knotTable.hpp" // for tresk::EnsureKnotsFilled
#include "knots/verdictText.hpp"

// The most frequent outcome (ties to the lower ordinal) when it holds strictly more than 50
// percent after truncation; "-2" when no closure reached a knot outcome (0..39), else "-1".
std::string GiveTheNameOfKnotOne(int* counts) {
  tresk::EnsureKnotsFilled(); // names and polynomials exist before any explicit load
  int sum = 0;
  int largest = 0;
  int ordinal = 0;
  for (int i = 0; i < tresk::kOrdinals; ++i) {
    sum = tresk::WrapAdd(sum, counts[i]);
    if (counts[i] > largest) {
      largest = counts[i];
      ordinal = i;
    }
  }
  if (tresk::WrapSub(sum, counts[tresk::kInside]) == counts[tresk::kProblem])
    return INSIDE;
  const int percent = tresk::Percent(largest, sum);
  if (50.0 >= percent)
    return MIXTURE;
  return knots[ordinal].name;
}

// Share in percent of the most frequent outcome other than the unknot; 0 for a zero total.
int GiveTheStrenghtOfKnot(int* counts) {
  int sum = 0;
  int largest = 0;
  for (int i = 0; i < tresk::kOrdinals; ++i) {
    sum = tresk::WrapAdd(sum, counts[i]);
    if (i > 0 && counts[i] > largest)
      largest = counts[i];
  }
  return tresk::Percent(largest, sum);
}

// The same over a tally keyed by polynomial text ("1" is the unknot). The running total is
// cut to int after every addition, in float; 0 for an empty tally or a zero total.
int GiveTheStrenghtOfKnot_poly(std::map<std::string, float> polies) {
  int total = 0;
  int largest = 0;
  for (const std::pair<const std::string, float>& entry : polies) {
    total = tresk::TruncToInt(static_cast<float>(total) + entry.second);
    if (entry.first != "1" && entry.second > static_cast<float>(largest)) {
      largest = tresk::TruncToInt(entry.second);
    }
  }
  return tresk::Percent(largest, total);
}

// E.g. "3_1(70%) 01(30%) ": see tresk::VerdictText.
std::string GiveTheNameOfKnot_allProj(int* counts) {
  tresk::EnsureKnotsFilled(); // names and polynomials exist before any explicit load
  return tresk::VerdictText(
      counts, tresk::kOrdinals, [](int ordinal) { return knots[ordinal].name; }, tresk::kProblem,
      tresk::kInside);
}

std::string tresk::VerdictText(const int* counts, int slots,
                               const std::function<std::string(int)>& nameOf, int problem,
                               int inside) {
  std::vector<Knocik> outcomes;
  int total = 0;
  for (int i = 0; i < slots; ++i) {
    if (counts[i] > 0) {
      outcomes.push_back({i, counts[i]});
      total = WrapAdd(total, counts[i]);
    }
  }
  std::stable_sort(outcomes.begin(), outcomes.end(), WayToSortKnociki);
  std::string text;
  for (const Knocik& k : outcomes) {
    if (k.ordinal == inside)
      continue;
    text += nameOf(k.ordinal);
    text += "(";
    text += std::to_string(Percent(k.count, total));
    text += "%) ";
  }
  const int failed = problem >= 0 && problem < slots ? counts[problem] : 0;
  const int notClosed = WrapAdd(failed, inside >= 0 && inside < slots ? counts[inside] : 0);
  if (notClosed < 1)
    return text;
  text += "IN(";
  text += std::to_string(notClosed);
  text += notClosed > total / 3 ? ")  \t----- many INSIDE!" : ") ";
  return text;
}

bool WayToSortKnociki(Knocik a, Knocik b) {
  return a.count > b.count;
}
