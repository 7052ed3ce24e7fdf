// Verdicts and result texts over a counts array (name, strength, outcome list, band row) and
// over a polynomial tally (strength, dictionary), on the worked examples and their edges.
#include <climits>
#include <cmath>
#include <limits>
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
  struct Case {
    const char* name;
    std::map<int, int> counts; // ordinal -> count
    std::string verdict;
    int strength;
    std::string list;
    std::string bands;
  };
  const Case cases[] = {
      {"70 trefoils, 30 unknots",
       {{1, 70}, {0, 30}},
       "3_1",
       70,
       "3_1(70%) 01(30%) ",
       Zeros(7) + "3_1 " + Zeros(23) + "0"},
      {"figure-eight with failed and inside closures",
       {{2, 6}, {40, 1}, {41, 3}},
       "4_1",
       60,
       "4_1(60%) Problem with projecting(10%) IN(4" + many,
       Zeros(11) + "4_1 " + Zeros(19) + "40"},
      {"worked band example",
       {{1, 60}, {2, 25}, {0, 10}, {41, 5}},
       "3_1",
       60,
       "3_1(60%) 4_1(25%) 01(10%) IN(5) ",
       "0 0 0 0 0 0 0 0 0 0 0 3_1 0 0 0 0 0 0 0 0 0 0 4_1 0 0 0 0 0 0 0 0 5"},
      {"all zero", {}, "-2", 0, "", "EMPTY KNOTS TABLE in GIVETHENAME...()"},
      {"50/50 is a mixture, ties by ordinal",
       {{2, 50}, {1, 50}},
       "-1",
       50,
       "3_1(50%) 4_1(50%) ",
       Zeros(14) + "3_1,4_1 " + Zeros(16) + "0"},
      {"50.9 percent truncates to 50",
       {{1, 509}, {0, 491}},
       "-1",
       50,
       "3_1(50%) 01(49%) ",
       Zeros(14) + "3_1 " + Zeros(16) + "0"},
      {"a percentage on a threshold stays out of the cell above",
       {{1, 51}, {2, 48}, {0, 1}},
       "3_1",
       51,
       "3_1(51%) 4_1(48%) 01(1%) ",
       Zeros(14) + "3_1 4_1 " + Zeros(15) + "0"},
      {"only inside", {{41, 5}}, "-2", 100, "IN(5" + many, Zeros(31) + "100"},
      {"only failed projections",
       {{40, 2}},
       "-2",
       100,
       "Problem with projecting(100%) IN(2" + many,
       Zeros(31) + "100"},
      {"unknot only", {{0, 10}}, "01", 0, "01(100%) ", "01"},
      {"half unknot, half inside",
       {{0, 5}, {41, 5}},
       "-1",
       50,
       "01(50%) IN(5" + many,
       Zeros(31) + "50"},
      {"single knot at 100 percent", {{4, 7}}, "5_2", 100, "5_2(100%) ", "5_2 " + Zeros(30) + "0"},
      {"no match is named -3",
       {{39, 3}, {0, 1}},
       "-3",
       75,
       "-3(75%) 01(25%) ",
       Zeros(6) + "-3 " + Zeros(24) + "0"},
      {"a knot under 1 percent is not listed",
       {{1, 1}, {0, 999}},
       "01",
       0,
       "01(99%) 3_1(0%) ",
       Zeros(31) + "0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    int counts[42] = {};
    for (const auto& [ordinal, count] : c.counts)
      counts[ordinal] = count;
    EXPECT_EQ(GiveTheNameOfKnotOne(counts), c.verdict);
    EXPECT_EQ(GiveTheStrenghtOfKnot(counts), c.strength);
    EXPECT_EQ(GiveTheNameOfKnot_allProj(counts), c.list);
    EXPECT_EQ(GiveTheNameOfKnot_toMatrix(counts), c.bands);
  }
}

TEST(Verdict, EqualCountsKeepOrdinalOrder) {
  // Thirty equal counts: enough elements for an unstable sort to reorder them.
  FillKnotsArray();
  int counts[42] = {};
  std::string list, cell;
  for (int i = 1; i <= 30; ++i) {
    counts[i] = 1;
    list += knots[i].name + "(3%) ";
    cell += (i > 1 ? "," : "") + knots[i].name;
  }
  EXPECT_EQ(GiveTheNameOfKnot_allProj(counts), list);
  EXPECT_EQ(GiveTheNameOfKnot_toMatrix(counts), Zeros(30) + cell + " 0");
}

TEST(Verdict, PolynomialTally) {
  using Tally = std::map<std::string, float>;
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_EQ(GiveTheStrenghtOfKnot_poly(Tally{{"1", 3}, {"1 - t + t^2", 1}}), 25);
  // The running total is cut at every step: 1.5 -> 1, 1 + 2.5 -> 3; largest 2.5 -> 2.
  EXPECT_EQ(GiveTheStrenghtOfKnot_poly(Tally{{"1", 1.5f}, {"x", 2.5f}}), 66);
  EXPECT_EQ(GiveTheStrenghtOfKnot_poly(Tally{}), 0);
  EXPECT_EQ(GiveTheStrenghtOfKnot_poly(Tally{{"x", inf}}), 0);

  // Twenty equal weights stay in key order.
  Tally equal;
  std::string dict = "{";
  for (char c = 'a'; c < 'a' + 20; ++c) {
    equal[std::string(1, c)] = 1;
    dict += std::string(c == 'a' ? "" : ", ") + "'" + c + "': 0.05";
  }
  EXPECT_EQ(GiveThePolies_toDict(equal), dict + "}");

  struct Case {
    Tally tally;
    std::string text;
  };
  const Case cases[] = {
      {{{"1", 3}, {"1 - t + t^2", 1}}, "{'1': 0.75, '1 - t + t^2': 0.25}"},
      {{{"1", 1}}, "'1'"},
      {{{"k", 2}}, "{'k': 1}"},
      {{}, "{}"},
      {{{"b", 1}, {"a", 1}, {"c", 2}}, "{'c': 0.5, 'a': 0.25, 'b': 0.25}"},
      {{{"a", 1}, {"b", 1}, {"c", 1}}, "{'a': 0.333, 'b': 0.333, 'c': 0.333}"},
      {{{"a", 2}, {"b", 1}}, "{'a': 0.667, 'b': 0.333}"},
      {{{"a", 1}, {"b", -1}}, "{'a': inf, 'b': -inf}"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(GiveThePolies_toDict(c.tally), c.text);
  }
}
