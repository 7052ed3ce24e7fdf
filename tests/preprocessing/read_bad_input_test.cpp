// Bad and hostile chain files: each gives a clear message from the reader (and an error from
// ChainRead), never a crash, a hang or a silently wrong chain.
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

TEST(ReadBadInput, TextFilesWithNulByteOrMark) {
  const std::string dir = testing::TempDir();
  struct Case {
    const char* name;
    std::string bytes;
    const char* message; // "" when the file must be read
  } cases[] = {
      {"nul.xyz", std::string("0 0 0\n1 0 0\n1 1 0\n0 1 1\n\0 junk", 30), "NUL byte"},
      {"bom.xyz",
       "\xEF\xBB\xBF"
       "0 0 0\n1 0 0\n1 1 0\n0 1 1\n",
       ""},
      {"count.xyz", "5\n0 0 0\n1 0 0\n", "announces 5 atoms"},
      {"nan.xyz", "0 0 0\nnan 0 0\n1 1 0\n", "not a finite number"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = dir + c.name;
    FILE* f = std::fopen(path.c_str(), "wb");
    std::fwrite(c.bytes.data(), 1, c.bytes.size(), f);
    std::fclose(f);
    const tresk::ReadResult r = tresk::ReadChain(path);
    if (*c.message == '\0') {
      EXPECT_EQ(r.error, "");
      EXPECT_EQ(r.atoms.size(), 4u);
    } else {
      EXPECT_NE(r.error.find(c.message), std::string::npos) << r.error;
    }
  }
}

} // namespace
