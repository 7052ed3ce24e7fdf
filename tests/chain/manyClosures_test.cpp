// The vote over closures: how many passes each closure method makes, and that every pass
// casts exactly one vote for a knot outcome.
#include <cstdlib>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "chain/manyClosures.hpp"
#include "tests/support/curves.hpp"

namespace {

struct Counts {
  int c[42];
  int Sum() const { return std::accumulate(c, c + 42, 0); }
};

Counts Vote(const std::vector<ChainAtom>& chain, int method, int closures) {
  Counts counts;
  std::fill(counts.c, counts.c + 42, 12345); // must be zeroed by the call
  EXPECT_EQ(FindOneKnot(chain, counts.c, method, closures), 0);
  return counts;
}

// An open chain: the trefoil cut open, with both ends pulled far apart in opposite directions.
std::vector<ChainAtom> OpenTrefoil() {
  std::vector<ChainAtom> core = zoo::TorusKnot(2, 3, 90);
  std::vector<ChainAtom> chain;
  for (int i = 30; i >= 1; --i)
    chain.push_back({14.0 + i, 0.0, -0.6 * i, 0});
  chain.insert(chain.end(), core.begin(), core.end());
  for (int i = 1; i <= 30; ++i)
    chain.push_back({14.0 + i, -1.0, 0.6 * i, 0});
  for (std::size_t k = 0; k < chain.size(); ++k)
    chain[k].id = static_cast<int>(k) + 1;
  return chain;
}

TEST(ManyClosures, PassesPerMethod) {
  std::srand(11);
  const std::vector<ChainAtom> trefoil = zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 100), 21);
  struct Case {
    const char* name;
    int method;
    int closures;
    int passes;
  } cases[] = {
      {"closed chain used as it is, one pass whatever is asked", 0, 500, 1},
      {"unknown method, chain left as it is", 7, 6, 6},
      {"negative method compares unsigned: unknown", -1, 4, 4},
      {"random closure, zero asked", 2, 0, 0},
      {"random closure, negative asked", 3, -5, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Counts counts = Vote(trefoil, c.method, c.closures);
    EXPECT_EQ(counts.Sum(), c.passes);
    // The chain is a closed trefoil and is not closed again: every pass names it.
    EXPECT_EQ(counts.c[1], c.passes);
  }
}

TEST(ManyClosures, OneClosureForTheFixedMethod) {
  Counts counts = Vote(OpenTrefoil(), 1, 500);
  EXPECT_EQ(counts.Sum(), 1);
}

TEST(ManyClosures, EveryPassVotesOnce) {
  std::srand(12);
  const std::vector<ChainAtom> chain = OpenTrefoil();
  for (int method : {2, 3, 4}) {
    SCOPED_TRACE(method);
    Counts counts = Vote(chain, method, 40);
    EXPECT_EQ(counts.Sum(), 40);
    EXPECT_EQ(counts.c[40], 0);
    EXPECT_EQ(counts.c[41], 0);
    // The knot sits in the middle of long tails: random closures see it nearly always.
    EXPECT_GT(counts.c[1], 30);
  }
}

} // namespace
