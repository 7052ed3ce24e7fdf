// The four closures: the chain's atoms stay in front and unchanged, the added path (ids 0) keeps
// out of the chain's ball, no retry is ever asked for, srand makes a closure reproducible, and
// the outward closure keeps an opened trefoil a trefoil.
#include <cmath>
#include <cstdlib>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/invariants.hpp"

namespace {

bool Same(const ChainAtom& a, const ChainAtom& b) {
  return a.x == b.x && a.y == b.y && a.z == b.z && a.id == b.id;
}

TEST(Closures, InvariantsOfEveryMethod) {
  const struct {
    const char* name;
    std::function<int(std::vector<ChainAtom>&)> close;
  } methods[] = {
      {"OUT", [](std::vector<ChainAtom>& c) { return CloseChain_OUT(c, 1.25); }},
      {"2points", [](std::vector<ChainAtom>& c) { return CloseChain_2points(c, 1.25); }},
      {"1point", [](std::vector<ChainAtom>& c) { return CloseChain_1point(c, 1.25); }},
      {"1direction", [](std::vector<ChainAtom>& c) { return CloseChain_1direction(c); }},
  };
  const std::vector<ChainAtom> figureEight = zoo::FigureEight(64);
  const std::vector<ChainAtom> open(figureEight.begin(), figureEight.end() - 4);
  double cx = 0, cy = 0, cz = 0, extent = 0;
  for (const ChainAtom& a : open)
    cx += a.x / open.size(), cy += a.y / open.size(), cz += a.z / open.size();
  for (const ChainAtom& a : open)
    extent = std::fmax(extent, std::hypot(a.x - cx, a.y - cy, a.z - cz));
  const std::vector<std::vector<ChainAtom>> tiny = {
      {}, {{1, 1, 1, 1}}, {{0, 0, 0, 1}, {1, 0, 0, 2}}, {{2, 2, 2, 1}, {2, 2, 2, 2}, {2, 2, 2, 3}}};
  for (const auto& m : methods) {
    SCOPED_TRACE(m.name);
    std::srand(5);
    for (int round = 0; round < 20; ++round) {
      std::vector<ChainAtom> chain = open;
      EXPECT_EQ(m.close(chain), 0);
      ASSERT_GT(chain.size(), open.size());
      for (size_t i = 0; i < chain.size(); ++i) {
        EXPECT_TRUE(i < open.size() ? Same(chain[i], open[i]) : chain[i].id == 0) << i;
        // Added atoms lie on a sphere: the midpoints of their chords come nearest its centre.
        if (i > open.size()) {
          EXPECT_GT(std::hypot((chain[i - 1].x + chain[i].x) / 2 - cx,
                               (chain[i - 1].y + chain[i].y) / 2 - cy,
                               (chain[i - 1].z + chain[i].z) / 2 - cz),
                    extent)
              << i;
        }
      }
    }
    std::vector<ChainAtom> first = open, again = open;
    std::srand(9), m.close(first), std::srand(9), m.close(again);
    ASSERT_EQ(first.size(), again.size());
    for (size_t i = 0; i < first.size(); ++i)
      EXPECT_TRUE(Same(first[i], again[i])) << i;
    for (const std::vector<ChainAtom>& c : tiny) {
      std::vector<ChainAtom> chain = c;
      EXPECT_EQ(m.close(chain), 0);
      EXPECT_TRUE(c.size() == 3 || chain.size() == c.size());
      for (const ChainAtom& a : chain)
        EXPECT_TRUE(std::isfinite(a.x + a.y + a.z));
    }
  }
  // A trefoil opened by cutting out a short piece: its ends lie on the outside of the knot, so
  // the outward closure closes it back into a trefoil.
  std::vector<ChainAtom> trefoil = zoo::TorusKnot(2, 3, 120);
  trefoil.resize(trefoil.size() - 4);
  CloseChain_OUT(trefoil, 1.25);
  EXPECT_EQ(zoo::KnotDeterminant(ProjectChain(trefoil, 0, false)), 3);
}

} // namespace
