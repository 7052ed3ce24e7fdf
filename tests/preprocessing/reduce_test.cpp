// ChainReduce: unknots shrink to a triangle, knots keep their type (checked with the knot
// determinant computed independently from the projected diagram), tiny chains stay as they are.
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/invariants.hpp"

namespace {

long Determinant(const std::vector<ChainAtom>& closed, int direction) {
  return zoo::KnotDeterminant(ProjectChain(closed, direction, false));
}

// A random walk that always climbs (fixed seed), closed outwards: an unknot by construction (the
// arc inside the closing sphere is monotone in z), with many crossings in its projections.
std::vector<ChainAtom> ClimbingCoil(int n, unsigned seed) {
  std::mt19937 gen(seed);
  std::normal_distribution<double> g;
  std::vector<ChainAtom> out;
  double x = 0, y = 0, z = 0;
  for (int i = 0; i < n; ++i) {
    x += g(gen), y += g(gen), z += 0.05 + 0.05 * std::fabs(g(gen));
    out.push_back({x, y, z, i + 1});
  }
  CloseChain_OUT(out, 1.25);
  return out;
}

// A simple planar star (non-convex polygon) in a tilted plane.
std::vector<ChainAtom> PlanarStar(int points) {
  std::vector<ChainAtom> out;
  for (int i = 0; i < 2 * points; ++i) {
    double a = M_PI * i / points, r = i % 2 ? 3.0 : 10.0;
    double px = r * std::cos(a), py = r * std::sin(a);
    out.push_back({px, 0.6 * py, 0.8 * py, i + 1});
  }
  return out;
}

TEST(ChainReduce, UnknotsBecomeTriangles) {
  struct Case {
    const char* name;
    std::vector<ChainAtom> chain;
  };
  const Case cases[] = {
      {"circle", zoo::Circle(50)},
      {"rotated circle", zoo::RandomlyRotated(zoo::Circle(200), 3)},
      {"planar star", PlanarStar(7)},
      {"square", {{0, 0, 0, 1}, {1, 0, 0, 2}, {1, 1, 0, 3}, {0, 1, 0, 4}}},
      {"climbing coil", ClimbingCoil(300, 8)},
      {"long climbing coil (grid path)", ClimbingCoil(3000, 9)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    for (bool flag : {false, true}) {
      std::vector<ChainAtom> chain = c.chain;
      EXPECT_EQ(ChainReduce(chain, flag), 3);
      EXPECT_EQ(chain.size(), 3u);
    }
  }
}

TEST(ChainReduce, TinyChainsUnchanged) {
  for (size_t n = 0; n < 4; ++n) { // 0 to 3 atoms
    std::vector<ChainAtom> chain = zoo::Circle(3);
    chain.resize(n);
    std::vector<ChainAtom> copy = chain;
    EXPECT_EQ(ChainReduce(chain, true), static_cast<int>(copy.size()));
    ASSERT_EQ(chain.size(), copy.size());
    for (size_t i = 0; i < chain.size(); ++i)
      EXPECT_EQ(chain[i].x, copy[i].x);
  }
}

TEST(ChainReduce, KnotTypeKept) {
  struct Case {
    const char* name;
    std::vector<ChainAtom> chain;
    long determinant;
    bool degenerateInput; // the oracle cannot read the unreduced diagram
  };
  std::vector<ChainAtom> doubled; // every vertex twice: zero-length segments
  for (const ChainAtom& a : zoo::TorusKnot(2, 3, 60))
    doubled.push_back(a), doubled.push_back(a);
  const Case cases[] = {
      {"trefoil", zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 100), 1), 3, false},
      {"figure-eight", zoo::RandomlyRotated(zoo::FigureEight(150), 2), 5, false},
      {"5_1", zoo::TorusKnot(2, 5, 200), 5, false},
      {"7_1", zoo::RandomlyRotated(zoo::TorusKnot(2, 7, 300), 5), 7, false},
      {"8_19", zoo::RandomlyRotated(zoo::TorusKnot(3, 4, 300), 6), 3, false},
      {"fine trefoil (grid path)", zoo::TorusKnot(2, 3, 4000), 3, false},
      {"trefoil with doubled vertices", doubled, 3, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    if (!c.degenerateInput) {
      ASSERT_EQ(Determinant(c.chain, 0), c.determinant);
    }
    for (bool flag : {false, true}) {
      std::vector<ChainAtom> chain = c.chain;
      int size = ChainReduce(chain, flag);
      EXPECT_EQ(size, static_cast<int>(chain.size()));
      EXPECT_GT(size, 5); // a knot needs at least six sticks
      EXPECT_LT(size, 40);
      for (int d : {0, 11, 23, 42})
        EXPECT_EQ(Determinant(chain, d), c.determinant) << d;
      EXPECT_EQ(zoo::KnotDeterminant(ProjectChain(chain, 0, true)), c.determinant);
    }
  }
}

// Without the flag the result is a subsequence of the input atoms.
TEST(ChainReduce, PlainCuttingKeepsInputAtoms) {
  std::vector<ChainAtom> knot = zoo::RandomlyRotated(zoo::FigureEight(120), 7);
  std::vector<ChainAtom> chain = knot;
  ChainReduce(chain, false);
  size_t j = 0;
  for (const ChainAtom& a : chain) {
    while (j < knot.size() && knot[j].id != a.id)
      ++j;
    ASSERT_LT(j, knot.size());
    EXPECT_EQ(knot[j].x, a.x);
    EXPECT_EQ(knot[j].z, a.z);
  }
}

// Differential check on random closed walks: the determinant before and after reduction agrees
// in several directions (these walks are knotted often enough to matter).
TEST(ChainReduce, RandomWalksKeepTheirDeterminant) {
  int knotted = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 gen(seed);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<ChainAtom> chain;
    for (int i = 0; i < 25; ++i)
      chain.push_back({u(gen), u(gen), u(gen), i + 1});
    long before = Determinant(chain, 0);
    ASSERT_GT(before, 0);
    knotted += before > 1;
    for (bool flag : {false, true}) {
      std::vector<ChainAtom> reduced = chain;
      ChainReduce(reduced, flag);
      EXPECT_EQ(Determinant(reduced, 5), before);
      EXPECT_EQ(zoo::KnotDeterminant(ProjectChain(reduced, 0, true)), before);
    }
  }
  EXPECT_GT(knotted, 5);
}

} // namespace
