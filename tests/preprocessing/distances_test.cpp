// CheckDistancesBetweenAtoms: breaks and clashes named by atom id, in any unit of length.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "tests/support/datafiles.hpp"

namespace {

// A C-alpha-like helix: 3.8 units between neighbours, ids from 101, scaled by `scale`.
std::vector<ChainAtom> Helix(int n, double scale) {
  std::vector<ChainAtom> out;
  for (int i = 0; i < n; ++i) {
    double a = 1.745 * i; // 100 degrees per residue, rise 1.5: an alpha helix
    out.push_back({scale * 2.3 * std::cos(a), scale * 2.3 * std::sin(a), scale * 1.5 * i, 101 + i});
  }
  return out;
}

TEST(CheckDistances, VerdictsInAnyUnit) {
  for (double scale : {1.0, 0.001, 1000.0}) {
    SCOPED_TRACE(scale);
    EXPECT_EQ(CheckDistancesBetweenAtoms(Helix(40, scale)), "OK");

    std::vector<ChainAtom> gap = Helix(40, scale);
    for (size_t i = 20; i < gap.size(); ++i)
      gap[i].z += scale * 12.0; // 20/21 now far apart
    std::string msg = CheckDistancesBetweenAtoms(gap);
    EXPECT_NE(msg.find("break"), std::string::npos) << msg;
    EXPECT_NE(msg.find("120 and 121"), std::string::npos) << msg;

    std::vector<ChainAtom> clash = Helix(40, scale);
    clash[30].x = clash[5].x, clash[30].y = clash[5].y, clash[30].z = clash[5].z;
    msg = CheckDistancesBetweenAtoms(clash);
    EXPECT_NE(msg.find("too close: atoms 106 and 131"), std::string::npos) << msg;
  }
}

TEST(CheckDistances, TinyAndDegenerateChains) {
  EXPECT_EQ(CheckDistancesBetweenAtoms({}), "OK");
  EXPECT_EQ(CheckDistancesBetweenAtoms({{1, 2, 3, 1}}), "OK");
  std::string msg = CheckDistancesBetweenAtoms({{1, 2, 3, 1}, {1, 2, 3, 2}, {1, 2, 3, 3}});
  EXPECT_NE(msg, "OK");
  EXPECT_FALSE(msg.empty());
}

TEST(CheckDistances, ProteinWithUnresolvedResidues) {
  std::string path = zoo::DataFile("proteins/ca_xyz/1uaj_A.xyz");
  if (path.empty())
    GTEST_SKIP() << "ground-truth data not present";
  bool error = true;
  std::vector<ChainAtom> chain = ChainRead(path.data(), error);
  ASSERT_FALSE(error);
  std::string msg = CheckDistancesBetweenAtoms(chain);
  EXPECT_NE(msg.find("break"), std::string::npos) << msg;
  EXPECT_NE(msg.find("168 and 169 are 16.7"), std::string::npos) << msg; // 16.75 A

  std::string clean = zoo::DataFile("proteins/ca_xyz/1ns5_A.xyz");
  ASSERT_FALSE(clean.empty());
  EXPECT_EQ(CheckDistancesBetweenAtoms(ChainRead(clean.data(), error)), "OK");
}

} // namespace
