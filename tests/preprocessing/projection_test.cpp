// ProjectChain: 60 distinct well-spread directions, any int index (modulo 60), edges of a closed
// diagram, the fewest-crossing ranking under the flag, and use from several threads at once.
#include <cmath>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/invariants.hpp"

namespace {

struct Frame {
  double u[3], v[3], d[3];
};

// The frame of a direction, read off the projection of the origin and the three unit points.
Frame FrameOf(int direction) {
  std::vector<ChainAtom> probe = {{0, 0, 0, 1}, {1, 0, 0, 2}, {0, 1, 0, 3}, {0, 0, 1, 4}};
  // Edge k starts at probe atom k; edge 0 starts at the origin, which projects to 0.
  std::vector<Edge> e = ProjectChain(probe, direction, false);
  Frame f;
  for (int k = 0; k < 3; ++k) {
    f.u[k] = e[k + 1].x1;
    f.v[k] = e[k + 1].y1;
    f.d[k] = e[k + 1].z1;
  }
  return f;
}

double Dot(const double* a, const double* b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

bool SameEdges(const std::vector<Edge>& a, const std::vector<Edge>& b) {
  if (a.size() != b.size())
    return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i].x1 != b[i].x1 || a[i].y1 != b[i].y1 || a[i].z1 != b[i].z1 || a[i].x2 != b[i].x2 ||
        a[i].y2 != b[i].y2 || a[i].z2 != b[i].z2)
      return false;
  return true;
}

TEST(ProjectChain, SixtyDistinctGenericDirections) {
  std::vector<Frame> frames;
  for (int d = 0; d < 60; ++d)
    frames.push_back(FrameOf(d));
  for (int i = 0; i < 60; ++i) {
    SCOPED_TRACE(i);
    const Frame& f = frames[i];
    EXPECT_NEAR(Dot(f.d, f.d), 1.0, 1e-12);
    EXPECT_NEAR(Dot(f.u, f.u), 1.0, 1e-12);
    EXPECT_NEAR(Dot(f.u, f.v), 0.0, 1e-12);
    EXPECT_NEAR(Dot(f.u, f.d), 0.0, 1e-12);
    // Right-handed: u x v = d.
    EXPECT_NEAR(f.u[1] * f.v[2] - f.u[2] * f.v[1], f.d[0], 1e-12);
    // Not in a coordinate plane, let alone along an axis.
    for (int k = 0; k < 3; ++k)
      EXPECT_GT(std::fabs(f.d[k]), 0.07);
    if (i < 30) {
      EXPECT_NEAR(Dot(f.d, frames[i + 30].d), -1.0, 1e-12);
    }
    for (int j = 0; j < i; ++j)
      EXPECT_LT(Dot(f.d, frames[j].d), 0.99);
  }
}

TEST(ProjectChain, IndexIsTakenModuloSixtyAndNeedsNoPreparation) {
  std::vector<ChainAtom> knot = zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 40), 2);
  for (bool flag : {false, true}) {
    for (int d : {0, 1, 29, 30, 59}) {
      SCOPED_TRACE(d);
      std::vector<Edge> base = ProjectChain(knot, d, flag);
      EXPECT_TRUE(SameEdges(base, ProjectChain(knot, d + 60, flag)));
      EXPECT_TRUE(SameEdges(base, ProjectChain(knot, d - 60, flag)));
      EXPECT_TRUE(SameEdges(base, ProjectChain(knot, d + 600000, flag)));
    }
  }
  std::vector<Edge> before = ProjectChain(knot, 7, true);
  FillFulerenData();
  EXPECT_TRUE(SameEdges(before, ProjectChain(knot, 7, true)));
}

TEST(ProjectChain, EdgesOfTheClosedDiagram) {
  std::vector<ChainAtom> knot = zoo::FigureEight(25);
  std::vector<Edge> e = ProjectChain(knot, 3, true);
  ASSERT_EQ(e.size(), knot.size());
  for (size_t i = 0; i < e.size(); ++i) {
    const Edge& next = e[(i + 1) % e.size()];
    EXPECT_EQ(e[i].x2, next.x1);
    EXPECT_EQ(e[i].y2, next.y1);
    EXPECT_EQ(e[i].z2, next.z1);
    EXPECT_TRUE(e[i].crossings.empty());
    EXPECT_EQ(e[i].tag, static_cast<int>(i));
  }
  EXPECT_TRUE(ProjectChain({}, 0, true).empty());
  EXPECT_TRUE(ProjectChain({{1, 2, 3, 1}}, 0, true).empty());
  EXPECT_EQ(ProjectChain({{1, 2, 3, 1}, {2, 2, 3, 2}}, 0, true).size(), 2u);
}

// With the flag, index 0 is the least-crossing of the 30 planes and 0..29 are the same planes as
// without it, in another order.
TEST(ProjectChain, FlagRanksPlanesByCrossings) {
  std::vector<ChainAtom> knot = zoo::RandomlyRotated(zoo::TorusKnot(3, 4, 90), 4);
  int best = zoo::CountCrossings(ProjectChain(knot, 0, true));
  std::vector<int> ranked, fixed;
  for (int d = 0; d < 30; ++d) {
    int c = zoo::CountCrossings(ProjectChain(knot, d, true));
    EXPECT_LE(best, c);
    ranked.push_back(c);
    fixed.push_back(zoo::CountCrossings(ProjectChain(knot, d, false)));
  }
  std::sort(fixed.begin(), fixed.end());
  std::vector<int> sortedRanked = ranked;
  std::sort(sortedRanked.begin(), sortedRanked.end());
  EXPECT_EQ(sortedRanked, fixed);
  EXPECT_EQ(zoo::KnotDeterminant(ProjectChain(knot, 0, true)), 3); // 8_19
}

TEST(ProjectChain, SameResultsFromSeveralThreads) {
  std::vector<std::vector<ChainAtom>> chains;
  for (unsigned s = 0; s < 8; ++s)
    chains.push_back(zoo::RandomlyRotated(zoo::TorusKnot(2, 5, 30 + 5 * s), s));
  std::vector<std::vector<Edge>> expected;
  for (const auto& c : chains)
    expected.push_back(ProjectChain(c, 1, true));
  std::vector<int> ok(chains.size(), 0);
  std::vector<std::thread> threads;
  for (size_t t = 0; t < chains.size(); ++t)
    threads.emplace_back([&, t] {
      bool same = true;
      for (int rep = 0; rep < 20; ++rep)
        same = same && SameEdges(ProjectChain(chains[(t + rep) % chains.size()], 1, true),
                                 expected[(t + rep) % chains.size()]);
      ok[t] = same;
    });
  for (std::thread& th : threads)
    th.join();
  for (int v : ok)
    EXPECT_TRUE(v);
}

} // namespace
