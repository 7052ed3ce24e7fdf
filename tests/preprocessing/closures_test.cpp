// The four closures: they append a path that stays outside the chain's ball, keep the chain's
// atoms in front, never ask for a retry, and keep an opened trefoil a trefoil.
#include <cmath>
#include <cstdlib>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/invariants.hpp"

namespace {

using Closure = std::function<int(std::vector<ChainAtom>&)>;

struct Method {
  const char* name;
  Closure close;
};

const std::vector<Method>& Methods() {
  static const std::vector<Method> methods = {
      {"OUT", [](std::vector<ChainAtom>& c) { return CloseChain_OUT(c, 1.25); }},
      {"2points", [](std::vector<ChainAtom>& c) { return CloseChain_2points(c, 1.25); }},
      {"1point", [](std::vector<ChainAtom>& c) { return CloseChain_1point(c, 1.25); }},
      {"1direction", [](std::vector<ChainAtom>& c) { return CloseChain_1direction(c); }},
  };
  return methods;
}

double DistanceToSegment(double px, double py, double pz, const ChainAtom& a, const ChainAtom& b) {
  double dx = b.x - a.x, dy = b.y - a.y, dz = b.z - a.z;
  double len2 = dx * dx + dy * dy + dz * dz;
  double t = len2 > 0 ? ((px - a.x) * dx + (py - a.y) * dy + (pz - a.z) * dz) / len2 : 0.0;
  t = std::fmax(0.0, std::fmin(1.0, t));
  return std::hypot(px - a.x - t * dx, py - a.y - t * dy, pz - a.z - t * dz);
}

TEST(Closures, AddedPathStaysOutsideTheChainsBall) {
  const std::vector<ChainAtom> figureEight = zoo::FigureEight(64);
  const std::vector<ChainAtom> open(figureEight.begin(), figureEight.end() - 4);
  double cx = 0, cy = 0, cz = 0;
  for (const ChainAtom& a : open)
    cx += a.x / open.size(), cy += a.y / open.size(), cz += a.z / open.size();
  double extent = 0;
  for (const ChainAtom& a : open)
    extent = std::fmax(extent, std::hypot(a.x - cx, a.y - cy, a.z - cz));
  std::srand(5);
  for (const Method& m : Methods()) {
    SCOPED_TRACE(m.name);
    for (int round = 0; round < 20; ++round) {
      std::vector<ChainAtom> chain = open;
      EXPECT_EQ(m.close(chain), 0);
      ASSERT_GT(chain.size(), open.size());
      for (size_t i = 0; i < open.size(); ++i)
        EXPECT_EQ(chain[i].id, open[i].id);
      for (size_t i = open.size(); i < chain.size(); ++i)
        EXPECT_EQ(chain[i].id, 0);
      // Segments between added atoms (along the sphere) keep out of the ball.
      for (size_t i = open.size(); i + 1 < chain.size(); ++i)
        EXPECT_GT(DistanceToSegment(cx, cy, cz, chain[i], chain[i + 1]), extent);
    }
  }
}

TEST(Closures, TinyAndDegenerateChainsNeverAskForARetry) {
  std::srand(1);
  const std::vector<std::vector<ChainAtom>> chains = {
      {}, {{1, 1, 1, 1}}, {{0, 0, 0, 1}, {1, 0, 0, 2}}, {{2, 2, 2, 1}, {2, 2, 2, 2}, {2, 2, 2, 3}}};
  for (const Method& m : Methods()) {
    SCOPED_TRACE(m.name);
    for (const std::vector<ChainAtom>& c : chains) {
      std::vector<ChainAtom> chain = c;
      EXPECT_EQ(m.close(chain), 0);
      if (c.size() < 3) {
        EXPECT_EQ(chain.size(), c.size());
      }
      for (const ChainAtom& a : chain)
        EXPECT_TRUE(std::isfinite(a.x + a.y + a.z));
    }
  }
}

// A trefoil opened by cutting out a short piece is closed back into a trefoil by the
// deterministic closure (the ends lie on the outside of the knot).
TEST(Closures, OutwardClosureRestoresAnOpenedTrefoil) {
  std::vector<ChainAtom> trefoil = zoo::TorusKnot(2, 3, 120);
  std::vector<ChainAtom> open(trefoil.begin(), trefoil.end() - 4);
  CloseChain_OUT(open, 1.25);
  EXPECT_EQ(zoo::KnotDeterminant(ProjectChain(open, 0, false)), 3);
}

} // namespace
