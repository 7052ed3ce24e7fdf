// Lookups in the knot table (normal form first, the first equal row wins), and verdicts and
// result texts over a counts array and over a polynomial tally, on worked examples and edges.
#include <map>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "knots/whichKnot.hpp"

namespace {

// "ordinal:count ..." as a counts array of 42.
std::vector<int> Counts(const std::string& text) {
  std::vector<int> counts(42, 0);
  std::istringstream in(text);
  int ordinal, count;
  char colon;
  while (in >> ordinal >> colon >> count)
    counts[ordinal] = count;
  return counts;
}

std::string Zeros(int n) {
  std::string s;
  while (n-- > 0)
    s += "0 ";
  return s;
}

} // namespace

TEST(KnotTable, LookupsAndRefill) {
  FillKnotsArray();
  const std::tuple<std::vector<int>, const char*, int> cases[] = {
      {{0, 0}, "01", 0}, // stored zeros stand for the unknot
      {{0, 0, -1, 1, -1, 0}, "3_1", 1},
      {{-1, 4, -5, 4, -1}, "8_21|3_1#4_1", 35},
      {{1, 1, 1}, "NO", 39},
      {{}, "NO", 39},
  };
  for (const auto& [coefficients, name, ordinal] : cases) {
    boost::math::tools::polynomial<int> p;
    p.data() = coefficients;
    EXPECT_EQ(WhichKnot(p), name);
    EXPECT_EQ(WhichKnot_OrdNr(p), ordinal) << name;
  }
  knots[5].poly = knots[1].poly; // a second 3_1 further down: the first row still wins
  knots[2].name = "changed";
  EXPECT_EQ(WhichKnot_OrdNr(knots[1].poly), 1);
  FillKnotsArray();
  EXPECT_EQ(WhichKnot(knots[5].poly), "6_1");
  EXPECT_EQ(knots[2].name, "4_1");
}

TEST(Verdict, CountsArray) {
  FillKnotsArray();
  const std::string many = ")  \t----- many INSIDE!";
  const std::tuple<const char*, const char*, int, std::string> cases[] = {
      {"1:60 2:25 0:10 41:5", "3_1", 60, "3_1(60%) 4_1(25%) 01(10%) IN(5) "},
      {"2:6 40:1 41:3", "4_1", 60, "4_1(60%) Problem with projecting(10%) IN(4" + many},
      {"", "-2", 0, ""},
      {"2:50 1:50", "-1", 50, "3_1(50%) 4_1(50%) "},  // a tie is no majority; ordinal order
      {"1:509 0:491", "-1", 50, "3_1(50%) 01(49%) "}, // 50.9 % truncates to 50
      {"41:5", "-2", 100, "IN(5" + many},
      {"0:10", "01", 0, "01(100%) "},
  };
  for (const auto& [text, verdict, strength, list] : cases) {
    SCOPED_TRACE(text);
    std::vector<int> counts = Counts(text);
    EXPECT_EQ(GiveTheNameOfKnotOne(counts.data()), verdict);
    EXPECT_EQ(GiveTheStrenghtOfKnot(counts.data()), strength);
    EXPECT_EQ(GiveTheNameOfKnot_allProj(counts.data()), list);
  }
  const std::pair<const char*, std::string> bands[] = {
      {"1:60 2:25 0:10 41:5", Zeros(11) + "3_1 " + Zeros(10) + "4_1 " + Zeros(8) + "5"},
      {"2:50 1:50", Zeros(14) + "3_1,4_1 " + Zeros(16) + "0"},
      {"41:5", Zeros(31) + "100"},
      {"", "EMPTY KNOTS TABLE in GIVETHENAME...()"},
  };
  for (const auto& [text, row] : bands) {
    std::vector<int> counts = Counts(text);
    EXPECT_EQ(GiveTheNameOfKnot_toMatrix(counts.data()), row) << text;
  }
}

TEST(Verdict, PolynomialTally) {
  using Tally = std::map<std::string, float>;
  // The running total is cut at every step: 1.5 -> 1, 1 + 2.5 -> 3; largest 2.5 -> 2.
  EXPECT_EQ(GiveTheStrenghtOfKnot_poly(Tally{{"1", 1.5f}, {"x", 2.5f}}), 66);
  EXPECT_EQ(GiveThePolies_toDict({{"1", 3}, {"1 - t + t^2", 1}}),
            "{'1': 0.75, '1 - t + t^2': 0.25}");
  EXPECT_EQ(GiveThePolies_toDict({{"1", 1}}), "'1'");
  EXPECT_EQ(GiveThePolies_toDict({{"a", 2}, {"b", 1}}), "{'a': 0.667, 'b': 0.333}");
}
