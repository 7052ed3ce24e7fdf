// Crossing detection: the degenerate configurations and their messages, over/under and
// handedness, pair numbering and order along edges, arc numbering, and the trefoil's diagram.
#include <sstream>

#include <gtest/gtest.h>

#include "crossings/crossings.hpp"
#include "tests/support/curves.hpp"

namespace {

Edge E(double x1, double y1, double x2, double y2, double z1 = 0, double z2 = 0) {
  return Edge{x1, y1, z1, x2, y2, z2, {}, 0};
}

// Collects what is written to std::clog while alive.
struct ClogCapture {
  std::ostringstream text;
  std::streambuf* old = std::clog.rdbuf(text.rdbuf());
  ~ClogCapture() { std::clog.rdbuf(old); }
};

const char* kCollapse = "PROBLEM with one projection. Two segments are parallel and partially "
                        "colaps, or one segment is degenerated.\n";
const char* kPoint = "PROBLEM with one projection. One segment is degenerated.\n";
const char* kParallel = "PROBLEM with one projection. Two segments are parallel and partially "
                        "colaps.\n";
const char* kEnd =
    "PROBLEM with one projection. Two segments cross exactly at the end of one of them.\n";

} // namespace

TEST(Crossings, PairTest) {
  struct Case {
    const char* name;
    Edge a, b;
    int result;
    double t, s;
    const char* message;
  };
  const Case cases[] = {
      {"ordinary X", E(0, 0, 4, 0), E(1, -1, 1, 1), 1, 0.75, 0.5, ""},
      {"first vertical", E(1, -1, 1, 1), E(0, 0, 4, 0), 1, 0.5, 0.75, ""},
      {"t = 1e-12 is ordinary", E(1, 0, 0, 0), E(1e-12, -1, 1e-12, 1), 1, 1e-12, 0.5, ""},
      {"apart", E(0, 0, 1, 0), E(2, -1, 2, 1), 0, 0, 0, ""},
      {"two vertical lines", E(0, 0, 0, 1), E(1, 0, 1, 1), 0, 0, 0, ""},
      {"one vertical line, disjoint", E(0, 0, 0, 1), E(0, 2, 0, 3), 0, 0, 0, ""},
      {"one vertical line, touching", E(0, 0, 0, 1), E(0, 1, 0, 3), -1, 0, 0, kCollapse},
      {"two equal points", E(0, 0, 0, 0), E(0, 0, 0, 0), -1, 0, 0, kCollapse},
      {"first is a point", E(1, 0, 1, 0), E(0, 0, 2, 0), -1, 0, 0, kPoint},
      {"second is a point on the first", E(0, 0, 2, 2), E(1, 1, 1, 1), 0, 0, 0, ""},
      {"parallel lines", E(0, 0, 1, 1), E(0, 1, 1, 2), 0, 0, 0, ""},
      {"collinear diagonal, disjoint", E(0, 0, 1, 1), E(2, 2, 3, 3), 0, 0, 0, ""},
      {"collinear horizontal, far apart", E(0, 0, 1, 0), E(5, 0, 6, 0), -1, 0, 0, kParallel},
      {"at the start of b", E(0, 0, 2, 0), E(1, 0, 1, 1), -1, 0, 0, kEnd},
      {"at the end of a", E(-1, 0, 0, 0), E(0, -1, 0, 1), -1, 0, 0, kEnd},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ClogCapture log;
    int result = 7;
    std::pair<double, double> ts = TwoEdgesCrossed(c.a, c.b, result);
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(ts.first, c.t);
    EXPECT_EQ(ts.second, c.s);
    EXPECT_EQ(log.text.str(), c.message);
  }
}

TEST(Crossings, OverAndHandedness) {
  // Heights interpolated at the parameters; equal heights make the second edge the upper one.
  EXPECT_TRUE(FirstEdgeOver(E(0, 0, 1, 0, 2, 0), E(0, 0, 1, 0, 0, 0), 0.5, 0.5));
  EXPECT_FALSE(FirstEdgeOver(E(0, 0, 1, 0, 0, 2), E(0, 0, 1, 0, 1, 1), 0.5, 0.3));
  EXPECT_FALSE(FirstEdgeOver(E(0, 0, 1, 0, 1, 1), E(0, 0, 1, 0, 0, 2), 0.3, 0.5));
  // Under strand counter-clockwise from the over strand: 1; clockwise: 0.
  EXPECT_TRUE(TypeOfCrossing(E(-1, 0, 1, 0), E(0, -1, 0, 1)));
  EXPECT_FALSE(TypeOfCrossing(E(0, -1, 0, 1), E(-1, 0, 1, 0)));
  EXPECT_FALSE(TypeOfCrossing(E(-1, 0, 1, 0), E(0, 1, 0, -1)));
}

TEST(Crossings, NumberingOrderAndArcs) {
  // Edge 0 runs along the x axis and is crossed by edge 2 (above it) at x = 1 and by edge 3
  // (below it) at x = -1; edge 1 crosses nothing.
  std::vector<Edge> edges = {E(-2, 0, 2, 0), E(10, 10, 11, 10), E(1, -1, 1, 1, 1, 1),
                             E(-1, -1, -1, 1, -1, -1)};
  std::vector<Crossing> crossings;
  ASSERT_EQ(FindAllCrossings(edges, crossings, false), 0);
  ASSERT_EQ(crossings.size(), 2u);
  EXPECT_GE(crossings.capacity(), 20u);
  // Numbered by pair (0, 2) then (0, 3); edge 0 lists them by descending parameter.
  EXPECT_EQ(crossings[0].over, 2);
  EXPECT_EQ(crossings[0].under, 0);
  EXPECT_EQ(crossings[1].over, 0);
  EXPECT_EQ(crossings[1].under, 3);
  ASSERT_EQ(edges[0].crossings.size(), 2u);
  EXPECT_EQ(edges[0].crossings[0].index, 1);
  EXPECT_EQ(edges[0].crossings[0].t, 0.75);
  EXPECT_EQ(edges[0].crossings[1].index, 0);
  EXPECT_EQ(edges[0].crossings[1].t, 0.25);
  EXPECT_EQ(edges[2].crossings[0].t, 0.5);
  EXPECT_EQ(FillCrossings(edges, crossings), 0);
  // Walk: edge 0 passes over crossing 1 on arc 0, under crossing 0 (arc 0 -> 1); edge 2 passes
  // over crossing 0 on arc 1; edge 3 under crossing 1 (arc 1 -> wraps to 0).
  EXPECT_EQ(crossings[1].arcOver, 0);
  EXPECT_EQ(crossings[0].arcIn, 0);
  EXPECT_EQ(crossings[0].arcOut, 1);
  EXPECT_EQ(crossings[0].arcOver, 1);
  EXPECT_EQ(crossings[1].arcIn, 1);
  EXPECT_EQ(crossings[1].arcOut, 0);

  // Without the closing pair the last and first edges are tested; equal heights: j is over.
  std::vector<Edge> three = {E(-1, 0, 1, 0), E(5, 5, 6, 5), E(0, -1, 0, 1)};
  std::vector<Crossing> none;
  EXPECT_EQ(FindAllCrossings(three, none, true), 0);
  EXPECT_TRUE(none.empty());
  std::vector<Crossing> one;
  ASSERT_EQ(FindAllCrossings(three, one, false), 0);
  ASSERT_EQ(one.size(), 1u);
  EXPECT_EQ(one[0].over, 2);
  FillCrossings(three, one);
  EXPECT_EQ(one[0].arcOver, 0);
  EXPECT_EQ(one[0].arcIn, 0);
  EXPECT_EQ(one[0].arcOut, 0);

  std::vector<Edge> two = {E(-1, 0, 1, 0), E(0, -1, 0, 1)};
  std::vector<Crossing> empty;
  EXPECT_EQ(FindAllCrossings(two, empty, false), 0);
  EXPECT_TRUE(empty.empty());
}

TEST(Crossings, DegenerateProjectionStopsAtFirstProblem) {
  // Pair (0, 2) crosses, pairs (0, 3) and (0, 4) each touch an end: one message, result 1,
  // the crossing found so far kept.
  std::vector<Edge> edges = {E(-2, 0, 2, 0), E(9, 9, 9, 8), E(1, -1, 1, 1), E(0, 0, 0, 1),
                             E(-1, 0, -1, 1)};
  std::vector<Crossing> crossings;
  ClogCapture log;
  EXPECT_EQ(FindAllCrossings(edges, crossings, false), 1);
  EXPECT_EQ(log.text.str(), kEnd);
  EXPECT_EQ(crossings.size(), 1u);
}

TEST(Crossings, TrefoilDiagram) {
  // The (2,3) torus knot seen along its axis: three crossings of one handedness, mirrored by
  // flipping the heights; every under-passing moves to the next arc.
  int signs[2];
  for (double mirror : {1.0, -1.0}) {
    SCOPED_TRACE(mirror);
    std::vector<ChainAtom> chain = zoo::TorusKnot(2, 3, 60);
    std::vector<Edge> edges;
    for (size_t i = 0; i < chain.size(); ++i) {
      const ChainAtom& p = chain[i];
      const ChainAtom& q = chain[(i + 1) % chain.size()];
      edges.push_back(E(p.x, p.y, q.x, q.y, mirror * p.z, mirror * q.z));
    }
    std::vector<Crossing> crossings;
    ASSERT_EQ(FindAllCrossings(edges, crossings, true), 0);
    ASSERT_EQ(crossings.size(), 3u);
    FillCrossings(edges, crossings);
    for (const Crossing& c : crossings) {
      EXPECT_EQ(c.sign, crossings[0].sign);
      EXPECT_EQ(c.arcOut, (c.arcIn + 1) % 3);
      EXPECT_NE(c.arcOver, c.arcIn);
      EXPECT_NE(c.arcOver, c.arcOut);
    }
    signs[mirror > 0] = crossings[0].sign;
  }
  EXPECT_NE(signs[0], signs[1]);
}
