// The extended knot table as embedded: the shipped file itself, its reader refusing bad text,
// and its verdict text against the documented verdict over the same votes.
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "knots/extendedTable.hpp"
#include "knots/knotTable.hpp"
#include "knots/whichKnot.hpp"
#include "tests/support/datafiles.hpp"

namespace {

TEST(ExtendedTable, EmbeddedTextIsTheShippedFile) {
  std::stringstream shipped;
  shipped << std::ifstream(zoo::SourceFile("knots/data/extended_table.tsv")).rdbuf();
  EXPECT_EQ(shipped.str(), tresk::kExtendedTableText) << "re-run cmake to embed the file";
  const std::vector<tresk::ExtendedEntry>& table = tresk::ExtendedTable();
  std::set<std::vector<int>> polynomials;
  for (const tresk::ExtendedEntry& e : table)
    EXPECT_TRUE(polynomials.insert(e.coefficients).second) << e.name;
  ASSERT_GT(table.size(), 200u);
  EXPECT_EQ(table[0].name, "01");
  EXPECT_EQ(tresk::ExtendedName(boost::math::tools::polynomial<int>{0, 0, -4, 9, -4}), "8_3|10_1");
  EXPECT_EQ(tresk::ExtendedName(boost::math::tools::polynomial<int>{1, 1, 1}), "-3");
  EXPECT_EQ(tresk::ExtendedName(boost::math::tools::polynomial<int>()), "-3");
  EXPECT_EQ(tresk::ExtendedNumericOrdinal(12.5), tresk::ExtendedProblem());
}

TEST(ExtendedTable, BadTextIsRefused) {
  const struct {
    std::string text, error;
  } cases[] = {
      {"1\t01\t1\n1 -1 1\t3_1\n", "line 2: expected three tab-separated columns"},
      {"1\t01\t1\n-1 1 -1\t3_1\t3\n", "line 2: coefficients not in normal form"},
      {"1\t01\t1\n1 -1 0\t3_1\t3\n", "line 2: coefficients not in normal form"},
      {"1\t01\t1\n1 x 1\t3_1\t3\n", "line 2: coefficients not in normal form"},
      {"1\t01\t1\n1 -1 1\t\t3\n", "line 2: no name"},
      {"1\t01\t1\n1 -1 1\t3_1\t3x\n", "line 2: bad determinant"},
      {"# only a comment\n", "the first entry must be the unknot"},
      {"1 -1 1\t3_1\t3\n", "the first entry must be the unknot"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    std::vector<tresk::ExtendedEntry> entries;
    EXPECT_EQ(tresk::ParseExtendedTable(c.text, entries), c.error);
  }
}

// Random votes over the standard rows whose name is the same in both tables (and the failed
// projection): the extended verdict must be the documented text, byte for byte.
TEST(ExtendedTable, VerdictIsTheDocumentedOneOverTheSameVotes) {
  tresk::EnsureKnotsFilled();
  std::vector<std::pair<int, int>> same = {{40, tresk::ExtendedProblem()}};
  for (int row = 0; row <= 38; ++row) {
    const int ordinal = tresk::ExtendedOrdinal(knots[row].poly);
    if (tresk::ExtendedOutcomeName(ordinal) == knots[row].name)
      same.push_back({row, ordinal});
  }
  ASSERT_GT(same.size(), 20u);
  std::mt19937 random(7);
  for (int trial = 0; trial < 300; ++trial) {
    SCOPED_TRACE(trial);
    int counts[42] = {};
    std::vector<int> extended(tresk::ExtendedOutcomes(), 0);
    for (int k = 0; k < 4; ++k) {
      const auto& [row, ordinal] = same[random() % same.size()];
      const int votes = static_cast<int>(random() % 5); // ties are common
      counts[row] += votes;
      extended[ordinal] += votes;
    }
    EXPECT_EQ(tresk::ExtendedVerdict(extended), GiveTheNameOfKnot_allProj(counts));
  }
}

} // namespace
