// The knot map and the exact knot core: the core search against a brute force over every
// subchain of small chains, a slipknot built with a known loop and returning segment, a 5_2
// whose subchains are trefoils, and chains without a knot.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entry/api.hpp"          // for tresk::FindKnotCore
#include "scan/knotMap.hpp"       // for tresk::MapKnots
#include "scan/subchainVotes.hpp" // for tresk::SubchainVotes, tresk::CoarseGrid
#include "tests/support/curves.hpp"
#include "tests/support/datafiles.hpp"

namespace {

struct Shortest {
  bool found = false;
  int first = 0, last = 0;
};

// The reference: every subchain analysed; the shortest one that keeps `ordinal` among those
// whose ends lie within step - 1 of a kept grid subchain (every subchain when step is 1), ties to
// more votes, then to the earlier start.
Shortest BruteForce(const std::vector<ChainAtom>& chain, const tresk::CoreOptions& o, int ordinal,
                    int step) {
  const int n = static_cast<int>(chain.size());
  tresk::SubchainVotes votes(chain, o.closureMethod, o.closures, o.seed, o.naming, 1);
  std::vector<tresk::Span> all;
  for (int i = 1; i <= n; ++i)
    for (int j = i + 5; j <= n; ++j)
      all.emplace_back(i, j);
  votes.Analyse(all);
  std::vector<tresk::Span> kept;
  for (const tresk::Span& s : tresk::CoarseGrid(n, step, 6))
    if (votes.Kept(s.first, s.second, ordinal))
      kept.push_back(s);
  Shortest best;
  int bestVotes = 0;
  for (const tresk::Span& s : all) {
    const bool near = std::any_of(kept.begin(), kept.end(), [&](const tresk::Span& k) {
      return std::abs(s.first - k.first) < step && std::abs(s.second - k.second) < step;
    });
    const int v = votes.Votes(s.first, s.second, ordinal);
    if (!near || 2 * v <= votes.Closures())
      continue;
    const int length = s.second - s.first, bestLength = best.last - best.first;
    if (!best.found || length < bestLength || (length == bestLength && v > bestVotes))
      best = {true, s.first, s.second}, bestVotes = v;
  }
  return best;
}

TEST(KnotCore, ShortestKeptSubchainAsABruteForceFindsIt) {
  const struct {
    std::string name;
    std::vector<ChainAtom> chain;
    int method, closures, step;
  } cases[] = {
      {"direct closure, trefoil", zoo::KnottedCore(zoo::TorusKnot(2, 3, 20), 3, false, 1), 0, 1, 1},
      {"direct closure, rotated coiled trefoil",
       zoo::RandomlyRotated(zoo::KnottedCore(zoo::TorusKnot(2, 3, 22), 4, true, 3), 7), 0, 1, 1},
      {"sphere closure, figure-eight", zoo::KnottedCore(zoo::FigureEight(24), 3, true, 2), 1, 1, 1},
      {"random directions, grid step 3", zoo::KnottedCore(zoo::TorusKnot(2, 3, 20), 4, true, 5), 4,
       9, 3},
      {"random points, grid step 4", zoo::KnottedCore(zoo::TorusKnot(2, 3, 22), 3, false, 1), 2, 7,
       4},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    tresk::CoreOptions options;
    options.closureMethod = c.method;
    options.closures = c.closures;
    options.step = c.step;
    options.seed = 5;
    const tresk::KnotCore core = tresk::FindKnotCore(c.chain, options);
    ASSERT_NE(core.ordinal, 0) << core.verdict;
    const Shortest reference = BruteForce(c.chain, options, core.ordinal, c.step);
    ASSERT_EQ(core.found, reference.found);
    EXPECT_EQ(core.first, reference.first);
    EXPECT_EQ(core.last, reference.last);
  }
}

TEST(KnotMap, SlipknotUndoneByAReturningHairpin) {
  const int tail = 40, knotEnd = 2 * tail + 60;
  const std::vector<ChainAtom> chain = zoo::Slipknot(tail, 0.3);
  const int n = static_cast<int>(chain.size());
  tresk::MapOptions options;
  options.closures = 20;
  const tresk::KnotMap map = tresk::MapKnots(chain, options);
  EXPECT_EQ(map.chainClass, 'S') << map.verdict;
  EXPECT_EQ(map.ordinal, 0);
  ASSERT_FALSE(map.regions.empty());
  // The returning strand retraces the whole knot, so it holds a trefoil of its own, undone on
  // its N side by the first pass: the first slipknot is the one tied first.
  const tresk::KnottedRegion& slip = map.regions.front();
  EXPECT_TRUE(slip.slipknot);
  EXPECT_EQ(slip.type, "3_1");
  ASSERT_TRUE(slip.found);
  EXPECT_GT(slip.first, tail - 5);
  EXPECT_LE(slip.last, tail + 60 + 3);
  // Undone on the C side: the loop starts after the core and ends on the returning strand, where
  // it passes back through the knot; its returning half starts at the turn.
  EXPECT_EQ(slip.nSide.loopFirst, 0);
  EXPECT_EQ(slip.cSide.loopFirst, slip.last + 1);
  EXPECT_GT(slip.cSide.loopLast, knotEnd + tail);
  EXPECT_LE(slip.cSide.loopLast, n - tail);
  EXPECT_GE(slip.cSide.segmentFirst, knotEnd - 1);
  EXPECT_LE(slip.cSide.segmentFirst, knotEnd + 2);
  EXPECT_EQ(slip.cSide.segmentLast, slip.cSide.loopLast);
  EXPECT_EQ(map.types.substr(0, 3), "3_1");
  EXPECT_EQ(tresk::ClassifyChain(chain, options).chainClass, 'S');
}

TEST(KnotMap, FiveTwoWithTrefoilSubchains) {
  const std::vector<ChainAtom> chain = zoo::ReadChain("open/knoto_id/5_2m.xyz");
  if (chain.empty()) {
    if (zoo::InCI())
      FAIL() << "corpus missing at " << zoo::DataDir();
    GTEST_SKIP() << "corpus not found at " << zoo::DataDir();
  }
  const tresk::KnotMap map = tresk::MapKnots(chain);
  EXPECT_EQ(map.chainClass, 'K');
  ASSERT_GE(map.regions.size(), 2u);
  EXPECT_EQ(map.regions[0].type, "5_2");
  EXPECT_FALSE(map.regions[0].slipknot);
  EXPECT_EQ(map.types.substr(0, 7), "5_2 3_1");
  for (std::size_t r = 1; r < map.regions.size(); ++r) {
    SCOPED_TRACE(r);
    EXPECT_EQ(map.regions[r].type, "3_1");
    // A trefoil inside the 5_2: its core is shorter and within the chain's own core span.
    EXPECT_LT(map.regions[r].last - map.regions[r].first,
              map.regions[0].last - map.regions[0].first);
  }
}

TEST(KnotMap, UnknottedAndTooShortChains) {
  const struct {
    std::string name;
    std::vector<ChainAtom> chain;
  } cases[] = {
      {"open circle", zoo::KnottedCore(zoo::Circle(40), 10, true, 4)},
      {"five atoms", zoo::KnottedCore(zoo::Circle(3), 1, false, 1)},
      {"empty", {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    tresk::MapOptions options;
    options.closures = 10;
    const tresk::KnotMap map = tresk::MapKnots(c.chain, options);
    EXPECT_EQ(map.chainClass, 'U');
    EXPECT_EQ(map.types, "");
    EXPECT_TRUE(map.regions.empty());
  }
  tresk::MapOptions bad;
  bad.closureMethod = 7;
  EXPECT_NE(tresk::MapProblem(zoo::Circle(10), bad), "");
}

} // namespace
