// The numeric determinant: agreement with the exact one, elimination with its tolerances,
// factors of t divided out, the integer reduction and the lookup at t = -3.
#include <cmath>
#include <cstdlib>
#include <limits>
#include <tuple>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "alexander/determinant.hpp"
#include "alexander/polynomial.hpp"
#include "knots/whichKnot.hpp"
#include "tests/support/crossing_lists.hpp"

// At t = -1 nothing is divided out: the knot determinant, |Alexander polynomial at -1|.
TEST(DetDouble, AgreesWithTheExactDeterminantAtMinusOne) {
  std::mt19937 rng(99);
  for (int n = 2; n <= 12; ++n) {
    const std::vector<Crossing> crossings = zoo::RandomArcList(n, rng);
    std::vector<std::vector<double>> D = CreateFoxMatrix_double(crossings, -1);
    const int exact = CalculatePoly(det_poly(CreateFoxMatrix(crossings)), -1);
    EXPECT_NEAR(std::fabs(det_double(D, -1)), std::abs(exact), 1e-6) << n;
  }
}

TEST(DetDouble, Cases) {
  using M = std::vector<std::vector<double>>;
  const std::tuple<M, int, double> cases[] = {
      {{}, 12, 1.0},                                                     // 1 is not divisible by 12
      {{{144}}, 12, 1.0},                                                // divides out twice
      {{{11.996}}, 12, 11.996 / 12},                                     // divisible within 0.005
      {{{1e-6, 1}, {-1e-5, 2}}, 12, 0.0},                                // all-tiny pivot column
      {{{1200000000.004, 0}, {0, 3}}, 12, 1200000000.004 / 12 * 3 / 12}, // rescaled above 1e8
      {{{-7}}, -1, 7.0}, // |t| <= 1 divides nothing out
      {{{std::numeric_limits<double>::infinity()}}, 12, std::numeric_limits<double>::infinity()},
  };
  for (auto [matrix, t, expected] : cases)
    EXPECT_DOUBLE_EQ(det_double(matrix, t), expected) << matrix.size();
  const std::vector<Crossing> trefoil = {
      {0, 0, 2, 0, 1, 0}, {0, 0, 0, 1, 2, 0}, {0, 0, 1, 2, 0, 0}};
  M trefoilAt12 = CreateFoxMatrix_double(trefoil, 12);
  EXPECT_DOUBLE_EQ(det_double(trefoilAt12, 12), 133.0); // |1 - 12 + 144|
}

TEST(DetDouble, ReductionAndLookup) {
  EXPECT_EQ(Normalize_det_double(-18.4, 3), 2);
  EXPECT_EQ(Normalize_det_double(1e6, 10), 1);
  EXPECT_EQ(Normalize_det_double(-9.0, -1), 9); // d = 0, +-1 divide nothing out
  FillKnotsArray();
  const std::pair<double, int> lookups[] = {{7.5, 40},  {63.0, 39}, {13.000004, 1},
                                            {-13.0, 1}, {5.0, 9},   {std::nan(""), 40}};
  for (const auto& [x, ordinal] : lookups)
    EXPECT_EQ(WhichKnotDouble_OrdNr(x), ordinal) << x;
  EXPECT_EQ(GivePolyByValM3(169.0).data(), std::vector<int>({1, -2, 3, -2, 1}));
}
