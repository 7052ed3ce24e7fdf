// Verdicts and result texts over a counts array (name, strength, outcome list, band row) and over
// a polynomial tally (strength, dictionary), on the worked examples and their edges.
#include <map>

#include <gtest/gtest.h>

#include "knots/whichKnot.hpp"

namespace {

std::string Zeros(int n) {
  std::string s;
  for (int i = 0; i < n; ++i)
    s += "0 ";
  return s;
}

} // namespace

TEST(Verdict, CountsArray) {
  FillKnotsArray();
  const std::string many = ")  \t----- many INSIDE!";
  const struct {
    std::map<int, int> counts; // ordinal -> count
    std::string verdict;
    int strength;
    std::string list, bands;
  } cases[] = {
      {{{1, 60}, {2, 25}, {0, 10}, {41, 5}},
       "3_1",
       60,
       "3_1(60%) 4_1(25%) 01(10%) IN(5) ",
       Zeros(11) + "3_1 " + Zeros(10) + "4_1 " + Zeros(8) + "5"},
      {{{2, 6}, {40, 1}, {41, 3}},
       "4_1",
       60,
       "4_1(60%) Problem with projecting(10%) IN(4" + many,
       Zeros(11) + "4_1 " + Zeros(19) + "40"},
      {{}, "-2", 0, "", "EMPTY KNOTS TABLE in GIVETHENAME...()"},
      {{{2, 50}, {1, 50}},
       "-1",
       50,
       "3_1(50%) 4_1(50%) ",
       Zeros(14) + "3_1,4_1 " + Zeros(16) + "0"},
      {{{41, 5}}, "-2", 100, "IN(5" + many, Zeros(31) + "100"},
      {{{0, 10}}, "01", 0, "01(100%) ", "01"},
      {{{1, 1}, {0, 999}}, "01", 0, "01(99%) 3_1(0%) ", Zeros(31) + "0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.list);
    int counts[42] = {};
    for (const auto& [ordinal, count] : c.counts)
      counts[ordinal] = count;
    EXPECT_EQ(GiveTheNameOfKnotOne(counts), c.verdict);
    EXPECT_EQ(GiveTheStrenghtOfKnot(counts), c.strength);
    EXPECT_EQ(GiveTheNameOfKnot_allProj(counts), c.list);
    EXPECT_EQ(GiveTheNameOfKnot_toMatrix(counts), c.bands);
  }
}

TEST(Verdict, PolynomialTally) {
  using Tally = std::map<std::string, float>;
  // The running total is cut at every step: 1.5 -> 1, 1 + 2.5 -> 3; largest 2.5 -> 2.
  EXPECT_EQ(GiveTheStrenghtOfKnot_poly(Tally{{"1", 1.5f}, {"x", 2.5f}}), 66);
  EXPECT_EQ(GiveTheStrenghtOfKnot_poly(Tally{}), 0);
  EXPECT_EQ(GiveThePolies_toDict({{"1", 3}, {"1 - t + t^2", 1}}),
            "{'1': 0.75, '1 - t + t^2': 0.25}");
  EXPECT_EQ(GiveThePolies_toDict({{"1", 1}}), "'1'");
  EXPECT_EQ(GiveThePolies_toDict({{"b", 1}, {"a", 1}, {"c", 2}}),
            "{'c': 0.5, 'a': 0.25, 'b': 0.25}");
  EXPECT_EQ(GiveThePolies_toDict({{"a", 2}, {"b", 1}}), "{'a': 0.667, 'b': 0.333}");
}
