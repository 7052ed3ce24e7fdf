// Structures as users have them (tests/data/structures, made from crambin): every residue of the
// chosen chain whatever TER says, MSE written as HETATM, the alternate location with the highest
// occupancy, insertion codes, chain and model selection, author and label chain ids, gzip.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "preprocessing/readChain.hpp"
#include "tests/support/datafiles.hpp"

namespace {

std::string Structure(const std::string& name) {
  return zoo::SourceFile("tests/data/structures/" + name);
}

TEST(ReadStructures, ChainModelAndResidueChoicesInEveryFormat) {
  struct Case {
    std::string file, chain;
    int model;
    std::string readChain; // the chain reported back
    double firstX;         // x of the first CA
  };
  const Case cases[] = {
      {"crambin_edge.pdb", "", 0, "A", 16.967},  {"crambin_edge.pdb", "B", 0, "B", 46.967},
      {"crambin_edge.pdb", "A", 2, "A", 16.967}, {"crambin_edge.cif", "", 0, "A", 16.967},
      {"crambin_edge.cif", "Q", 0, "B", 46.967}, {"crambin_edge.cif.gz", "B", 2, "B", 46.967},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file + " chain '" + c.chain + "' model " + std::to_string(c.model));
    tresk::ReadOptions options;
    options.chain = c.chain;
    options.model = c.model;
    const tresk::ReadResult r = tresk::ReadChain(Structure(c.file), options);
    ASSERT_EQ(r.error, "");
    EXPECT_EQ(r.chain, c.readChain);
    EXPECT_EQ(r.model, c.model == 2 ? "2" : "1");
    // 46 residues and the inserted 25A, across the TER after residue 20; no water, no ligand.
    ASSERT_EQ(r.atoms.size(), 47u);
    EXPECT_DOUBLE_EQ(r.atoms[0].x, c.firstX);
    EXPECT_EQ(r.atoms[9].id, 10);                                   // MSE, a HETATM record
    EXPECT_DOUBLE_EQ(r.atoms[14].x - r.atoms[0].x, 4.282 - 16.967); // altloc B (occupancy 0.6)
    EXPECT_EQ(r.atoms[25].id, 25);                                  // 25A keeps the author number
    EXPECT_EQ(r.atoms[46].id, 46);
    EXPECT_DOUBLE_EQ(r.atoms[0].z, c.model == 2 ? 104.338 : 4.338);
  }
}

TEST(ReadStructures, SelectionErrorsAndChainList) {
  tresk::ReadOptions options;
  options.chain = "Z";
  EXPECT_EQ(tresk::ReadChain(Structure("crambin_edge.pdb"), options).error,
            "no chain Z with CA atoms in model 1");
  options.chain = "", options.model = 3;
  EXPECT_EQ(tresk::ReadChain(Structure("crambin_edge.cif"), options).error,
            "no model 3 in the file");
  EXPECT_EQ(tresk::PolymerChains(Structure("crambin_edge.cif.gz")),
            (std::vector<std::string>{"A", "B"}));
  // ChainRead gives the default choice.
  bool error = true;
  EXPECT_EQ(ChainRead(Structure("crambin_edge.pdb").data(), error).size(), 47u);
  EXPECT_FALSE(error);
}

} // namespace
