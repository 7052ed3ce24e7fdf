// The knot table: every row's name and tabulated values (checked against the polynomial's own
// values, with the deliberate deviations listed), refilling, lookups by name and ordinal, and
// the allocation-free lookup against a plain normalise-and-compare loop.
#include <random>

#include <gtest/gtest.h>

#include "alexander/polynomial.hpp"
#include "knots/knotTable.hpp"
#include "knots/whichKnot.hpp"

using Poly = boost::math::tools::polynomial<int>;

namespace {

Poly Raw(std::vector<int> c) {
  Poly p;
  p.data() = std::move(c);
  return p;
}

int ReferenceOrdinal(const Poly& p) {
  Poly normal = NormalizePoly(p);
  for (int i = 0; i < 39; ++i) {
    if (EqualPolies(normal, knots[i].poly))
      return i;
  }
  return 39;
}

} // namespace

TEST(KnotTable, RowsAsTabulated) {
  FillKnotsArray();
  std::string names;
  for (const KnownKnot& k : knots)
    names += k.name + ",";
  EXPECT_EQ(names, "01,3_1,4_1,5_1,5_2,6_1,6_2,6_3,7_1,7_2,7_3,7_4,7_5,7_6,7_7,8_1,8_2,8_3,8_4,8_5,"
                   "8_6,8_7,8_8,8_9,8_10,8_11,8_12,8_13,8_14,8_15,8_16,8_17,8_18,8_19,8_20|3_1#3_1,"
                   "8_21|3_1#4_1,9_1,3_1#5_1,3_1#5_2,-3,Problem with projecting,-2,");
  for (int i = 0; i < 42; ++i) {
    SCOPED_TRACE(i);
    const KnownKnot& k = knots[i];
    const std::vector<int>& c = k.poly.data();
    ASSERT_FALSE(c.empty());
    EXPECT_GT(c[0], 0);
    EXPECT_EQ(std::vector<int>(c.rbegin(), c.rend()), c); // palindromic
    if (i >= 39) {
      EXPECT_EQ(c, std::vector<int>{1});
      EXPECT_EQ(k.valueAtMinus2, 0);
      EXPECT_EQ(k.valueAtMinus3, 0);
      continue;
    }
    // Every searchable polynomial is distinct, so each row names itself.
    EXPECT_EQ(WhichKnot_OrdNr(k.poly), i);
    const bool wrongAtMinus3 = i == 9 || i == 15 || i == 29;
    EXPECT_EQ(k.valueAtMinus3 == CalculatePoly(k.poly, -3), !wrongAtMinus3);
    if (i <= 14) {
      EXPECT_EQ(k.valueAtMinus2 == CalculatePoly(k.poly, -2), i != 12);
    } else if (i != 37) {
      EXPECT_EQ(k.valueAtMinus2, 0);
    }
  }
  EXPECT_EQ(knots[9].valueAtMinus3, 5);
  EXPECT_EQ(knots[15].valueAtMinus3, 17);
  EXPECT_EQ(knots[29].valueAtMinus3, 65);
  EXPECT_EQ(knots[12].valueAtMinus2, 104);
  EXPECT_EQ(knots[37].valueAtMinus2, 112);
  EXPECT_EQ(CalculatePoly(knots[38].poly, -2), 112);
}

TEST(KnotTable, RefillRestoresAndFirstMatchWins) {
  FillKnotsArray();
  knots[5].poly = knots[1].poly; // a duplicate of 3_1 further down: 3_1 still wins
  knots[2].name = "changed";
  knots[37].valueAtMinus2 = 217;
  EXPECT_EQ(WhichKnot_OrdNr(Raw({1, -1, 1})), 1);
  FillKnotsArray();
  EXPECT_EQ(knots[5].poly.data(), (std::vector<int>{2, -5, 2}));
  EXPECT_EQ(knots[2].name, "4_1");
  EXPECT_EQ(knots[37].valueAtMinus2, 112);
  FillKnotsArray();
  EXPECT_EQ(WhichKnot(Raw({2, -5, 2})), "6_1");
}

TEST(KnotTable, Lookups) {
  FillKnotsArray();
  struct Case {
    std::vector<int> c;
    const char* name;
    int ordinal;
  };
  const Case cases[] = {
      {{1}, "01", 0},
      {{0, 0}, "01", 0}, // stored zeros normalise to 1
      {{0, 0, -1, 1, -1}, "3_1", 1},
      {{1, -1, 1, 0, 0}, "3_1", 1},
      {{2, -5, 7, -5, 2}, "3_1#5_2", 38},
      {{1, -2, 3, -2, 1}, "8_20|3_1#3_1", 34},
      {{-1, 4, -5, 4, -1}, "8_21|3_1#4_1", 35},
      {{1, 1, 1}, "NO", 39},
      {{}, "NO", 39},
      {{3}, "NO", 39},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(WhichKnot(Raw(c.c)), c.name);
    EXPECT_EQ(WhichKnot_OrdNr(Raw(c.c)), c.ordinal);
  }
}

TEST(KnotTable, FastLookupMatchesReference) {
  FillKnotsArray();
  std::mt19937 gen(7);
  std::uniform_int_distribution<int> row(0, 41), coef(-3, 3), shift(0, 3), pad(0, 2);
  for (int trial = 0; trial < 2000; ++trial) {
    std::vector<int> c;
    if (trial % 2 == 0) {
      // A table row times +-t^k with trailing zeros.
      c.assign(shift(gen), 0);
      const int sign = coef(gen) < 0 ? -1 : 1;
      for (int v : knots[row(gen)].poly.data())
        c.push_back(sign * v);
    } else {
      c.resize(pad(gen) + shift(gen));
      for (int& v : c)
        v = coef(gen);
    }
    c.resize(c.size() + pad(gen), 0);
    const Poly p = Raw(c);
    SCOPED_TRACE(::testing::PrintToString(c));
    EXPECT_EQ(KnotOrdinal(p), ReferenceOrdinal(p));
  }
}

TEST(KnotTable, EnsureFilledOnce) {
  EnsureKnotsFilled();
  knots[2].name = "changed";
  EnsureKnotsFilled(); // already done: leaves the table alone
  EXPECT_EQ(knots[2].name, "changed");
  FillKnotsArray();
  EXPECT_EQ(KnotOrdinal(Raw({1, -3, 1})), 2);
}
