// The `tresk` program as a user runs it, through one runner: every command on the bundled
// example chains, the fingerprint unchanged by threads and drawn as PNG and SVG, and the exit
// status and message on bad options and bad input.
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/curves.hpp"

namespace {

struct Result {
  int status;
  std::string out; // standard output and standard error together
};

std::string Quote(const std::string& path) {
  return "'" + path + "'";
}

Result Tresk(const std::string& args) {
  const std::string command =
      Quote(std::string(TRESK_BINARY_DIR) + "/tresk") + " " + args + " 2>&1";
  Result result{-1, ""};
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr)
    return result;
  std::array<char, 4096> buffer;
  for (std::size_t n; (n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
    result.out.append(buffer.data(), n);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

std::string Slurp(const std::string& path) {
  std::stringstream s;
  s << std::ifstream(path, std::ios::binary).rdbuf();
  return s.str();
}

std::string Example(const std::string& name) {
  return Quote(zoo::SourceFile("examples/chains/" + name));
}

class Cli : public testing::Test {
protected:
  void SetUp() override {
    if (!std::ifstream(std::string(TRESK_BINARY_DIR) + "/tresk").good())
      GTEST_SKIP() << "the tresk program is not built";
  }
  std::string Temp(const std::string& name) { return testing::TempDir() + "tresk_cli_" + name; }
};

TEST_F(Cli, EveryCommand) {
  const std::string fp = Temp("1.fp"), fp2 = Temp("2.fp"), png = Temp("fp.png"),
                    svg = Temp("fp.SVG");
  const std::string matrix =
      "matrix " + Example("knotted_core.xyz") + " -s 30 -t 101 -n 4 --seed 3 -q -o ";
  const struct {
    std::string args;
    const char* starts; // the beginning of the output
    const char* says;   // somewhere in the output
  } cases[] = {
      {"knot " + Example("trefoil_open.xyz") + " --seed 1", "3_1(", ""},
      {"knot " + Example("trefoil_closed.xyz") + " -m 0", "3_1(100%) \n", ""},
      {"poly " + Example("trefoil_closed.xyz"), "atoms: ", "coefficients: 1 -1 1\n"},
      {matrix + Quote(fp), "", ""},
      {matrix + Quote(fp2) + " -j 2", "", ""},
      {"plot " + Quote(fp) + " -o " + Quote(png) + " --size 400 --title knotted", "", ""},
      {"plot " + Quote(fp) + " -o " + Quote(svg), "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.args);
    const Result r = Tresk(c.args);
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(r.out.rfind(c.starts, 0), 0u) << r.out;
    EXPECT_NE(r.out.find(c.says), std::string::npos) << r.out;
  }
  EXPECT_NE(Slurp(fp).find(" 3_1 "), std::string::npos) << Slurp(fp);
  EXPECT_EQ(Slurp(fp2), Slurp(fp)); // the same seed on two threads
  EXPECT_EQ(Slurp(png).substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_NE(Slurp(svg).find("<svg"), std::string::npos);
  for (const std::string& path : {fp, fp2, png, svg})
    std::remove(path.c_str());
}

TEST_F(Cli, BadInputFailsWithAMessage) {
  const std::string empty = Temp("empty.xyz"), dictionary = Temp("dictionary.fp");
  std::ofstream(empty).close();
  std::ofstream(dictionary) << "{(1, 30): {'1 -1 1': 1}}";
  const std::string open = Example("trefoil_open.xyz");
  const struct {
    std::string args;
    const char* says;
  } cases[] = {
      {"", "subcommand"},
      {"knot /nonexistent/chain.xyz", "/nonexistent/chain.xyz"},
      {"knot " + Quote(empty), "Unable to open file"},
      {"knot " + open + " -m 9", "9"},
      {"knot " + open + " -n many", "many"},
      {"knot " + open + " --seed -3", "-3"},
      {"poly " + Quote(empty), "tresk poly: cannot read a chain"},
      {"poly " + Example("trefoil_closed.xyz") + " -d 60", "60"},
      {"matrix " + Quote(empty) + " -o x.fp", "tresk matrix: cannot read a chain"},
      {"matrix " + open + " -o /nonexistent/x.fp", "tresk matrix: cannot write"},
      {"matrix " + open + " -o x.fp -j -1", "-1"},
      {"plot " + Quote(dictionary) + " -o x.png", "line 1: not the header"},
      {"plot " + Quote(dictionary) + " -o x.jpg --size 100", "100"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.args);
    const Result r = Tresk(c.args);
    EXPECT_NE(r.status, 0) << r.out;
    EXPECT_NE(r.out.find(c.says), std::string::npos) << r.out;
  }
  std::remove(empty.c_str());
  std::remove(dictionary.c_str());
}

} // namespace
