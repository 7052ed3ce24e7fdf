// The knot core of generated chains: a knot tied in a known stretch between straight tails is
// found there, whatever the threads; an unknotted chain has no core; unusable input is refused.
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entry/api.hpp" // for tresk::FindKnotCore
#include "tests/support/curves.hpp"

namespace {

TEST(KnotCore, FoundWhereTheKnotIsTied) {
  const struct {
    std::string name, type;
    std::vector<ChainAtom> knot;
    int tail;
  } cases[] = {
      {"trefoil", "3_1", zoo::TorusKnot(2, 3, 60), 40},
      {"figure-eight", "4_1", zoo::FigureEight(80), 30},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::vector<ChainAtom> chain = zoo::KnottedCore(c.knot, c.tail, false, 5);
    const int n = static_cast<int>(chain.size()), size = static_cast<int>(c.knot.size());
    tresk::CoreOptions options;
    options.closures = 20;
    const tresk::KnotCore core = tresk::FindKnotCore(chain, options);
    ASSERT_TRUE(core.found) << core.verdict;
    EXPECT_EQ(core.type, c.type);
    // The knot's own vertices are positions tail+1 .. tail+size. The straight tails hold no
    // part of the knot, and cutting deep into the knotted stretch unties it.
    EXPECT_GE(core.first, c.tail + 1);
    EXPECT_LE(core.last, c.tail + size);
    EXPECT_GE(core.last - core.first + 1, size * 3 / 4);
    EXPECT_EQ(core.nTail, core.first - 1);
    EXPECT_EQ(core.cTail, n - core.last);
    EXPECT_EQ(core.depth, std::min(core.nTail, core.cTail));
    EXPECT_GT(core.coreShare, 0.5);

    options.threads = 2;
    const tresk::KnotCore again = tresk::FindKnotCore(chain, options);
    EXPECT_EQ(again.first, core.first);
    EXPECT_EQ(again.last, core.last);
    EXPECT_EQ(again.coreShare, core.coreShare);
  }
}

TEST(KnotCore, NoCoreWithoutAKnotAndBadInputRefused) {
  tresk::CoreOptions options;
  options.closures = 10;
  const tresk::KnotCore circle = tresk::FindKnotCore(zoo::Circle(80), options);
  EXPECT_FALSE(circle.found);
  EXPECT_EQ(circle.ordinal, 0);
  EXPECT_FALSE(tresk::FindKnotCore({}, options).found);

  std::vector<ChainAtom> bad = zoo::Circle(10);
  bad[3].y = std::numeric_limits<double>::quiet_NaN();
  EXPECT_NE(tresk::KnotCoreProblem(bad, options), "");
  options.closures = 0;
  EXPECT_NE(tresk::KnotCoreProblem(zoo::Circle(10), options).find("closures"), std::string::npos);
}

} // namespace
