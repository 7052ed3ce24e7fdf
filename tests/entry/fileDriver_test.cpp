// The file driver and the in-memory file call on bad input: no names, a missing or empty chain
// file, an unknown run type; the output file exists (truncated) whatever happens next.
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "entry/entry.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/datafiles.hpp"

TEST(FileDriver, BadInput) {
  const std::string dir = zoo::TempPath("fileDriver_");
  std::string trefoil = zoo::SourceFile("examples/chains/trefoil_closed.xyz"),
              empty = dir + "empty.xyz", out = dir + "out.txt", missing = dir + "missing.xyz";
  std::ofstream(empty).close();
  const std::string unreadable = "Unable to open file or empty file (or wrong data)!\n";
  const struct {
    const char* name;
    int type;
    char* in;
    char* out;
    int rc;
    std::string verdict, err, left;
  } cases[] = {
      {"no input name", 0, nullptr, out.data(), -1, "", unreadable, ""},
      {"missing file", 0, missing.data(), out.data(), -1, "", unreadable, ""},
      {"empty file", 2, empty.data(), out.data(), -1, "", unreadable, ""},
      {"unknown type", 1, trefoil.data(), out.data(), 0, "",
       "\nUnpossible error with type (tresk.FindKnots()).\n", ""},
      {"no output name", 0, trefoil.data(), nullptr, 0, "3_1(100%) \n", "", "old contents"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::ofstream(out) << "old contents";
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(FindKnots(c.type, c.in, c.out, 0, 10, 20, 0, 1, 0), c.rc);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), c.verdict);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), c.err);
    std::stringstream left;
    left << std::ifstream(out).rdbuf();
    EXPECT_EQ(left.str(), c.left);
  }
  // The in-memory file call without a name still scans, and writes nowhere.
  testing::internal::CaptureStderr();
  EXPECT_EQ(FindKnotFingerprint(zoo::TorusKnot(2, 3, 30), nullptr, 100, 100, 0, 2, 1, 15, false,
                                768000000ULL),
            1);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("Choosen 1 points"), std::string::npos);
  std::remove(empty.c_str()), std::remove(out.c_str());
}
