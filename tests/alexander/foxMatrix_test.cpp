// The Alexander matrix of a crossing list: its shape, the general and kink rows for both
// signs, and agreement with its numeric twin at several values of t.
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "alexander/determinant.hpp"
#include "alexander/polynomial.hpp"
#include "tests/support/crossing_lists.hpp"

using Poly = boost::math::tools::polynomial<int>;

namespace {

using Coefficients = std::vector<int>;

std::vector<std::vector<Coefficients>> Coefs(std::vector<std::vector<Poly>> const& M) {
  std::vector<std::vector<Coefficients>> out;
  for (const auto& row : M) {
    out.emplace_back();
    for (const Poly& p : row)
      out.back().push_back(p.data());
  }
  return out;
}

// Row 0 of a three-crossing diagram whose crossing 0 is given; the other two crossings are
// general rows that only fill the matrix.
std::vector<Coefficients> FirstRow(int over, int in, int out, int sign) {
  const std::vector<Crossing> crossings = {
      {0, 0, over, in, out, sign}, {0, 0, 0, 1, 2, 0}, {0, 0, 1, 2, 0, 1}};
  const auto M = CreateFoxMatrix(crossings);
  EXPECT_EQ(M.size(), 2u);
  return Coefs(M).at(0);
}

} // namespace

TEST(CreateFoxMatrix, Shape) {
  EXPECT_TRUE(CreateFoxMatrix({}).empty());
  // One crossing: a = b = c = 0, a 1 x 1 zero matrix whose only row is removed.
  EXPECT_TRUE(CreateFoxMatrix({{0, 0, 0, 0, 0, 0}}).empty());
  EXPECT_TRUE(CreateFoxMatrix({{0, 0, 0, 0, 0, 1}}).empty());
  // Two crossings: the first row only, two entries.
  const auto M = CreateFoxMatrix({{0, 0, 1, 0, 1, 0}, {0, 0, 0, 1, 0, 0}});
  const std::vector<std::vector<Coefficients>> expected = {{{0, 1}, {0, -1}}};
  EXPECT_EQ(Coefs(M), expected);
  EXPECT_EQ(det_poly(M).data(), Coefficients({0, 1}));
}

TEST(CreateFoxMatrix, RowsByCaseAndSign) {
  struct Case {
    const char* name;
    int over, in, out, sign;
    std::vector<Coefficients> row;
  };
  const Coefficients zero, one{1}, minusOne{-1}, t{0, 1}, minusT{0, -1}, oneMinusT{1, -1};
  const Case cases[] = {
      {"general, sign 0", 2, 0, 1, 0, {t, minusOne, oneMinusT}},
      {"general, sign 1 swaps t and -1", 2, 0, 1, 1, {minusOne, t, oneMinusT}},
      {"general, any non-zero sign is 1", 2, 0, 1, -7, {minusOne, t, oneMinusT}},
      {"kink a = b, sign 0", 0, 0, 1, 0, {one, minusOne, zero}},
      {"kink a = b, sign 1", 0, 0, 1, 1, {minusT, t, zero}},
      {"kink a = c, sign 0", 1, 0, 1, 0, {t, minusT, zero}},
      {"kink a = c, sign 1", 1, 0, 1, 1, {minusOne, one, zero}},
      {"kink at the wrap, a = c = 0", 0, 2, 0, 0, {minusT, zero, t}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(FirstRow(c.over, c.in, c.out, c.sign), c.row);
  }
}

// Every row is (1 - t) x_a + t x_b - x_c or (1 - t) x_a - x_b + t x_c with equal arcs merged, so
// its entries sum to zero; and the numeric matrix is the polynomial one evaluated at t.
TEST(CreateFoxMatrix, RowsSumToZeroAndMatchNumericMatrix) {
  std::mt19937 rng(99);
  for (int n = 1; n <= 12; ++n) {
    for (int sample = 0; sample < 20; ++sample) {
      SCOPED_TRACE("n = " + std::to_string(n) + ", sample " + std::to_string(sample));
      const std::vector<Crossing> crossings = zoo::RandomArcList(n, rng);
      const auto M = CreateFoxMatrix(crossings);
      ASSERT_EQ(M.size(), static_cast<std::size_t>(n - 1));
      for (const int t : {12, -3, 2}) {
        const auto D = CreateFoxMatrix_double(crossings, t);
        ASSERT_EQ(D.size(), M.size());
        for (std::size_t k = 0; k < M.size(); ++k) {
          ASSERT_EQ(M[k].size(), static_cast<std::size_t>(n));
          ASSERT_EQ(D[k].size(), static_cast<std::size_t>(n));
          Poly sum;
          for (int j = 0; j < n; ++j) {
            sum += M[k][j];
            EXPECT_EQ(D[k][j], static_cast<double>(CalculatePoly(M[k][j], t)));
          }
          EXPECT_TRUE(sum.data().empty());
        }
      }
    }
  }
}
