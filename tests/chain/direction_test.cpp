// The knot of one closed chain in one direction: exact and numeric ways, the crossing bound,
// degenerate projections and the texts of the raw determinant.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "chain/direction.hpp"
#include "crossings/crossings.hpp"
#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"

namespace {

using Poly = boost::math::tools::polynomial<int>;

int CrossingsInDirection(const std::vector<ChainAtom>& chain, int direction) {
  std::vector<Edge> edges = ProjectChain(chain, direction, true);
  std::vector<Crossing> crossings;
  EXPECT_EQ(FindAllCrossings(edges, crossings, true), 0);
  return static_cast<int>(crossings.size());
}

// A square whose first atom is doubled: the zero-length first edge makes every projection
// degenerate.
std::vector<ChainAtom> DegenerateSquare() {
  return {{0, 0, 0, 1}, {0, 0, 0, 2}, {10, 1, 2, 3}, {11, 12, -1, 4}, {-1, 10, 1, 5}};
}

struct NamedCurve {
  const char* name;
  std::vector<ChainAtom> chain;
  int ordinal;
  std::string coefficients; // normal form, constant term first
  std::string atTwelve;     // numeric determinant at t = 12, powers of 12 divided out
};

std::vector<NamedCurve> Curves() {
  return {
      {"circle", zoo::RandomlyRotated(zoo::Circle(40), 1), 0, "1", "1"},
      {"trefoil", zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 120), 2), 1, "1 -1 1", "133"},
      {"figure-eight", zoo::RandomlyRotated(zoo::FigureEight(150), 3), 2, "1 -3 1", "109"},
      {"cinquefoil", zoo::RandomlyRotated(zoo::TorusKnot(2, 5, 200), 4), 3, "1 -1 1 -1 1", "19141"},
  };
}

TEST(Direction, NamesKnownCurvesBothWays) {
  for (const NamedCurve& c : Curves()) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(FindTheKnotInParticularDirection(c.chain, 0), c.ordinal);
    EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(c.chain, 16, false), c.coefficients);
    EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(c.chain, 16, true), c.atTwelve);
  }
}

TEST(Direction, CrossingBoundIsInclusive) {
  std::vector<ChainAtom> trefoil = zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 120), 5);
  const int n = CrossingsInDirection(trefoil, 0);
  ASSERT_GE(n, 3);

  Poly poly{7};
  double value = -1.0;
  // Exactly n allowed: the exact way; `value` is left alone.
  EXPECT_TRUE(FindTheKnotInParticularDirection_poly(trefoil, poly, value, 0, n));
  EXPECT_EQ(poly, Poly({1, -1, 1}));
  EXPECT_EQ(value, -1.0);
  // One fewer: the numeric way; `poly` is left alone.
  poly = Poly{7};
  EXPECT_FALSE(FindTheKnotInParticularDirection_poly(trefoil, poly, value, 0, n - 1));
  EXPECT_EQ(poly, Poly{7});
  EXPECT_EQ(value, 133.0);
  // The string form does not say which way was taken: too many crossings give "".
  EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(trefoil, n - 1, false), "");
  EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(trefoil, n, false), "1 -1 1");
}

TEST(Direction, NumericWayAboveSixteenCrossings) {
  // T(2,17) has crossing number 17: every diagram of it goes the numeric way, whose lookup by
  // the table's values at t = -3 names no knot here (39) or sees a non-integer (40).
  std::vector<ChainAtom> chain = zoo::RandomlyRotated(zoo::TorusKnot(2, 17, 680), 6);
  ASSERT_GE(CrossingsInDirection(chain, 0), 17);
  Poly poly{5};
  double value = 0.0;
  EXPECT_FALSE(FindTheKnotInParticularDirection_poly(chain, poly, value, 0, 16));
  EXPECT_EQ(poly, Poly{5});
  EXPECT_GT(value, 1.0);
  int ordinal = FindTheKnotInParticularDirection(chain, 0);
  EXPECT_TRUE(ordinal == 39 || ordinal == 40) << ordinal;
  EXPECT_EQ(FindTheKnotInParticularDirection_poly_string(chain, 16, false), "");
}

TEST(Direction, DegenerateProjectionLeavesOutputsAlone) {
  std::vector<ChainAtom> chain = DegenerateSquare();
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
  std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("PROBLEM with one projection."), std::string::npos);
}

} // namespace
