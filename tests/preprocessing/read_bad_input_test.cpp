// Bad and hostile chain files: each gives a clear message from the reader (and an error from
// ChainRead), never a crash, a hang or a silently wrong chain; small good files of each layout.
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "preprocessing/readChain.hpp"
#include "tests/support/datafiles.hpp"

namespace {

struct BadFile {
  const char* path;    // under tests/data, or absolute
  const char* message; // a part of the reader's message
};

TEST(ReadBadInput, ClearMessageAndNoChain) {
  const BadFile cases[] = {
      {"repro/stars.pdb", "coordinate field '********' is not a number"},
      {"repro/nonascii_res.pdb", "non-ASCII character in an atom record"},
      {"repro/cif_bigid.cif", "_atom_site.id value '99999999999'"},
      {"repro/big.xyz", "beyond +-1e9"},
      {"repro/scaled_1e154.xyz", "beyond +-1e9"},
      {"/dev/zero", "is not a regular file"},
      {"missing.xyz", "cannot open"},
  };
  for (const BadFile& c : cases) {
    SCOPED_TRACE(c.path);
    const std::string path =
        c.path[0] == '/' ? c.path : zoo::SourceFile(std::string("tests/data/") + c.path);
    const tresk::ReadResult r = tresk::ReadChain(path);
    EXPECT_NE(r.error.find(c.message), std::string::npos) << r.error;
    EXPECT_TRUE(r.atoms.empty());
    bool error = false;
    EXPECT_TRUE(ChainRead(const_cast<char*>(path.c_str()), error).empty());
    EXPECT_TRUE(error);
  }
  bool error = false;
  EXPECT_TRUE(ChainRead(nullptr, error).empty());
  EXPECT_TRUE(error);
}

TEST(ReadBadInput, ParserTrapsAreRoutedAround) {
  // An SSBOND line of 73 characters made gemmi read out of bounds; the crambin trace is intact.
  const tresk::ReadResult ss = tresk::ReadChain(zoo::SourceFile("tests/data/repro/ssbond73.pdb"));
  EXPECT_EQ(ss.error, "");
  EXPECT_EQ(ss.atoms.size(), 46u);
  // Model 1 is read by default even when model 2 comes first in the file.
  const tresk::ReadResult m = tresk::ReadChain(zoo::SourceFile("tests/data/repro/model2first.cif"));
  EXPECT_EQ(m.model, "1");
  tresk::ReadOptions second;
  second.model = 2;
  EXPECT_EQ(tresk::ReadChain(zoo::SourceFile("tests/data/repro/model2first.cif"), second).model,
            "2");
}

// Small files written on the spot: text layouts (ids or not, count header, comments, a
// byte-order mark) and a PDB file told by its content, with a calcium ion named CA and a water.
TEST(ReadBadInput, SmallFilesGoodAndBad) {
  const std::string pdb =
      "ATOM      2  CA  GLY A   5       1.000   0.000   0.000  1.00  0.00           C\n"
      "ATOM      3  CA AALA A   6       4.500   0.000   0.000  0.50  0.00           C\n"
      "ATOM      4  CA BALA A   6       4.900   0.500   0.000  0.50  0.00           C\n"
      "HETATM    6 CA    CA A 101      20.000   0.000   0.000  1.00  0.00          CA\n"
      "HETATM    7  O   HOH A 201      30.000   0.000   0.000  1.00  0.00           O\n";
  struct Case {
    const char* name;
    std::string bytes;
    const char* message;  // a part of the message; "" when the file must be read
    std::vector<int> ids; // and then the ids read
  } cases[] = {
      {"nul.xyz", std::string("0 0 0\n1 0 0\n\0 junk", 18), "NUL byte", {}},
      {"bom.xyz",
       "\xEF\xBB\xBF"
       "1.5 0 0\n4 0 0\n",
       "",
       {1, 2}},
      {"comments.xyz", "# a\n% b\n\n 1.5 2 3 # c\n4 5 6\r\n", "", {1, 2}},
      {"ids.xyz", "7 1.5 0 0\n-2 4 0 0\n", "", {7, -2}},
      {"header.knt", "  2\n1.5 0 0\n4 0 0\n", "", {1, 2}},
      {"text.coords", "1.5 0 0\n4 1 1\n", "", {1, 2}},
      {"count.xyz", "5\n0 0 0\n1 0 0\n", "announces 5 atoms", {}},
      {"numbers.xyz", "+1.5e0 0x1p1 .5\n4 1e-320 -0\n", "", {1, 2}}, // as strtod reads them
      {"nan.xyz", "0 0 0\nnan 0 0\n", "not a finite number", {}},
      {"overflow.xyz", "0 0 0\n1e400 0 0\n", "not a finite number", {}},
      {"letters.xyz", "0 0 x\n", "not a finite number", {}},
      {"columns.xyz", "0 0\n", "expected x y z", {}},
      {"mixed.xyz", "0 0 0\n5 1 1 1\n", "expected x y z", {}},
      {"id.xyz", "1.5 0 0 0\n", "the id is not an integer", {}},
      {"empty.xyz", "", "no atoms", {}},
      {"pdb.structure", pdb, "", {5, 6}},
      {"broken.cif", "data_x\nloop_\n_atom_site.id\n'unterminated\n", "broken.cif", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = zoo::TempPath(c.name);
    FILE* f = std::fopen(path.c_str(), "wb");
    std::fwrite(c.bytes.data(), 1, c.bytes.size(), f);
    std::fclose(f);
    const tresk::ReadResult r = tresk::ReadChain(path);
    EXPECT_NE(r.error.find(c.message), std::string::npos) << r.error;
    EXPECT_EQ(r.error.empty(), *c.message == '\0') << r.error;
    std::vector<int> ids;
    for (const ChainAtom& a : r.atoms)
      ids.push_back(a.id);
    EXPECT_EQ(ids, c.ids);
    if (ids.size() == 2) {
      EXPECT_EQ(r.atoms[0].x + r.atoms[1].x, 5.5); // in the PDB file the first of equal altlocs
    }
  }
}

} // namespace
