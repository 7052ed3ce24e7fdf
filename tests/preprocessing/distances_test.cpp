// CheckDistancesBetweenAtoms: breaks and clashes named by atom id, in any unit of length, and
// chains too small or too degenerate to judge.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"

namespace {

TEST(CheckDistances, VerdictsInAnyUnit) {
  for (double scale : {1.0, 0.001, 1000.0}) {
    // An alpha helix: 100 degrees and a rise of 1.5 per residue, 3.8 between neighbours.
    std::vector<ChainAtom> helix;
    for (int i = 0; i < 40; ++i)
      helix.push_back({scale * 2.3 * std::cos(1.745 * i), scale * 2.3 * std::sin(1.745 * i),
                       scale * 1.5 * i, 101 + i});
    std::vector<ChainAtom> gap = helix, clash = helix;
    for (size_t i = 20; i < gap.size(); ++i)
      gap[i].z += scale * 12.0; // 120 and 121 now far apart
    clash[30].x = clash[5].x, clash[30].y = clash[5].y, clash[30].z = clash[5].z;
    const struct {
      const char* name;
      std::vector<ChainAtom> chain;
      const char* message; // the start of the message
    } cases[] = {
        {"helix", helix, "OK"},
        {"gap", gap, "Chain break between atoms 120 and 121 are "},
        {"clash", clash, "Atoms too close: atoms 106 and 131 are 0 apart (typical neighbour"},
        {"empty", {}, "OK"},
        {"one atom", {{1, 2, 3, 1}}, "OK"},
        {"coinciding atoms", {{1, 2, 3, 1}, {1, 2, 3, 2}, {1, 2, 3, 3}}, "Most neighbouring"},
    };
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(c.name) + " at scale " + std::to_string(scale));
      const std::string msg = CheckDistancesBetweenAtoms(c.chain);
      EXPECT_EQ(msg.rfind(c.message, 0), 0u) << msg;
    }
  }
}

} // namespace
