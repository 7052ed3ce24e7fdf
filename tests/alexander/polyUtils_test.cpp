// Polynomial utilities: the normal form, zero and equality tests, wrapping evaluation and the
// exact console texts of a polynomial and a matrix.
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

template <typename F> std::string Stdout(F f) {
  std::ostringstream text;
  std::streambuf* old = std::cout.rdbuf(text.rdbuf());
  f();
  std::cout.rdbuf(old);
  return text.str();
}

} // namespace

TEST(PolyUtils, NormalForm) {
  struct Case {
    std::vector<int> in, out;
  };
  const Case cases[] = {
      {{}, {}},
      {{0, 0}, {1}},                   // stored zeros stand for the unknot
      {{0, 0, -1, 1, -1}, {1, -1, 1}}, // -t^2 + t^3 - t^4
      {{-3}, {3}},
      {{0, 2, -3, 2, 0, 0}, {2, -3, 2}},
      {{-1, 0, 3}, {1, 0, -3}}, // no symmetrisation
      {{INT_MIN, 1}, {INT_MIN, -1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.in));
    EXPECT_EQ(NormalizePoly(Raw(c.in)).data(), c.out);
  }
}

TEST(PolyUtils, ZeroAndEquality) {
  EXPECT_FALSE(NonZeroPoly(Raw({})));
  EXPECT_FALSE(NonZeroPoly(Raw({0, 0})));
  EXPECT_TRUE(NonZeroPoly(Raw({0, 0, 1})));
  EXPECT_TRUE(EqualPolies(Raw({1, -1, 1}), Raw({1, -1, 1, 0, 0})));
  EXPECT_TRUE(EqualPolies(Raw({1, -1, 1, 0}), Raw({1, -1, 1})));
  EXPECT_FALSE(EqualPolies(Raw({1}), Raw({1, 0, 2})));
  EXPECT_FALSE(EqualPolies(Raw({1, 0, 2}), Raw({1})));
  EXPECT_FALSE(EqualPolies(Raw({1, 2}), Raw({1, 3})));
  EXPECT_TRUE(EqualPolies(Raw({}), Raw({})));
  EXPECT_TRUE(EqualPolies(Raw({}), Raw({0, 0})));
  EXPECT_FALSE(EqualPolies(Raw({}), Raw({1})));
}

TEST(PolyUtils, EvaluationWraps) {
  EXPECT_EQ(CalculatePoly(Raw({1, -1, 1}), -1), 3);
  EXPECT_EQ(CalculatePoly(Raw({}), 5), 0);
  EXPECT_EQ(CalculatePoly(Raw({1, -1, 1, -1, 1}), -3), 121);
  std::vector<int> t31(32, 0), t32(33, 0);
  t31[31] = 1;
  t32[32] = 1;
  t32[0] = 7;
  EXPECT_EQ(CalculatePoly(Raw(t31), 2), INT_MIN);
  EXPECT_EQ(CalculatePoly(Raw(t32), 2), 7);
  EXPECT_EQ(CalculatePoly(Raw({INT_MAX, 1}), 1), INT_MIN);
}

TEST(PolyUtils, Texts) {
  struct Case {
    std::vector<int> c;
    const char* text;
  };
  const Case cases[] = {
      {{0, 1}, "t"},
      {{0, -1}, " - t"},
      {{-1}, "-1"},
      {{}, "0"},
      {{0, 0}, "0"},
      {{1}, "1"},
      {{1, -1, 1}, "1 - t + t^2"},
      {{2, -3}, "2 - 3*t"},
      {{0, -1, 1}, " - t + t^2"},
      {{-2, 1}, "-2 + t"},
      {{0, 2}, "2*t"},
      {{3, 0, -2, 0, 5}, "3 - 2*t^2 + 5*t^4"},
      {{0, 0, 12, -1}, "12*t^2 - t^3"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Stdout([&] { ShowPoly(Raw(c.c)); }), c.text);
  }
  PolyMatrix m = {{Raw({1}), Raw({0, 1})}, {Raw({}), Raw({-1})}};
  EXPECT_EQ(Stdout([&] { ShowMatrix(m); }), "Macierz:\n1,   t,   \n0,   -1,   \n");
  EXPECT_EQ(Stdout([] { ShowMatrix({}); }), "Macierz:\n");
}
