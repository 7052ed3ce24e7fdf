// Polynomial utilities on the documented edge cases: the normal form, equality, wrapping
// evaluation and the console text of a polynomial.
#include <climits>
#include <sstream>

#include <gtest/gtest.h>

#include "alexander/polynomial.hpp"

using Poly = boost::math::tools::polynomial<int>;

namespace {

// A polynomial holding exactly these coefficients, trailing zeros included.
Poly Raw(std::vector<int> c) {
  Poly p;
  p.data() = std::move(c);
  return p;
}

} // namespace

TEST(PolyUtils, NormalFormEqualityAndEvaluation) {
  const std::vector<int> cases[][2] = {
      {{}, {}},
      {{0, 0}, {1}},                   // stored zeros stand for the unknot
      {{0, 0, -1, 1, -1}, {1, -1, 1}}, // -t^2 + t^3 - t^4
      {{-3}, {3}},
      {{-1, 0, 3}, {1, 0, -3}}, // no symmetrisation
      {{INT_MIN, 1}, {INT_MIN, -1}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(NormalizePoly(Raw(c[0])).data(), c[1]) << ::testing::PrintToString(c[0]);
  EXPECT_TRUE(EqualPolies(Raw({1, -1, 1}), Raw({1, -1, 1, 0, 0})));
  EXPECT_FALSE(EqualPolies(Raw({1}), Raw({1, 0, 2})));
  EXPECT_TRUE(EqualPolies(Raw({}), Raw({0, 0})));
  EXPECT_FALSE(NonZeroPoly(Raw({0, 0})));
  EXPECT_EQ(CalculatePoly(Raw({1, -1, 1}), -1), 3);
  std::vector<int> t31(32, 0);
  t31[31] = 1;
  EXPECT_EQ(CalculatePoly(Raw(t31), 2), INT_MIN); // 2^31 wraps
}

TEST(PolyUtils, Texts) {
  const std::pair<std::vector<int>, const char*> cases[] = {
      {{0, 1}, "t"},
      {{0, -1}, " - t"},
      {{-1}, "-1"},
      {{}, "0"},
      {{0, 0}, "0"},
      {{1, -1, 1}, "1 - t + t^2"},
      {{2, -3}, "2 - 3*t"},
      {{0, -1, 1}, " - t + t^2"},
      {{3, 0, -2}, "3 - 2*t^2"},
  };
  for (const auto& [c, text] : cases) {
    std::ostringstream out;
    std::streambuf* old = std::cout.rdbuf(out.rdbuf());
    ShowPoly(Raw(c));
    std::cout.rdbuf(old);
    EXPECT_EQ(out.str(), text);
  }
}
