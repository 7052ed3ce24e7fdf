// The in-memory single-chain calls: coefficient vectors in and out, the polynomial utilities,
// the chain print and the routing to the one-direction and many-closure operations.
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entry/entry.hpp"
#include "tests/support/curves.hpp"

namespace {

using Poly = boost::math::tools::polynomial<int>;

std::vector<ChainAtom> Trefoil() {
  return zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 120), 31);
}

// Every projection of this chain is degenerate (a zero-length edge).
std::vector<ChainAtom> Degenerate() {
  return {{0, 0, 0, 1}, {0, 0, 0, 2}, {10, 1, 2, 3}, {11, 12, -1, 4}, {-1, 10, 1, 5}};
}

TEST(InMemory, PolyAppendsToTheCallersVector) {
  struct Case {
    const char* name;
    std::vector<ChainAtom> chain;
    std::vector<int> in;
    std::vector<int> out;
  } cases[] = {
      {"empty vector receives the trefoil", Trefoil(), {}, {1, -1, 1}},
      {"old elements stay in front", Trefoil(), {5, 6}, {5, 6, 1, -1, 1}},
      // A degenerate projection keeps the polynomial built from the vector; trailing zeros
      // drop when it is built.
      {"degenerate keeps the input polynomial",
       Degenerate(),
       {1, -1, 1, 0, 0},
       {1, -1, 1, 0, 0, 1, -1, 1}},
      {"degenerate with an empty vector appends nothing", Degenerate(), {}, {}},
  };
  testing::internal::CaptureStderr();
  for (Case& c : cases) {
    SCOPED_TRACE(c.name);
    double value = -7.0;
    EXPECT_TRUE(FindTheKnot_poly(c.chain, c.in, value));
    EXPECT_EQ(c.in, c.out);
    EXPECT_EQ(value, -7.0);
  }
  testing::internal::GetCapturedStderr();
}

TEST(InMemory, PolynomialCallFallsBackToTheTableAboveSixteenCrossings) {
  Poly poly;
  double value = 0.0;
  EXPECT_TRUE(FindTheKnot_poly_polynomial(Trefoil(), poly, value));
  EXPECT_EQ(poly, Poly({1, -1, 1}));

  // T(2,17) needs at least 17 crossings: the numeric way, and the polynomial of the table row
  // with that value (none here, so the unknot's).
  std::vector<ChainAtom> big = zoo::RandomlyRotated(zoo::TorusKnot(2, 17, 680), 32);
  poly = Poly({3, 3});
  EXPECT_FALSE(FindTheKnot_poly_polynomial(big, poly, value));
  EXPECT_GT(value, 1.0);
  EXPECT_EQ(poly, Poly{1});
}

TEST(InMemory, CalculatesPolyReadsOneZeroPastTheEnd) {
  struct Case {
    std::vector<int> coefficients;
    int t;
    int value;
  } cases[] = {
      {{1, -1, 1}, -1, 3}, {{1, -1, 1, 0, 0}, 2, 3}, {{}, 5, 0}, {{0, 0}, 3, 0}, {{2, 0, 1}, 3, 11},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.coefficients));
    EXPECT_EQ(CalculatesPoly(c.coefficients, c.t), c.value);
  }
}

TEST(InMemory, PrintedTexts) {
  testing::internal::CaptureStdout();
  PrintChain_ToMathematica({});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "{}\n");
  testing::internal::CaptureStdout();
  PrintChain_ToMathematica({{1, 2, 3, 1}, {4.5, -6, 1.23456789, 2}});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "{{1,2,3},{4.5,-6,1.23457},}\n");
  testing::internal::CaptureStdout();
  PrintsPoly(Poly({1, -1, 1}));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "1 - t + t^2");
}

TEST(InMemory, RoutesToTheEngine) {
  EXPECT_EQ(FindTheKnot(Trefoil()), 1);
  EXPECT_EQ(FindTheKnot(zoo::RandomlyRotated(zoo::FigureEight(150), 33)), 2);
  EXPECT_EQ(FindTheKnot_poly_string(Trefoil(), 16, false), "1 -1 1");
  EXPECT_EQ(FindTheKnot_poly_string(Trefoil(), 16, true), "133");

  int counts[42];
  EXPECT_EQ(FindMajorKnot(Trefoil(), counts, 0, 9), 0);
  EXPECT_EQ(counts[1], 1);
  EXPECT_EQ(GiveTheNameOfKnot(counts), "3_1(100%) ");
  int mixed[42] = {};
  mixed[0] = 30;
  mixed[1] = 70;
  EXPECT_EQ(GiveTheNameOfKnot(mixed), "3_1(70%) 01(30%) ");
  // 70 % falls in the eighth band (above 69); 31 bands, then the inside share.
  std::string bands;
  for (int i = 0; i < 31; ++i)
    bands += i == 7 ? "3_1 " : "0 ";
  EXPECT_EQ(GiveTheNameOfKnot_Matrix(mixed), bands + "0");
}

} // namespace
