// Crossing detection: the degenerate pairs and their messages, and a named zoo of small
// diagrams whose crossings must give the knot's polynomial, the mirror image flipping every sign.
#include <sstream>

#include <gtest/gtest.h>

#include "alexander/polynomial.hpp"
#include "crossings/crossings.hpp"
#include "knots/whichKnot.hpp"
#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"

namespace {

Edge E(double x1, double y1, double x2, double y2) {
  return Edge{x1, y1, 0, x2, y2, 0, {}, 0};
}

} // namespace

TEST(Crossings, PairTest) {
  const std::string problem = "PROBLEM with one projection. ";
  const struct {
    const char* name;
    Edge a, b;
    int result;
    double t, s;
    std::string message;
  } cases[] = {
      {"ordinary X", E(0, 0, 4, 0), E(1, -1, 1, 1), 1, 0.75, 0.5, ""},
      {"first is a point", E(1, 0, 1, 0), E(0, 0, 2, 0), -1, 0, 0,
       problem + "One segment is degenerated.\n"},
      {"collinear, far apart", E(0, 0, 1, 0), E(5, 0, 6, 0), -1, 0, 0,
       problem + "Two segments are parallel and partially colaps.\n"},
      {"at the start of b", E(0, 0, 2, 0), E(1, 0, 1, 1), -1, 0, 0,
       problem + "Two segments cross exactly at the end of one of them.\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::ostringstream log;
    std::streambuf* old = std::clog.rdbuf(log.rdbuf());
    int result = 7;
    const std::pair<double, double> ts = TwoEdgesCrossed(c.a, c.b, result);
    std::clog.rdbuf(old);
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(ts, std::make_pair(c.t, c.s));
    EXPECT_EQ(log.str(), c.message);
  }
}

TEST(Crossings, ZooOfDiagrams) {
  FillKnotsArray();
  const std::pair<const char*, std::vector<ChainAtom>> cases[] = {
      {"01", zoo::TorusKnot(3, 1, 60)}, // winds three times around the hole
      {"3_1", zoo::TorusKnot(2, 3, 60)}, {"5_1", zoo::TorusKnot(2, 5, 80)},
      {"4_1", zoo::FigureEight(80)},     {"8_19", zoo::TorusKnot(3, 4, 120)},
  };
  for (const auto& [name, chain] : cases) {
    for (int direction : {0, 7}) {
      SCOPED_TRACE(std::string(name) + " along " + std::to_string(direction));
      // Heights negated: the mirror image, every crossing in its place with the other sign.
      int signs[2] = {0, 0};
      std::size_t count[2] = {0, 0};
      for (int side : {0, 1}) {
        std::vector<Edge> edges = ProjectChain(chain, direction, false);
        for (Edge& e : edges) {
          e.z1 = side == 0 ? e.z1 : -e.z1;
          e.z2 = side == 0 ? e.z2 : -e.z2;
        }
        std::vector<Crossing> crossings;
        ASSERT_EQ(FindAllCrossings(edges, crossings, true), 0);
        FillCrossings(edges, crossings);
        for (const Crossing& x : crossings)
          signs[side] += x.sign;
        count[side] = crossings.size();
        EXPECT_EQ(WhichKnot(det_poly(CreateFoxMatrix(crossings))), name);
      }
      EXPECT_GT(count[0], 0u);
      EXPECT_EQ(count[0], count[1]);
      EXPECT_EQ(static_cast<std::size_t>(signs[0] + signs[1]), count[0]);
    }
  }
}
