// The file driver: what each run type writes where, the unreadable input, the distance check,
// and the argument order of the wrapper.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entry/entry.hpp"
#include "tests/support/curves.hpp"

namespace {

std::string TempPath(const std::string& name) {
  return testing::TempDir() + "tresk_fileDriver_" + name;
}

void WriteText(const std::string& path, const std::string& text) {
  std::ofstream(path) << text;
}

std::string ReadText(const std::string& path) {
  std::ifstream in(path);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

bool Exists(const std::string& path) {
  return std::ifstream(path).good();
}

// A closed trefoil as an `id x y z` file.
std::string WriteTrefoil(const std::string& name, double gap = 0.0) {
  std::vector<ChainAtom> chain = zoo::TorusKnot(2, 3, 90);
  std::ostringstream text;
  for (std::size_t i = 0; i < chain.size(); ++i) {
    double shift = i >= chain.size() / 2 ? gap : 0.0;
    text << chain[i].id << " " << chain[i].x + shift << " " << chain[i].y << " " << chain[i].z
         << "\n";
  }
  std::string path = TempPath(name);
  WriteText(path, text.str());
  return path;
}

struct DriverRun {
  int rc;
  std::string out, err;
};

DriverRun Drive(int type, std::string in, std::string out, int check = 0, int method = 0,
                int closures = 1) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  int rc = FindKnots(type, in.data(), out.data(), check, 10, 20, method, closures, 0);
  return {rc, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

TEST(FileDriver, TypeZeroPrintsTheVerdictAndTruncatesTheOutputFile) {
  std::string in = WriteTrefoil("type0.xyz");
  std::string out = TempPath("type0.out");
  WriteText(out, "old contents");
  DriverRun run = Drive(0, in, out);
  EXPECT_EQ(run.rc, 0);
  EXPECT_EQ(run.out, "3_1(100%) \n");
  EXPECT_TRUE(Exists(out));
  EXPECT_EQ(ReadText(out), "");
}

TEST(FileDriver, UnknownTypeIsReportedAndStillReturnsZero) {
  std::string in = WriteTrefoil("type1.xyz");
  std::string out = TempPath("type1.out");
  WriteText(out, "old contents");
  DriverRun run = Drive(1, in, out);
  EXPECT_EQ(run.rc, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "\nUnpossible error with type (tresk.FindKnots()).\n");
  EXPECT_EQ(ReadText(out), "");
}

TEST(FileDriver, UnreadableInputLeavesAnEmptyOutputFile) {
  std::string empty = TempPath("empty.xyz");
  WriteText(empty, "");
  for (const std::string& in : {TempPath("does_not_exist.xyz"), empty}) {
    SCOPED_TRACE(in);
    std::string out = TempPath("unreadable.out");
    WriteText(out, "old contents");
    DriverRun run = Drive(0, in, out);
    EXPECT_EQ(run.rc, -1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "Unable to open file or empty file (or wrong data)!\n");
    EXPECT_TRUE(Exists(out));
    EXPECT_EQ(ReadText(out), "");
  }
}

TEST(FileDriver, FailedDistanceCheckIsReportedAndTheRunGoesOn) {
  std::string in = WriteTrefoil("gap.xyz", 40.0);
  std::string out = TempPath("gap.out");
  DriverRun run = Drive(0, in, out, /*check=*/1);
  EXPECT_EQ(run.rc, 0);
  std::string message = ReadText(out);
  ASSERT_GT(message.size(), 1u);
  EXPECT_EQ(message.back(), '\n');
  message.pop_back();
  EXPECT_NE(message, "OK");
  // The same message, followed by two line ends, on the log stream.
  EXPECT_NE(run.err.find(message + "\n\n"), std::string::npos) << run.err;
  EXPECT_FALSE(run.out.empty()); // a verdict all the same

  // An acceptable chain writes nothing anywhere.
  std::string good = WriteTrefoil("nogap.xyz");
  run = Drive(0, good, out, 1);
  EXPECT_EQ(ReadText(out), "");
  EXPECT_EQ(run.err, "");
}

TEST(FileDriver, WrapperReordersItsArguments) {
  // MainFindKnots(in, out, 2, 1, 3, 7, 10, 20, 0) must run FindKnots(2, in, out, 1, 10, 20,
  // 3, 7, 0): the same random sequence gives the same fingerprint file.
  std::string in = WriteTrefoil("wrapper.xyz");
  std::string viaMain = TempPath("wrapper_main.out");
  std::string direct = TempPath("wrapper_direct.out");
  testing::internal::CaptureStderr();
  std::srand(5);
  EXPECT_EQ(MainFindKnots(in.data(), viaMain.data(), 2, 1, 3, 7, 10, 20, 0), 0);
  std::srand(5);
  EXPECT_EQ(FindKnots(2, in.data(), direct.data(), 1, 10, 20, 3, 7, 0), 0);
  std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("The full matrix is written to the file " + direct + ".\n"),
            std::string::npos);
  EXPECT_FALSE(ReadText(direct).empty());
  EXPECT_EQ(ReadText(viaMain), ReadText(direct));
}

} // namespace
