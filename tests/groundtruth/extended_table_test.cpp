// The extended knot table against KnotInfo: every shipped name's determinant, every prime knot
// up to 10 crossings present once, the standard table's rows kept; and the ideal curves of the
// corpus named by it with closure method 0.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "chain/naming.hpp"
#include "knots/extendedTable.hpp"
#include "knots/knotTable.hpp"
#include "knots/whichKnot.hpp"
#include "tests/support/datafiles.hpp"

namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);)
    parts.push_back(part);
  return parts;
}

// Name -> determinant from KnotInfo's CSV (Name first, Determinant last).
std::map<std::string, long long> KnotInfoDeterminants() {
  std::map<std::string, long long> determinants;
  std::ifstream in(zoo::DataFile("tables/knotinfo_invariants_determinant.csv"));
  std::string line;
  std::getline(in, line);
  EXPECT_EQ(line.substr(0, 5), "Name,");
  EXPECT_EQ(line.substr(line.rfind(',') + 1), "Determinant");
  while (std::getline(in, line))
    determinants[line.substr(0, line.find(','))] = std::atoll(line.c_str() + line.rfind(',') + 1);
  return determinants;
}

TEST(ExtendedTableGroundTruth, EveryDeterminantAgreesWithKnotInfo) {
  TRESK_REQUIRE_DATA();
  const std::map<std::string, long long> knotInfo = KnotInfoDeterminants();
  std::map<std::string, int> seen;
  for (const tresk::ExtendedEntry& e : tresk::ExtendedTable()) {
    SCOPED_TRACE(e.name);
    long long atMinus1 = 0;
    for (std::size_t k = 0; k < e.coefficients.size(); ++k)
      atMinus1 += k % 2 == 0 ? e.coefficients[k] : -e.coefficients[k];
    EXPECT_EQ(std::llabs(atMinus1), e.determinant);
    for (const std::string& name : Split(e.name, '|')) {
      long long expected = 1;
      for (const std::string& factor : Split(name, '#')) {
        if (name == "01")
          break;
        ASSERT_EQ(knotInfo.count(factor), 1u) << factor;
        expected *= knotInfo.at(factor);
      }
      EXPECT_EQ(expected, e.determinant) << name;
      ++seen[name];
    }
  }
  int primes = 0;
  for (const auto& [name, determinant] : knotInfo) {
    if (zoo::CrossingNumber(name) > 10)
      continue;
    ++primes;
    EXPECT_EQ(seen[name], 1) << name;
  }
  EXPECT_EQ(primes, 249);
  // The standard table's rows: the same polynomial, their text first.
  tresk::EnsureKnotsFilled();
  for (int row = 0; row <= 38; ++row) {
    const std::string name = tresk::ExtendedName(knots[row].poly);
    EXPECT_EQ(name.substr(0, knots[row].name.size()), knots[row].name);
    EXPECT_TRUE(name.size() == knots[row].name.size() || name[knots[row].name.size()] == '|');
  }
}

TEST(ExtendedTableGroundTruth, IdealCurvesClosedAreNamedRight) {
  TRESK_REQUIRE_DATA();
  const std::vector<std::string> files = zoo::FilesIn("closed/gilbert_ideal/sampled", ".xyz");
  EXPECT_EQ(files.size(), 37u);
  tresk::NamingOptions extended;
  extended.table = tresk::KnotTable::extended;
  for (const std::string& f : files) {
    SCOPED_TRACE(f);
    const std::string type = zoo::TypeFromName(f);
    const std::string verdict = tresk::NameOverClosures(
        zoo::ReadChain("closed/gilbert_ideal/sampled/" + f), 0, 1, extended);
    const std::size_t share = verdict.find("(100%) ");
    ASSERT_NE(share, std::string::npos) << verdict;
    const std::vector<std::string> names = Split(verdict.substr(0, share), '|');
    EXPECT_NE(std::find(names.begin(), names.end(), type), names.end()) << verdict;
  }
}

} // namespace
