// Bad input through the in-memory calls: every case ends with a clear outcome, never a hang, a
// crash or a silently wrong answer.
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

// A closed chain whose every projection fails numerically: deterministic closures cannot draw
// another closure, so the single vote goes to "Problem with projecting" instead of a retry
// that would never end.
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

} // namespace
