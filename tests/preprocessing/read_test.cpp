// ChainRead on good and bad files of every accepted format, written into a temporary folder.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"

namespace {

namespace fs = std::filesystem;

fs::path TempDir() {
  fs::path dir = fs::temp_directory_path() / "chainprep_read_test";
  fs::create_directories(dir);
  return dir;
}

std::string Write(const std::string& name, const std::string& bytes) {
  fs::path path = TempDir() / name;
  std::ofstream(path, std::ios::binary) << bytes;
  return path.string();
}

// A gzip member holding `data` in stored (uncompressed) deflate blocks.
std::string Gzip(const std::string& data) {
  uint32_t crc = 0xFFFFFFFFu;
  for (unsigned char c : data) {
    crc ^= c;
    for (int k = 0; k < 8; ++k)
      crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  crc ^= 0xFFFFFFFFu;
  std::string out = {'\x1f', '\x8b', 8, 0, 0, 0, 0, 0, 0, 3};
  size_t pos = 0;
  do {
    size_t len = std::min<size_t>(65535, data.size() - pos);
    bool last = pos + len == data.size();
    out += static_cast<char>(last ? 1 : 0);
    out += static_cast<char>(len & 0xFF);
    out += static_cast<char>(len >> 8);
    out += static_cast<char>(~len & 0xFF);
    out += static_cast<char>((~len >> 8) & 0xFF);
    out += data.substr(pos, len);
    pos += len;
  } while (pos < data.size());
  for (uint32_t v : {crc, static_cast<uint32_t>(data.size())})
    for (int k = 0; k < 4; ++k)
      out += static_cast<char>((v >> (8 * k)) & 0xFF);
  return out;
}

std::vector<ChainAtom> Read(const std::string& path, bool& error) {
  std::string name = path;
  return ChainRead(name.data(), error);
}

// Chain A: residues 5-7, residue 6 with two alternative C-alpha positions; a calcium ion named CA,
// a water, and a second chain that must not be read.
const char* kPdb =
    "HEADER    TEST\n"
    "ATOM      1  N   GLY A   5       0.000   0.000   0.000  1.00  0.00           N\n"
    "ATOM      2  CA  GLY A   5       1.000   0.000   0.000  1.00  0.00           C\n"
    "ATOM      3  CA AALA A   6       4.800   0.000   0.000  0.50  0.00           C\n"
    "ATOM      4  CA BALA A   6       4.900   0.500   0.000  0.50  0.00           C\n"
    "ATOM      5  CA  GLY A   7       8.600   0.000   0.000  1.00  0.00           C\n"
    "HETATM    6 CA    CA A 101      20.000   0.000   0.000  1.00  0.00          CA\n"
    "HETATM    7  O   HOH A 201      30.000   0.000   0.000  1.00  0.00           O\n"
    "TER\n"
    "ATOM      8  CA  GLY B   1      50.000   0.000   0.000  1.00  0.00           C\n"
    "END\n";

// The same chain A in mmCIF (author numbers 10-12), plus a second model that must be ignored.
const char* kCif =
    "data_test\nloop_\n_atom_site.group_PDB\n_atom_site.id\n_atom_site.type_symbol\n"
    "_atom_site.label_atom_id\n_atom_site.label_alt_id\n_atom_site.label_comp_id\n"
    "_atom_site.label_asym_id\n_atom_site.label_entity_id\n_atom_site.label_seq_id\n"
    "_atom_site.Cartn_x\n_atom_site.Cartn_y\n_atom_site.Cartn_z\n_atom_site.occupancy\n"
    "_atom_site.B_iso_or_equiv\n_atom_site.auth_seq_id\n_atom_site.auth_asym_id\n"
    "_atom_site.pdbx_PDB_model_num\n"
    "ATOM 1 N N . GLY A 1 1 0.0 0.0 0.0 1.0 0.0 10 A 1\n"
    "ATOM 2 C CA . GLY A 1 1 1.0 0.0 0.0 1.0 0.0 10 A 1\n"
    "ATOM 3 C CA A ALA A 1 2 4.8 0.0 0.0 1.0 0.0 11 A 1\n"
    "ATOM 4 C CA B ALA A 1 2 4.9 0.5 0.0 1.0 0.0 11 A 1\n"
    "ATOM 5 C CA . GLY A 1 3 8.6 0.0 0.0 1.0 0.0 12 A 1\n"
    "HETATM 6 CA CA . CA B 2 . 20.0 0.0 0.0 1.0 0.0 101 A 1\n"
    "ATOM 7 C CA . GLY A 1 1 9.0 9.0 9.0 1.0 0.0 10 A 2\n";

struct ReadCase {
  const char* name;
  std::string file;
  std::string content;
  bool error;
  std::vector<int> ids; // expected ids in order (when no error)
  double firstX;
  double secondX;
};

TEST(ChainRead, FormatsGoodAndBad) {
  const std::string xyz = "# a comment\n% another\n\n 1.5 2 3 # trailing\n4 5 6\r\n7 8 9\n";
  const std::vector<ReadCase> cases = {
      {"xyz with comments, ids 1..n", "a.xyz", xyz, false, {1, 2, 3}, 1.5, 4},
      {"count header", "c.knt", "  3\n0 0 0\n1 0 0\n2 0 0\n", false, {1, 2, 3}, 0, 1},
      {"count header that does not match", "d.knt", "4\n0 0 0\n1 0 0\n", true, {}, 0, 0},
      {"unknown extension, text content", "e.coords", "0 0 0\n1 1 1\n", false, {1, 2}, 0, 1},
      {"gzip text", "f.xyz.gz", Gzip(xyz), false, {1, 2, 3}, 1.5, 4},
      {"two columns", "g.xyz", "0 0\n", true, {}, 0, 0},
      {"letters", "h.xyz", "0 0 x\n", true, {}, 0, 0},
      {"mixed layouts", "i.xyz", "0 0 0\n5 1 1 1\n", true, {}, 0, 0},
      {"NaN", "j.xyz", "0 0 0\nnan 1 1\n", true, {}, 0, 0},
      {"infinity", "k.xyz", "0 0 0\n1 inf 1\n", true, {}, 0, 0},
      {"empty", "l.xyz", "", true, {}, 0, 0},
      {"binary garbage", "n.bin", std::string("\x01\xff\x00\x7f garbage", 12), true, {}, 0, 0},
      {"PDB: chain A, first altloc, no ions", "o.pdb", kPdb, false, {5, 6, 7}, 1.0, 4.8},
      {"PDB detected by content", "p.txt.structure", kPdb, false, {5, 6, 7}, 1.0, 4.8},
      {"gzip PDB", "q.pdb.gz", Gzip(kPdb), false, {5, 6, 7}, 1.0, 4.8},
      {"mmCIF: first model, first altloc", "s.cif", kCif, false, {10, 11, 12}, 1.0, 4.8},
      {"broken mmCIF", "u.cif", "data_x\nloop_\n_atom_site.id\n'unterminated\n", true, {}, 0, 0},
  };
  for (const ReadCase& c : cases) {
    SCOPED_TRACE(c.name);
    bool error = !c.error; // the reader must overwrite whatever the caller left there
    std::vector<ChainAtom> chain = Read(Write(c.file, c.content), error);
    EXPECT_EQ(error, c.error);
    if (c.error) {
      EXPECT_TRUE(chain.empty());
      continue;
    }
    std::vector<int> ids;
    for (const ChainAtom& a : chain)
      ids.push_back(a.id);
    EXPECT_EQ(ids, c.ids);
    ASSERT_GE(chain.size(), 2u);
    EXPECT_DOUBLE_EQ(chain[0].x, c.firstX);
    EXPECT_DOUBLE_EQ(chain[1].x, c.secondX);
  }
}

TEST(ChainRead, MissingFileAndNullName) {
  bool error = false;
  EXPECT_TRUE(Read((TempDir() / "no_such_file.xyz").string(), error).empty());
  EXPECT_TRUE(error);
  error = false;
  EXPECT_TRUE(ChainRead(nullptr, error).empty());
  EXPECT_TRUE(error);
}

} // namespace
