// ProjectChain: 60 well-spread generic directions (d + 30 looks from the opposite side), any
// int index taken modulo 60, the edges of a closed diagram, the fewest-crossing ranking under
// the flag, and use from several threads at once.
#include <algorithm>
#include <cmath>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/invariants.hpp"

namespace {

bool SameEdges(const std::vector<Edge>& a, const std::vector<Edge>& b) {
  auto same = [](const Edge& e, const Edge& f) {
    return e.x1 == f.x1 && e.y1 == f.y1 && e.z1 == f.z1 && e.x2 == f.x2 && e.y2 == f.y2 &&
           e.z2 == f.z2;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

// Generic, distinct directions; d + 30 looks from the other side: every depth changes sign.
TEST(ProjectChain, SixtyDistinctGenericDirections) {
  const std::vector<ChainAtom> probe = {{0, 0, 0, 1}, {1, 0, 0, 2}, {0, 1, 0, 3}, {0, 0, 1, 4}};
  std::vector<std::vector<Edge>> e;
  for (int i = 0; i < 90; ++i)
    e.push_back(ProjectChain(probe, i, false));
  for (int i = 0; i < 60; ++i) {
    SCOPED_TRACE(i);
    for (int k = 1; k < 4; ++k) { // the depths of the unit points: the direction's components
      EXPECT_GT(std::fabs(e[i][k].z1), 0.07); // not in a coordinate plane, nor along an axis
      EXPECT_NEAR(e[i + 30][k].z1, -e[i][k].z1, 1e-12);
    }
    for (int j = 0; j < i; ++j)
      EXPECT_LT(e[i][1].z1 * e[j][1].z1 + e[i][2].z1 * e[j][2].z1 + e[i][3].z1 * e[j][3].z1, 0.99);
  }
}

TEST(ProjectChain, IndexModuloSixtyAndTheClosedDiagram) {
  std::vector<ChainAtom> knot = zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 40), 2);
  const std::vector<Edge> before = ProjectChain(knot, 7, true);
  FillFulerenData(); // no preparation needed, and none changes anything
  EXPECT_TRUE(SameEdges(before, ProjectChain(knot, 7, true)));
  for (bool flag : {false, true}) {
    for (int d : {0, 29, 30, 59}) {
      SCOPED_TRACE(d);
      std::vector<Edge> e = ProjectChain(knot, d, flag);
      for (int shift : {60, -60, 600000})
        EXPECT_TRUE(SameEdges(e, ProjectChain(knot, d + shift, flag)));
      ASSERT_EQ(e.size(), knot.size());
      for (size_t i = 0; i < e.size(); ++i) {
        const Edge& next = e[(i + 1) % e.size()];
        EXPECT_TRUE(e[i].x2 == next.x1 && e[i].y2 == next.y1 && e[i].z2 == next.z1);
        EXPECT_TRUE(e[i].crossings.empty());
        EXPECT_EQ(e[i].tag, static_cast<int>(i));
      }
    }
  }
  EXPECT_TRUE(ProjectChain({}, 0, true).empty());
  EXPECT_TRUE(ProjectChain({{1, 2, 3, 1}}, 0, true).empty());
  EXPECT_EQ(ProjectChain({{1, 2, 3, 1}, {2, 2, 3, 2}}, 0, true).size(), 2u);
}

// With the flag, index 0 is the least-crossing of the 30 planes and 0..29 are the same planes as
// without it, in another order.
TEST(ProjectChain, FlagRanksPlanesByCrossings) {
  std::vector<ChainAtom> knot = zoo::RandomlyRotated(zoo::TorusKnot(3, 4, 90), 4);
  std::vector<int> ranked, fixed;
  for (int d = 0; d < 30; ++d) {
    ranked.push_back(zoo::CountCrossings(ProjectChain(knot, d, true)));
    fixed.push_back(zoo::CountCrossings(ProjectChain(knot, d, false)));
  }
  EXPECT_EQ(ranked[0], *std::min_element(fixed.begin(), fixed.end()));
  std::sort(fixed.begin(), fixed.end());
  std::sort(ranked.begin(), ranked.end());
  EXPECT_EQ(ranked, fixed);
  EXPECT_EQ(zoo::KnotDeterminant(ProjectChain(knot, 0, true)), 3); // 8_19
}

TEST(ProjectChain, SameResultsFromSeveralThreads) {
  std::vector<std::vector<ChainAtom>> chains;
  std::vector<std::vector<Edge>> expected;
  for (unsigned s = 0; s < 8; ++s) {
    chains.push_back(zoo::RandomlyRotated(zoo::TorusKnot(2, 5, 30 + 5 * s), s));
    expected.push_back(ProjectChain(chains.back(), 1, true));
  }
  std::vector<int> ok(chains.size(), 1);
  std::vector<std::thread> threads;
  for (size_t t = 0; t < chains.size(); ++t)
    threads.emplace_back([&, t] {
      for (int rep = 0; rep < 20; ++rep) {
        const size_t k = (t + rep) % chains.size();
        ok[t] = ok[t] && SameEdges(ProjectChain(chains[k], 1, true), expected[k]);
      }
    });
  for (std::thread& th : threads)
    th.join();
  EXPECT_EQ(ok, std::vector<int>(chains.size(), 1));
}

} // namespace
