// The numeric determinant: elimination with its tolerances, factors of t divided out, the
// integer reduction and the lookups by the knot table's values at t = -3.
#include <cmath>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "alexander/determinant.hpp"
#include "knots/whichKnot.hpp"

using Poly = boost::math::tools::polynomial<int>;
using Numeric = std::vector<std::vector<double>>;

TEST(DetDouble, Cases) {
  struct Case {
    const char* name;
    Numeric M;
    int t;
    double expected;
  };
  const double inf = std::numeric_limits<double>::infinity();
  const Case cases[] = {
      {"empty: 1 is not divisible by 12", {}, 12, 1.0},
      {"[[12]]", {{12}}, 12, 1.0},
      {"[[24]]", {{24}}, 12, 2.0},
      {"[[-5]]", {{-5}}, 12, 5.0},
      {"[[144]] divides out twice", {{144}}, 12, 1.0},
      {"[[12.004]] is divisible within 0.005", {{12.004}}, 12, 12.004 / 12},
      {"[[11.996]]: remainder near t counts as divisible", {{11.996}}, 12, 11.996 / 12},
      {"[[12.006]] is not", {{12.006}}, 12, 12.006},
      {"extra column ignored", {{2, 5}}, 12, 2.0},
      {"row swap", {{0, 1}, {3, 0}}, 12, 3.0},
      {"all-tiny pivot column", {{1e-6, 1}, {-1e-5, 2}}, 12, 0.0},
      {"singular after elimination", {{1, 2}, {2, 4}}, 12, 0.0},
      {"entries within 1e-5 are not eliminated", {{1, 1}, {1e-6, 1}}, 12, 1.0},
      {"t = -3", {{2, 0}, {0, 27}}, -3, 2.0},
      // Above 1e8, 1.2e9 + 0.004 is divided by 12 before the factor 3 joins; multiplied first,
      // 3.6e9 + 0.012 would be too far from a multiple of 12 to divide.
      {"rescaling above 1e8", {{1200000000.004, 0}, {0, 3}}, 12, 1200000000.004 / 12 * 3 / 12},
      // |t| <= 1 divides nothing out: every value would stay divisible for ever.
      {"t = 1", {{7}}, 1, 7.0},
      {"t = -1", {{-7}}, -1, 7.0},
      {"t = 0", {{7}}, 0, 7.0},
      {"infinite determinant", {{inf}}, 12, inf},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Numeric M = c.M;
    EXPECT_DOUBLE_EQ(det_double(M, c.t), c.expected);
  }
}

TEST(DetDouble, EliminatesInPlace) {
  Numeric M = {{2, 1}, {4, 5}};
  EXPECT_DOUBLE_EQ(det_double(M, 12), 6.0);
  EXPECT_DOUBLE_EQ(M[1][0], 0.0);
  EXPECT_DOUBLE_EQ(M[1][1], 3.0);
}

// Diagrams decided numerically: the trefoil at t = 12 has |1 - 12 + 144| = 133.
TEST(DetDouble, TrefoilAtTwelve) {
  const std::vector<Crossing> trefoil = {
      {0, 0, 2, 0, 1, 0}, {0, 0, 0, 1, 2, 0}, {0, 0, 1, 2, 0, 0}};
  Numeric M = CreateFoxMatrix_double(trefoil, 12);
  EXPECT_DOUBLE_EQ(det_double(M, 12), 133.0);
  Numeric atMinus3 = CreateFoxMatrix_double(trefoil, -3);
  EXPECT_DOUBLE_EQ(det_double(atMinus3, -3), 13.0);
}

TEST(NormalizeDetDouble, Cases) {
  struct Case {
    double x;
    int d;
    int expected;
  };
  const Case cases[] = {
      {-18.4, 3, 2}, {0.4, 3, 0},   {-0.5, 3, 1},   {2.5, 5, 3}, {63.0, 3, 7},
      {81.0, 3, 1},  {1e6, 10, 1},  {24.0, -2, 3},  {7.0, 0, 7}, {-9.0, 1, 9},
      {-9.0, -1, 9}, {12.0, 12, 1}, {-12.0, 12, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.x) + " / " + std::to_string(c.d));
    EXPECT_EQ(Normalize_det_double(c.x, c.d), c.expected);
  }
}

TEST(WhichKnotDouble, OrdinalsByValueAtMinus3) {
  FillKnotsArray();
  struct Case {
    double x;
    int expected;
  };
  const Case cases[] = {
      {7.5, 40},          // not an integer
      {12.5, 40},         // a half is not within 1e-5 of an integer
      {63.0, 39},         // 63 = 7 * 9 looks up 7, which no knot has
      {117.0, 1},         // 13 * 9: the trefoil
      {13.000004, 1},     // within 1e-5
      {12.999996, 1},     // remainder near 1
      {-13.0, 1},         // remainder 0, |round| = 13
      {1.0, 0},           // the unknot
      {0.0, 39},          // a singular matrix reduces to 0, which no knot has
      {133.0, 39},        // the trefoil at t = 12 is as a rule not recognised
      {377.0, 38},        // 3_1#5_2
      {5.0, 9},           // 7_2's stored value
      {std::nan(""), 40}, // not an integer
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.x));
    EXPECT_EQ(WhichKnotDouble_OrdNr(c.x), c.expected);
  }
}

TEST(WhichKnotDouble, PolynomialByValue) {
  FillKnotsArray();
  EXPECT_EQ(GivePolyByValM3(13.0).data(), std::vector<int>({1, -1, 1}));
  EXPECT_EQ(GivePolyByValM3(169.0).data(), std::vector<int>({1, -2, 3, -2, 1}));
  EXPECT_EQ(GivePolyByValM3(13.5).data(), std::vector<int>({1})); // exact comparison only
  EXPECT_EQ(GivePolyByValM3(0.0).data(), std::vector<int>({1}));  // status rows not searched
}

TEST(ShowMatrixDouble, Text) {
  std::ostringstream text;
  std::streambuf* old = std::cout.rdbuf(text.rdbuf());
  ShowMatrix_double({{2, -1.5}, {1e-7, 0}});
  ShowMatrix_double({});
  main2();
  std::cout.rdbuf(old);
  EXPECT_EQ(text.str(), "Macierz:\n2,   -1.5,   \n1e-07,   0,   \nMacierz:\n");
}
