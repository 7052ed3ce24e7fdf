// The four closures: they append a path that stays outside the chain's ball, keep the chain's
// atoms in front, draw only from rand(), and never ask for a retry.
#include <cmath>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
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
  bool random;
};

const std::vector<Method>& Methods() {
  static const std::vector<Method> methods = {
      {"OUT", [](std::vector<ChainAtom>& c) { return CloseChain_OUT(c, 1.25); }, false},
      {"2points", [](std::vector<ChainAtom>& c) { return CloseChain_2points(c, 1.25); }, true},
      {"1point", [](std::vector<ChainAtom>& c) { return CloseChain_1point(c, 1.25); }, true},
      {"1direction", [](std::vector<ChainAtom>& c) { return CloseChain_1direction(c); }, true},
  };
  return methods;
}

// A random walk of unit steps (fixed seed).
std::vector<ChainAtom> Coil(int n, unsigned seed) {
  std::mt19937 gen(seed);
  std::normal_distribution<double> g;
  std::vector<ChainAtom> out;
  double x = 0, y = 0, z = 0;
  for (int i = 0; i < n; ++i) {
    double dx = g(gen), dy = g(gen), dz = g(gen), len = std::sqrt(dx * dx + dy * dy + dz * dz);
    x += dx / len, y += dy / len, z += dz / len;
    out.push_back({x, y, z, i + 1});
  }
  return out;
}

double DistanceToSegment(double px, double py, double pz, const ChainAtom& a, const ChainAtom& b) {
  double dx = b.x - a.x, dy = b.y - a.y, dz = b.z - a.z;
  double len2 = dx * dx + dy * dy + dz * dz;
  double t = len2 > 0 ? ((px - a.x) * dx + (py - a.y) * dy + (pz - a.z) * dz) / len2 : 0.0;
  t = std::fmax(0.0, std::fmin(1.0, t));
  return std::hypot(px - a.x - t * dx, py - a.y - t * dy, pz - a.z - t * dz);
}

TEST(Closures, AddedPathStaysOutsideTheChainsBall) {
  const std::vector<ChainAtom> open = Coil(60, 11);
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

TEST(Closures, ReproducibleUnderSrandAndDifferentOnRepeat) {
  const std::vector<ChainAtom> open = Coil(40, 3);
  for (const Method& m : Methods()) {
    SCOPED_TRACE(m.name);
    auto closeTwice = [&](unsigned seed) {
      std::srand(seed);
      std::vector<ChainAtom> a = open, b = open;
      m.close(a);
      m.close(b);
      return std::make_pair(a, b);
    };
    auto first = closeTwice(17), second = closeTwice(17);
    auto same = [](const std::vector<ChainAtom>& a, const std::vector<ChainAtom>& b) {
      if (a.size() != b.size())
        return false;
      for (size_t i = 0; i < a.size(); ++i)
        if (a[i].x != b[i].x || a[i].y != b[i].y || a[i].z != b[i].z)
          return false;
      return true;
    };
    EXPECT_TRUE(same(first.first, second.first));
    EXPECT_TRUE(same(first.second, second.second));
    EXPECT_EQ(same(first.first, first.second), !m.random);
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
