// `tresk matrix` and `tresk plot` as a user runs them, and the fingerprint picture drawn by
// the plotting function directly: reading a fingerprint, writing PNG and SVG, rejecting bad
// input.
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/curves.hpp"
#include "tests/support/datafiles.hpp"

#ifdef TRESK_HAVE_PLOT
#include "cli/plot.hpp"
#endif

namespace {

struct Result {
  int status;
  std::string out; // standard output and standard error together
};

Result Tresk(const std::string& args) {
  const std::string command = "'" + std::string(TRESK_BINARY_DIR) + "/tresk' " + args + " 2>&1";
  Result result{-1, ""};
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr)
    return result;
  std::array<char, 4096> buffer;
  std::size_t n;
  while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
    result.out.append(buffer.data(), n);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

std::string Quote(const std::string& path) {
  return "'" + path + "'";
}

class ScanCli : public testing::Test {
protected:
  void SetUp() override {
    if (!std::ifstream(std::string(TRESK_BINARY_DIR) + "/tresk").good()) {
      GTEST_SKIP() << "the tresk program is not built";
    }
  }
};

TEST_F(ScanCli, MatrixThenPlot) {
  const std::string chain = Quote(zoo::SourceFile("examples/chains/knotted_core.xyz"));
  const std::string one = testing::TempDir() + "tresk_matrix_1.txt";
  const std::string two = testing::TempDir() + "tresk_matrix_2.txt";
  const std::string options = " -s 30 -t 101 -n 4 --seed 3 -q";
  Result r = Tresk("matrix " + chain + " -o " + Quote(one) + options);
  ASSERT_EQ(r.status, 0) << r.out;
  EXPECT_EQ(r.out, ""); // --quiet
  const std::string text = Slurp(one);
  EXPECT_EQ(text.rfind("# ", 0), 0u) << text;
  EXPECT_NE(text.find(" >90 >87 "), std::string::npos);
  EXPECT_NE(text.find("3_1"), std::string::npos) << text;
  // The same seed on two threads writes the same file.
  ASSERT_EQ(Tresk("matrix " + chain + " -o " + Quote(two) + options + " --threads 2").status, 0);
  EXPECT_EQ(Slurp(two), text);

  const std::string png = testing::TempDir() + "tresk_fingerprint.png";
  r = Tresk("plot " + Quote(one) + " -o " + Quote(png) + " --size 400 --title knotted");
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_EQ(Slurp(png).substr(0, 4), "\x89PNG");
  std::remove(one.c_str());
  std::remove(two.c_str());
  std::remove(png.c_str());
}

TEST_F(ScanCli, BadInputFails) {
  const std::string junk = testing::TempDir() + "tresk_not_a_fingerprint.txt";
  std::ofstream(junk) << "{(1, 30): {'1 -1 1': 1}}";
  struct Case {
    const char* name;
    std::string args;
  };
  const Case cases[] = {
      {"plot of a polynomial dictionary", "plot " + Quote(junk) + " -o x.png"},
      {"matrix of a missing file", "matrix /nonexistent/chain.xyz -o x.txt"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Result r = Tresk(c.args);
    EXPECT_NE(r.status, 0) << r.out;
    EXPECT_FALSE(r.out.empty());
  }
  std::remove(junk.c_str());
}

#ifdef TRESK_HAVE_PLOT

std::string SmallFingerprint() {
  // Ten atoms numbered 21..30; a trefoil at 95% on 1..10 and a 4_1 at 60% on 2..9.
  std::string trefoil = "21 30 3_1", figure = "22 29";
  for (int k = 1; k < 31; ++k)
    trefoil += " 0";
  for (int k = 0; k < 31; ++k)
    figure += k == 11 ? " 4_1,3_1" : " 0";
  return "# 21 30 >90 >87 >84 >81 >78 >75 >72 >69 >66 >63 >60 >57 >54 >51 >48 >45 >42 >39 >36 "
         ">33 >30 >27 >24 >21 >18 >15 >12 >9 >6 >3 >0 IN 1 10\n" +
         trefoil + " 0 1 10\n" + figure + " 5 2 9\n";
}

TEST(FingerprintPlot, ReadsRowsAndWritesPngAndSvg) {
  std::istringstream in(SmallFingerprint());
  Fingerprint f;
  ASSERT_EQ(ParseFingerprint(in, f), "");
  ASSERT_EQ(f.cells.size(), 2u);
  EXPECT_EQ(f.atoms, 10);
  EXPECT_EQ(f.cells[0].knot, "3_1");
  EXPECT_GT(f.cells[0].percent, 90);
  EXPECT_EQ(f.cells[1].knot, "4_1"); // the first name of the highest band
  EXPECT_GT(f.cells[1].percent, 57);
  EXPECT_LE(f.cells[1].percent, 60);
  const std::string png = testing::TempDir() + "tresk_plot_test.png";
  const std::string svg = testing::TempDir() + "tresk_plot_test.SVG";
  EXPECT_EQ(DrawFingerprint(f, png, PlotStyle{}), "");
  EXPECT_EQ(Slurp(png).substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(DrawFingerprint(f, svg, PlotStyle{400, 3, "t"}), "");
  EXPECT_NE(Slurp(svg).find("<svg"), std::string::npos);
  // An unknotted chain still gives a picture (the empty triangle).
  std::istringstream unknot(SmallFingerprint().substr(0, SmallFingerprint().find('\n') + 1) +
                            "UNKNOT\n");
  Fingerprint empty;
  ASSERT_EQ(ParseFingerprint(unknot, empty), "");
  EXPECT_TRUE(empty.cells.empty());
  EXPECT_EQ(DrawFingerprint(empty, png, PlotStyle{}), "");
  std::remove(png.c_str());
  std::remove(svg.c_str());
}

TEST(FingerprintPlot, RejectsBadInput) {
  const std::string header = SmallFingerprint().substr(0, SmallFingerprint().find('\n') + 1);
  struct Case {
    const char* name;
    std::string text;
  };
  // A row of a trefoil at >90% with the given inside share and positions.
  auto row = [](const std::string& inside, const std::string& first, const std::string& last) {
    std::string r = "21 30 3_1";
    for (int k = 1; k < 31; ++k)
      r += " 0";
    return r + " " + inside + " " + first + " " + last + "\n";
  };
  const Case cases[] = {
      {"empty", ""},
      {"polynomial mode", "{(1, 10): {'1 -1 1': 1}}"},
      {"short row", header + "21 30 3_1 0 1 10\n"},
      {"positions outside the chain", header + row("0", "0", "11")},
      {"text in place of a number", header + row("x", "1", "9")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::istringstream in(c.text);
    Fingerprint f;
    EXPECT_NE(ParseFingerprint(in, f), "");
  }
  Fingerprint f;
  std::istringstream in(SmallFingerprint());
  ASSERT_EQ(ParseFingerprint(in, f), "");
  EXPECT_NE(DrawFingerprint(f, testing::TempDir() + "picture.jpg", PlotStyle{}), "");
  EXPECT_NE(DrawFingerprint(f, "/nonexistent-dir/picture.png", PlotStyle{}), "");
  EXPECT_NE(PlotFingerprintFile("/nonexistent-dir/fingerprint.txt", "x.png", PlotStyle{}), "");
}

#endif // TRESK_HAVE_PLOT

} // namespace
