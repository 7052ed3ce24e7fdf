// Bad input through the in-memory calls: every case ends with a clear outcome, never a hang, a
// crash or a silently wrong answer.
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entry/api.hpp"
#include "chain/manyClosures.hpp"
#include "entry/entry.hpp"
#include "knots/whichKnot.hpp"
#include "preprocessing/readChain.hpp"
#include "tests/support/datafiles.hpp"

namespace {

std::vector<ChainAtom> Repro(const char* name) {
  const tresk::ReadResult r =
      tresk::ReadChain(zoo::SourceFile(std::string("tests/data/repro/") + name));
  EXPECT_EQ(r.error, "") << name;
  return r.atoms;
}

// A chain whose deterministic closure once failed numerically in every projection: such
// closures cannot draw another, so the vote ends with its single closure (then counted as
// "Problem with projecting") instead of a retry that would never end.
TEST(InMemoryBadInput, DeterministicClosureWhoseProjectionsAllFailEnds) {
  const std::vector<ChainAtom> chain = Repro("hang_m1.xyz");
  for (int method : {0, 1, 7}) {
    SCOPED_TRACE(method);
    int counts[42];
    FindMajorKnot(chain, counts, method, 5);
    int total = 0;
    for (int c : counts)
      total += c;
    EXPECT_EQ(total, method == 7 ? 5 : 1);
  }
}

// Our vote ends on a right answer where the documented one counts degenerate projections as
// "-3": a trefoil shrunk to 1e-200 (squared lengths underflow) is scaled back up exactly, and a
// chain whose atoms all coincide reduces to a point triangle, the unknot.
TEST(InMemoryBadInput, RobustVoteNamesDegenerateChains) {
  std::vector<ChainAtom> tiny =
      tresk::ReadChain(zoo::SourceFile("examples/chains/trefoil_closed.xyz")).atoms;
  for (ChainAtom& a : tiny)
    a.x *= 1e-200, a.y *= 1e-200, a.z *= 1e-200;
  const struct {
    const char* name;
    std::vector<ChainAtom> chain;
    int robust; // the ordinal of our vote's only closure (method 0); the documented one gives 39
  } cases[] = {{"tiny", tiny, 1}, {"coincident", Repro("coincident.xyz"), 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    int counts[42];
    tresk::VoteOverClosures(c.chain, counts, 0, 1, tresk::NamingOptions{});
    EXPECT_EQ(counts[c.robust], 1);
    FindOneKnot(c.chain, counts, 0, 1);
    EXPECT_EQ(counts[39], 1);
  }
  EXPECT_EQ(tresk::CheckExtent(Repro("coincident.xyz")), "all 50 atoms lie at one point");
}

// Run as its own process (as ctest does), this names counts before anything loaded the table.
TEST(InMemoryBadInput, NamesBeforeAnyTableLoad) {
  int counts[42] = {};
  counts[1] = 3;
  EXPECT_EQ(GiveTheNameOfKnot(counts), "3_1(100%) ");
}

TEST(InMemoryBadInput, NullArraysAndUnsupportedCoordinates) {
  std::vector<ChainAtom> chain = Repro("coincident.xyz");
  EXPECT_EQ(FindMajorKnot(chain, nullptr, 2, 3), -1);
  EXPECT_EQ(GiveTheNameOfKnot(nullptr), "");
  EXPECT_EQ(GiveTheNameOfKnot_Matrix(nullptr), "");
  chain[1].y = std::nan("");
  int counts[42];
  counts[0] = 7;
  EXPECT_EQ(FindMajorKnot(chain, counts, 2, 3), -1);
  EXPECT_EQ(counts[0], 0);
  chain[1].y = 2e9;
  EXPECT_EQ(FindMajorKnot(chain, counts, 2, 3), -1);
  EXPECT_NE(tresk::FingerprintProblem(chain, {}).find("beyond +-1e9"), std::string::npos);
}

// The fingerprint reduces in single precision: far from the origin a chain would crumble, so
// with `recentre` a translated copy gives the rows of the chain itself.
TEST(InMemoryBadInput, TranslatedCopyHasTheSameFingerprint) {
  const std::vector<ChainAtom> chain =
      tresk::ReadChain(zoo::SourceFile("examples/chains/trefoil_open.xyz")).atoms;
  std::vector<ChainAtom> far = chain;
  for (ChainAtom& a : far)
    a.x += 1e7, a.z -= 3e6;
  tresk::FingerprintParams params;
  params.step = 40;
  params.closures = 6;
  tresk::ScanOptions options;
  options.recentre = true;
  std::srand(5);
  const std::vector<RowFile> near = tresk::FingerprintRows(chain, params, options);
  std::srand(5);
  const std::vector<RowFile> moved = tresk::FingerprintRows(far, params, options);
  ASSERT_FALSE(near.empty());
  ASSERT_EQ(near.size(), moved.size());
  for (std::size_t k = 0; k < near.size(); ++k)
    EXPECT_EQ(near[k].text, moved[k].text);
}

} // namespace
