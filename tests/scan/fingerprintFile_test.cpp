// A fingerprint file read back: other formats, short rows, positions outside the chain, numbers
// out of range and absurd atom counts are rejected with the offending line.
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "entry/api.hpp"

TEST(FingerprintFile, RejectsBadInput) {
  auto header = [](const std::string& atoms) {
    std::string h = "# 21 30";
    for (int band = 90; band >= 0; band -= 3)
      h += " >" + std::to_string(band);
    return h + " IN 1 " + atoms + "\n";
  };
  // A trefoil at >90 % with the given first id, inside share and positions.
  auto row = [](const std::string& id, const std::string& inside, const std::string& positions) {
    std::string r = id + " 30 3_1";
    for (int band = 1; band < 31; ++band)
      r += " 0";
    return r + " " + inside + " " + positions + "\n";
  };
  const std::string ten = header("10");
  const struct {
    const char* name;
    std::string text;
    const char* says;
  } cases[] = {
      {"empty", "", "no fingerprint header"},
      {"polynomial mode", "{(1, 10): {'1 -1 1': 1}}", "line 1: not the header"},
      {"atom count beyond an int", header("99999999999"), "line 1: not the header"},
      {"absurd atom count", header("2000000000"), "line 1: the header claims 2000000000 atoms"},
      {"short row", ten + "21 30 3_1 0 1 10\n", "line 2: expected 36 fields, found 6"},
      {"first position 0", ten + row("21", "0", "0 10"), "line 2: positions 0..10"},
      {"last beyond the chain", ten + "\n" + row("21", "0", "1 11"), "line 3: positions 1..11"},
      {"first not below last", ten + row("21", "0", "5 5"), "lie outside the chain"},
      {"id beyond an int", ten + row("2147483648", "0", "1 9"), "must be integers"},
      {"text in place of a number", ten + row("21", "x", "1 9"), "must be integers"},
      {"a good file (read last)", ten + row("21", "0", "1 10") + "\n" + row("22", "5", "2 9"), ""},
  };
  tresk::Fingerprint f;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::istringstream in(c.text);
    const std::string error = tresk::ReadFingerprint(in, f);
    EXPECT_EQ(error.empty(), *c.says == '\0') << error;
    EXPECT_NE(error.find(c.says), std::string::npos) << error;
  }
  ASSERT_EQ(f.cells.size(), 2u);
  EXPECT_EQ(f.cells[0].knot + " " + std::to_string(f.cells[0].percent), "3_1 95.500000");
}
