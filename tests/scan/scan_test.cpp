// The fingerprint drivers: header, rows, "UNKNOT", the polynomial dictionaries (accumulated over
// the scan in the file driver, per subchain in the string driver), the repeated text of the
// string driver, and output that does not depend on the number of threads.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entry/entry.hpp"
#include "scan/scan.hpp"
#include "scan/threads.hpp"
#include "tests/scan/knotted_core.hpp"
#include "tests/scan/stream_capture.hpp"
#include "tests/support/curves.hpp"

namespace {

constexpr unsigned long long kBudget = 768000000ULL;
const char* const kColumns =
    " >90 >87 >84 >81 >78 >75 >72 >69 >66 >63 >60 >57 >54 >51 >48 >45 >42 >39 >36 >33 >30 >27 "
    ">24 >21 >18 >15 >12 >9 >6 >3 >0 IN ";

// Half a turn of a helix, ids 5..24: every subchain closed by a straight segment is unknotted.
std::vector<ChainAtom> Arc() {
  std::vector<ChainAtom> chain;
  for (int i = 0; i < 20; ++i) {
    const double t = 3.0 * i / 19;
    chain.push_back({10 * std::cos(t), 10 * std::sin(t), 2.0 * t, 5 + i});
  }
  return chain;
}

std::string Header(int firstId, int lastId, int atoms) {
  return "# " + std::to_string(firstId) + " " + std::to_string(lastId) + kColumns + "1 " +
         std::to_string(atoms) + "\n";
}

struct Args {
  int step = 100;
  int threshold = 100;
  int method = 0;
  int closures = 3;
  int namesMode = 1;
};

std::string ToFile(const std::vector<ChainAtom>& chain, const Args& a) {
  // One file per test: ctest runs the tests of this binary as parallel processes.
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  const std::string path =
      testing::TempDir() + "tresk_scan_" + test->test_suite_name() + "_" + test->name() + ".txt";
  {
    std::fstream out(path, std::ios::out | std::ios::trunc);
    EXPECT_EQ(FindAllKnots(chain, out, a.step, a.threshold, a.method, a.closures, a.namesMode, 15,
                           false, kBudget),
              1);
  }
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  std::remove(path.c_str());
  return text.str();
}

std::string ToString(const std::vector<ChainAtom>& chain, const Args& a) {
  return FindAllKnots_string(chain, a.step, a.threshold, a.method, a.closures, a.namesMode, 15,
                             false, kBudget);
}

// The entries "(firstId, lastId): dictionary" of a polynomial-mode text.
std::vector<std::string> Entries(const std::string& text) {
  std::vector<std::string> out;
  const std::regex entry(R"(\(\d+, \d+\): (\{[^}]*\}|'[^']*'))");
  for (auto it = std::sregex_iterator(text.begin(), text.end(), entry);
       it != std::sregex_iterator(); ++it) {
    out.push_back(it->str());
  }
  return out;
}

class ScanDriver : public testing::Test {
protected:
  // Progress messages are checked elsewhere; here they would only clutter the output.
  StreamCapture log_{std::clog};
};

TEST_F(ScanDriver, UnknottedChainInEveryMode) {
  const std::vector<ChainAtom> arc = Arc();
  const std::string h = Header(5, 24, 20);
  Args a;
  a.step = 4;
  a.threshold = 10;
  EXPECT_EQ(ToFile(arc, a), h + "UNKNOT\n");
  EXPECT_EQ(ToString(arc, a), h + h + h + "UNKNOT\n");
  a.namesMode = 0;
  EXPECT_EQ(ToFile(arc, a), "{}");
  EXPECT_EQ(ToString(arc, a), "{}{}{}");
  // Without closures no subchain is analysed, knotted or not.
  Args none;
  none.closures = 0;
  EXPECT_EQ(ToFile(zoo::TorusKnot(2, 3, 30), none), Header(1, 30, 30) + "UNKNOT\n");
}

TEST_F(ScanDriver, KnottedWholeChainGivesOneRow) {
  // Step 100 puts only the whole chain on the grid; threshold 100 refines nowhere.
  const std::vector<ChainAtom> trefoil = zoo::TorusKnot(2, 3, 30);
  std::string cells = "3_1";
  for (int k = 0; k < 30; ++k)
    cells += " 0";
  const std::string row = "1 30 " + cells + " 0 1 30\n";
  const std::string h = Header(1, 30, 30);
  Args a;
  EXPECT_EQ(ToFile(trefoil, a), h + row);
  EXPECT_EQ(ToString(trefoil, a), h + h + row);

  // The in-memory file call writes the same file.
  const std::string path = testing::TempDir() + "tresk_fingerprint.txt";
  std::vector<char> name(path.begin(), path.end());
  name.push_back('\0');
  EXPECT_EQ(FindKnotFingerprint(trefoil, name.data(), 100, 100, 0, 3, 1, 15, false, kBudget), 1);
  std::ifstream in(path);
  std::stringstream written;
  written << in.rdbuf();
  EXPECT_EQ(written.str(), h + row);
  std::remove(path.c_str());
  EXPECT_EQ(FindKnotFingerprint_string(trefoil, 100, 100, 0, 3, 1, 15, false, kBudget),
            h + h + row);

  // Polynomial mode; with no crossing allowed for the exact way every text is empty, hence "0".
  EXPECT_EQ(FindAllKnots_string(trefoil, 100, 100, 0, 3, 0, 15, false, kBudget),
            "{(1, 30): {'1 -1 1': 1}}");
  EXPECT_EQ(FindAllKnots_string(trefoil, 100, 100, 0, 3, 0, 0, false, kBudget),
            "{(1, 30): {'0': 1}}");
}

TEST_F(ScanDriver, PolynomialTallyAccumulatesInTheFileAndNotInTheString) {
  // Every subchain of a trefoil, each closed twice the same way: alone, a subchain's
  // dictionary holds one polynomial at share 1; accumulated, later ones share it with the
  // unknotted subchains analysed before them.
  const std::vector<ChainAtom> trefoil = zoo::TorusKnot(2, 3, 24);
  Args a;
  a.step = 1;
  a.closures = 2;
  a.namesMode = 0;
  const std::string file = ToFile(trefoil, a);
  const std::string text = ToString(trefoil, a);
  const std::vector<std::string> fileRows = Entries(file);
  const std::vector<std::string> textRows = Entries(text);
  ASSERT_FALSE(textRows.empty()) << text;
  EXPECT_EQ(text.front(), '{');
  EXPECT_EQ(text.back(), '}');
  for (const std::string& row : textRows) {
    EXPECT_TRUE(std::regex_match(row, std::regex(R"(\(\d+, \d+\): \{'[^']*': 1\})"))) << row;
  }
  // The whole chain comes first in both; it is also the first subchain analysed.
  ASSERT_FALSE(fileRows.empty()) << file;
  EXPECT_EQ(fileRows.front(), textRows.front());
  EXPECT_EQ(fileRows.front(), "(1, 24): {'1 -1 1': 1}");
  bool shared = false;
  for (const std::string& row : fileRows)
    shared = shared || row.find("'1': ") != std::string::npos;
  EXPECT_TRUE(shared) << file;
}

TEST_F(ScanDriver, ThreadedRunsGiveTheSameTextAndLog) {
  const std::vector<ChainAtom> chain = zoo::KnottedCore(zoo::TorusKnot(2, 3, 40), 20, true, 3);
  struct Run {
    std::string names;
    std::string polies;
    std::string file;
    std::string log;
  };
  auto run = [&](int threads) {
    SetFingerprintThreads(threads);
    Run r;
    StreamCapture log(std::clog);
    std::srand(11);
    r.names = FindAllKnots_string(chain, 12, 40, 2, 4, 1, 15, false, kBudget);
    std::srand(11);
    r.polies = FindAllKnots_string(chain, 12, 40, 3, 3, 0, 15, false, kBudget);
    std::srand(11);
    Args a;
    a.step = 15;
    a.threshold = 30;
    a.method = 2;
    a.closures = 3;
    a.namesMode = 0;
    r.file = ToFile(chain, a);
    r.log = log.Text();
    SetFingerprintThreads(1);
    return r;
  };
  const Run single = run(1);
  EXPECT_NE(single.names.find("3_1"), std::string::npos) << single.names;
  for (int threads : {3}) {
    SCOPED_TRACE(threads);
    const Run multi = run(threads);
    EXPECT_EQ(multi.names, single.names);
    EXPECT_EQ(multi.polies, single.polies);
    EXPECT_EQ(multi.file, single.file);
    EXPECT_EQ(multi.log, single.log);
  }
}

} // namespace
