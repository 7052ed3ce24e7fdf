// The numeric determinant: the matrix as the polynomial one evaluated at t, elimination with its
// tolerances, factors of t divided out, the integer reduction and the lookup at t = -3.
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "alexander/determinant.hpp"
#include "alexander/polynomial.hpp"
#include "knots/whichKnot.hpp"
#include "tests/support/crossing_lists.hpp"

TEST(DetDouble, MatrixIsThePolynomialMatrixAtT) {
  std::mt19937 rng(99);
  for (int n = 1; n <= 12; ++n) {
    const std::vector<Crossing> crossings = zoo::RandomArcList(n, rng);
    const auto M = CreateFoxMatrix(crossings);
    for (const int t : {12, -3}) {
      const auto D = CreateFoxMatrix_double(crossings, t);
      ASSERT_EQ(D.size(), M.size());
      for (std::size_t k = 0; k < M.size(); ++k) {
        for (int j = 0; j < n; ++j)
          EXPECT_EQ(D[k][j], static_cast<double>(CalculatePoly(M[k][j], t))) << n;
      }
    }
  }
}

TEST(DetDouble, Cases) {
  const double inf = std::numeric_limits<double>::infinity();
  const struct {
    const char* name;
    std::vector<std::vector<double>> M;
    int t;
    double expected;
  } cases[] = {
      {"empty: 1 is not divisible by 12", {}, 12, 1.0},
      {"[[144]] divides out twice", {{144}}, 12, 1.0},
      {"[[11.996]]: divisible within 0.005", {{11.996}}, 12, 11.996 / 12},
      {"[[12.006]] is not", {{12.006}}, 12, 12.006},
      {"row swap, extra column ignored", {{0, 1, 5}, {3, 0, 5}}, 12, 3.0},
      {"all-tiny pivot column", {{1e-6, 1}, {-1e-5, 2}}, 12, 0.0},
      {"rescaling above 1e8", {{1200000000.004, 0}, {0, 3}}, 12, 1200000000.004 / 12 * 3 / 12},
      {"t = -1 divides nothing out", {{-7}}, -1, 7.0},
      {"infinite determinant", {{inf}}, 12, inf},
  };
  for (const auto& c : cases) {
    auto M = c.M;
    EXPECT_DOUBLE_EQ(det_double(M, c.t), c.expected) << c.name;
  }
  const std::vector<Crossing> trefoil = {
      {0, 0, 2, 0, 1, 0}, {0, 0, 0, 1, 2, 0}, {0, 0, 1, 2, 0, 0}};
  auto M = CreateFoxMatrix_double(trefoil, 12);
  EXPECT_DOUBLE_EQ(det_double(M, 12), 133.0); // |1 - 12 + 144|
}

TEST(DetDouble, ReductionAndLookup) {
  EXPECT_EQ(Normalize_det_double(-18.4, 3), 2);
  EXPECT_EQ(Normalize_det_double(63.0, 3), 7);
  EXPECT_EQ(Normalize_det_double(1e6, 10), 1);
  EXPECT_EQ(Normalize_det_double(-9.0, -1), 9); // d = 0, +-1 divide nothing out
  FillKnotsArray();
  const std::pair<double, int> lookups[] = {
      {7.5, 40}, {63.0, 39},  {117.0, 1}, {13.000004, 1},     {-13.0, 1},
      {0.0, 39}, {133.0, 39}, {5.0, 9},   {std::nan(""), 40},
  };
  for (const auto& [x, ordinal] : lookups)
    EXPECT_EQ(WhichKnotDouble_OrdNr(x), ordinal) << x;
  EXPECT_EQ(GivePolyByValM3(169.0).data(), std::vector<int>({1, -2, 3, -2, 1}));
}
