// Knot cores of proteins against the tails listed for them in the trefoil list of knotted
// proteins (residues before and after the core), within 5 residues; an unknotted protein of the
// same fold as 3KZN has no core.
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entry/api.hpp" // for tresk::FindKnotCore
#include "tests/support/datafiles.hpp"

namespace {

TEST(KnotCoreProteins, TailsAsListed) {
  TRESK_REQUIRE_DATA();
  const struct {
    std::string chain;
    int nTail, cTail; // -1: not knotted
  } cases[] = {
      {"1ns5_A", 70, 34},  {"1o6d_A", 67, 31}, {"3kzn_A", 173, 81},
      {"1yh1_A", 173, 83}, {"1j85_A", 77, 36}, {"1pvv_A", -1, -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.chain);
    const std::vector<ChainAtom> chain = zoo::ReadChain("proteins/ca_xyz/" + c.chain + ".xyz");
    ASSERT_FALSE(chain.empty());
    tresk::CoreOptions options;
    options.threads = 0;
    const tresk::KnotCore core = tresk::FindKnotCore(chain, options);
    if (c.nTail < 0) {
      EXPECT_FALSE(core.found) << core.verdict;
      EXPECT_EQ(core.type, "01");
      continue;
    }
    ASSERT_TRUE(core.found) << core.verdict;
    EXPECT_EQ(core.type, "3_1");
    EXPECT_NEAR(core.nTail, c.nTail, 5);
    EXPECT_NEAR(core.cTail, c.cTail, 5);
  }
}

} // namespace
