// The compact result texts of a subchain scan: a counts array as a row of 31 probability bands
// followed by the inside share, and a tally of polynomial texts as a dictionary of shares
// rounded to three decimals in single precision; the short decimal text of a float.
#include <algorithm>
#include <iomanip>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "knots/tallyMath.hpp" // for Percent, the ordinals
#include "knots/whichKnot.hpp"
#include "knots/knotTable.hpp" // for tresk::EnsureKnotsFilled

// Bands T = 90, 87, ..., 0: each knot with a percentage stands in the cell of the largest T
// below its percentage (60 under 57, 100 under 90), several knots of one cell joined by ",",
// empty cells "0", every cell followed by a blank; then the percentage of failed and inside
// closures. Only unknot and inside closures: "01" for a strict unknot majority, else 31 empty
// cells.
std::string GiveTheNameOfKnot_toMatrix(int* counts) {
  tresk::EnsureKnotsFilled(); // names and polynomials exist before any explicit load
  int total = 0;
  for (int i = 0; i < tresk::kOrdinals; ++i)
    total = tresk::WrapAdd(total, counts[i]);
  if (total == 0)
    return "EMPTY KNOTS TABLE in GIVETHENAME...()";
  const int inside = tresk::WrapAdd(counts[tresk::kProblem], counts[tresk::kInside]);
  const std::string insidePct = std::to_string(tresk::Percent(inside, total));
  if (tresk::WrapAdd(counts[0], inside) == total) {
    if (total < tresk::WrapMul(2, counts[0]))
      return UNKNOT;
    std::string text;
    for (int cell = 0; cell < 31; ++cell)
      text += "0 ";
    return text + insidePct;
  }
  std::vector<Knocik> listed; // (ordinal, percentage)
  listed.reserve(tresk::kUnknown + 1);
  for (int i = 1; i <= tresk::kUnknown; ++i) {
    if (counts[i] > 0)
      listed.push_back({i, tresk::Percent(counts[i], total)});
  }
  std::stable_sort(listed.begin(), listed.end(), WayToSortKnociki);
  listed.push_back({0, 0}); // sentinel: above no threshold
  std::string text;
  size_t pos = 0;
  for (int threshold = 90; threshold >= 0; threshold -= 3) {
    if (listed[pos].count > threshold) {
      bool first = true;
      while (listed[pos].count > threshold) {
        if (!first)
          text += ",";
        text += knots[listed[pos].ordinal].name;
        first = false;
        ++pos;
      }
    } else {
      text += "0";
    }
    text += " ";
  }
  return text + insidePct;
}

// "'key'" for a single entry of weight exactly 1, else "{'key': share, ...}" by descending
// weight (equal weights in key order). A share is value / total rounded to three decimals in
// single precision; a share that cannot be rounded in int range (a zero total: inf or NaN) is
// written unrounded, as the stream writes it.
std::string GiveThePolies_toDict(std::map<std::string, float> polies) {
  std::vector<std::pair<std::string, float>> entries(polies.begin(), polies.end());
  float total = 0;
  for (const std::pair<std::string, float>& e : entries)
    total += e.second;
  std::stable_sort(entries.begin(), entries.end(), WayToSortPolies);
  if (entries.size() == 1 && entries[0].second == 1.0f)
    return "'" + entries[0].first + "'";
  std::ostringstream out;
  out << "{";
  for (size_t i = 0; i < entries.size(); ++i) {
    if (i > 0)
      out << ", ";
    const float share = entries[i].second / total;
    const float permille = share * 1000.0f;
    const double halfUp = static_cast<double>(permille) + 0.5;
    out << "'" << entries[i].first << "': ";
    if (halfUp > -2147483649.0 && halfUp < 2147483648.0) {
      out << static_cast<float>(static_cast<int>(halfUp)) / 1000.0f;
    } else {
      out << share;
    }
  }
  out << "}";
  return out.str();
}

bool WayToSortPolies(std::pair<std::string, float> a, std::pair<std::string, float> b) {
  return a.second > b.second;
}

// 0.5 -> "0.5", 1 -> "1", 1/3 -> "0.333", 0.0004 -> "0", -0 -> "-0"; inf and nan unchanged.
std::string removeTrailingZeros(float value) {
  std::ostringstream out;
  out << std::fixed << std::setprecision(3) << static_cast<double>(value);
  std::string text = out.str();
  while (text.find('.') != std::string::npos && text.back() == '0')
    text.pop_back();
  if (!text.empty() && text.back() == '.')
    text.pop_back();
  return text;
}
