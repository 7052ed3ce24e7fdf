// Polynomial utilities on the documented edge cases: the normal form, equality, wrapping
// evaluation and the console text of a polynomial.
#include <climits>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "alexander/polynomial.hpp"

using Poly = boost::math::tools::polynomial<int>;

TEST(PolyUtils, NormalFormEqualityEvaluationAndText) {
  // Coefficients as stored, their normal form, and the text of the stored list.
  const std::tuple<std::vector<int>, std::vector<int>, const char*> cases[] = {
      {{}, {}, "0"},
      {{0, 0}, {1}, "0"}, // stored zeros stand for the unknot
      {{0, 0, -1, 1, -1}, {1, -1, 1}, " - t^2 + t^3 - t^4"},
      {{-3}, {3}, "-3"},
      {{-1, 0, 3}, {1, 0, -3}, "-1 + 3*t^2"}, // no symmetrisation
      {{2, -3}, {2, -3}, "2 - 3*t"},
      {{0, 1}, {1}, "t"},
  };
  for (const auto& [stored, normal, text] : cases) {
    SCOPED_TRACE(text);
    Poly p;
    p.data() = stored;
    EXPECT_EQ(NormalizePoly(p).data(), normal);
    EXPECT_TRUE(EqualPolies(NormalizePoly(p), Poly(normal.begin(), normal.end())));
    std::ostringstream out;
    std::streambuf* old = std::cout.rdbuf(out.rdbuf());
    ShowPoly(p);
    std::cout.rdbuf(old);
    EXPECT_EQ(out.str(), text);
  }
  EXPECT_TRUE(EqualPolies(Poly{1, -1, 1}, Poly{1, -1, 1, 0, 0}));
  EXPECT_FALSE(EqualPolies(Poly{1}, Poly{1, 0, 2}));
  EXPECT_EQ(NormalizePoly(Poly{INT_MIN, 1}).data(), std::vector<int>({INT_MIN, -1})); // wraps
  EXPECT_EQ(CalculatePoly(Poly{1, -1, 1}, -1), 3);
  std::vector<int> t31(32, 0);
  t31[31] = 1;
  EXPECT_EQ(CalculatePoly(Poly(t31.begin(), t31.end()), 2), INT_MIN); // 2^31 wraps
}
