// The knot of one closed chain in one direction (exact and numeric ways, the crossing bound,
// degenerate projections), and the vote over closures: passes per method, one vote a pass.
#include <cstdlib>
#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "chain/direction.hpp"
#include "chain/manyClosures.hpp"
#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/invariants.hpp"

namespace {

using Poly = boost::math::tools::polynomial<int>;

TEST(Direction, NamesKnownCurvesBothWays) {
  const struct {
    const char* name;
    std::vector<ChainAtom> chain;
    int ordinal;
    std::string coefficients; // normal form, constant term first
    std::string atTwelve;     // numeric determinant at t = 12, powers of 12 divided out
  } cases[] = {
      {"circle", zoo::RandomlyRotated(zoo::Circle(40), 1), 0, "1", "1"},
      {"trefoil", zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 120), 2), 1, "1 -1 1", "133"},
      {"figure-eight", zoo::RandomlyRotated(zoo::FigureEight(150), 3), 2, "1 -3 1", "109"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(FindTheKnotInParticularDirection(c.chain, 0), c.ordinal);
    EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(c.chain, 16, false), c.coefficients);
    EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(c.chain, 16, true), c.atTwelve);
  }
}

TEST(Direction, CrossingBoundIsInclusive) {
  std::vector<ChainAtom> trefoil = zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 120), 5);
  const int n = zoo::CountCrossings(ProjectChain(trefoil, 0, true));
  ASSERT_GE(n, 3);
  Poly poly{7};
  double value = -1.0;
  // Exactly n allowed: the exact way, `value` left alone; one fewer: the numeric way.
  EXPECT_TRUE(FindTheKnotInParticularDirection_poly(trefoil, poly, value, 0, n));
  EXPECT_EQ(poly, Poly({1, -1, 1}));
  EXPECT_EQ(value, -1.0);
  poly = Poly{7};
  EXPECT_FALSE(FindTheKnotInParticularDirection_poly(trefoil, poly, value, 0, n - 1));
  EXPECT_EQ(poly, Poly{7});
  EXPECT_EQ(value, 133.0);
  EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(trefoil, n - 1, false), "");
}

TEST(Direction, NumericWayAboveSixteenCrossings) {
  // T(2,17) has crossing number 17: every diagram of it goes the numeric way, whose lookup by
  // the table's values names no knot here (39) or sees a non-integer (40).
  std::vector<ChainAtom> chain = zoo::RandomlyRotated(zoo::TorusKnot(2, 17, 680), 6);
  ASSERT_GE(zoo::CountCrossings(ProjectChain(chain, 0, true)), 17);
  Poly poly{5};
  double value = 0.0;
  EXPECT_FALSE(FindTheKnotInParticularDirection_poly(chain, poly, value, 0, 16));
  EXPECT_EQ(poly, Poly{5});
  EXPECT_GT(value, 1.0);
  int ordinal = FindTheKnotInParticularDirection(chain, 0);
  EXPECT_TRUE(ordinal == 39 || ordinal == 40) << ordinal;
}

TEST(Direction, DegenerateProjectionLeavesOutputsAlone) {
  // The doubled first atom makes a zero-length edge: every projection is degenerate.
  std::vector<ChainAtom> chain = {
      {0, 0, 0, 1}, {0, 0, 0, 2}, {10, 1, 2, 3}, {11, 12, -1, 4}, {-1, 10, 1, 5}};
  Poly poly{1, 2, 3};
  double value = 4.5;
  testing::internal::CaptureStderr();
  EXPECT_TRUE(FindTheKnotInParticularDirection_poly(chain, poly, value, 0, 16));
  EXPECT_EQ(poly, Poly({1, 2, 3}));
  EXPECT_EQ(value, 4.5);
  // The empty polynomial matches no table row.
  EXPECT_EQ(FindTheKnotInParticularDirection(chain, 0), 39);
  EXPECT_EQ(FindTheKnotInParticularDirection_True(chain, 7), 39);
  EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(chain, 16, false), "");
  EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(chain, 16, true), "0");
  EXPECT_NE(testing::internal::GetCapturedStderr().find("PROBLEM with one projection."),
            std::string::npos);
}

// The trefoil cut open with straight tails: the straight closing segment, the outward closure
// and nearly every random closure see a trefoil.
TEST(ManyClosures, PassesPerMethodAndOneVoteEach) {
  const std::vector<ChainAtom> chain = zoo::KnottedCore(zoo::TorusKnot(2, 3, 90), 30, false, 0);
  const struct {
    const char* name;
    int method, closures, passes;
  } cases[] = {
      {"closed chain used as it is: one pass", 0, 500, 1},
      {"deterministic outward closure: one pass", 1, 500, 1},
      {"unknown method, chain left as it is", 7, 6, 6},
      {"negative method compares unsigned: unknown", -1, 4, 4},
      {"random closure, zero asked", 2, 0, 0},
      {"random closure, negative asked", 3, -5, 0},
      {"two random points", 2, 40, 40},
      {"one random point", 3, 40, 40},
      {"one random direction", 4, 40, 40},
  };
  std::srand(12);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    int counts[42];
    std::fill(counts, counts + 42, 12345); // must be zeroed by the call
    EXPECT_EQ(FindOneKnot(chain, counts, c.method, c.closures), 0);
    EXPECT_EQ(std::accumulate(counts, counts + 42, 0), c.passes);
    EXPECT_GE(counts[1], c.passes * 3 / 4);
  }
}

} // namespace
