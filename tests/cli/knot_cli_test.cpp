// `tresk knot` and `tresk poly` run as a user runs them: the built program on the bundled
// example chains, its help, and its exit status on bad input.
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/curves.hpp"
#include "tests/support/datafiles.hpp"

namespace {

struct Result {
  int status;
  std::string out; // standard output and standard error together
};

Result Tresk(const std::string& args) {
  std::string binary = std::string(TRESK_BINARY_DIR) + "/tresk";
  std::string command = "'" + binary + "' " + args + " 2>&1";
  Result result{-1, ""};
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr)
    return result;
  std::array<char, 4096> buffer;
  std::size_t n;
  while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
    result.out.append(buffer.data(), n);
  int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

std::string Example(const std::string& name) {
  return "'" + zoo::SourceFile("examples/chains/" + name) + "'";
}

class KnotCli : public testing::Test {
protected:
  void SetUp() override {
    if (!std::ifstream(std::string(TRESK_BINARY_DIR) + "/tresk").good()) {
      GTEST_SKIP() << "the tresk program is not built";
    }
  }
};

TEST_F(KnotCli, NamesTheBundledExamples) {
  Result open = Tresk("knot " + Example("trefoil_open.xyz") + " --seed 1");
  EXPECT_EQ(open.status, 0) << open.out;
  EXPECT_EQ(open.out.rfind("3_1(", 0), 0u) << open.out;
  // The same seed gives the same vote.
  EXPECT_EQ(Tresk("knot " + Example("trefoil_open.xyz") + " --seed 1").out, open.out);

  Result coil = Tresk("knot " + Example("coil_unknotted.xyz") + " -s 2 -m 3 -n 20");
  EXPECT_EQ(coil.status, 0) << coil.out;
  EXPECT_EQ(coil.out.rfind("01(", 0), 0u) << coil.out;

  Result closed = Tresk("knot " + Example("trefoil_closed.xyz") + " --closure-method 0");
  EXPECT_EQ(closed.out, "3_1(100%) \n");
}

TEST_F(KnotCli, PolyTellsTheWayAndTheKnot) {
  Result r = Tresk("poly " + Example("trefoil_closed.xyz"));
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_NE(r.out.find("way: exact"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("coefficients: 1 -1 1\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("polynomial: 1 - t + t^2\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("knot: 3_1\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("reduced to"), std::string::npos) << r.out;

  Result raw = Tresk("poly --no-reduce -d 3 " + Example("trefoil_closed.xyz"));
  EXPECT_EQ(raw.status, 0) << raw.out;
  EXPECT_EQ(raw.out.find("reduced to"), std::string::npos) << raw.out;
  EXPECT_NE(raw.out.find("knot: 3_1\n"), std::string::npos) << raw.out;
}

TEST_F(KnotCli, HelpExplainsEveryOption) {
  Result knot = Tresk("knot --help");
  EXPECT_EQ(knot.status, 0);
  for (const char* option :
       {"--closure-method", "--closures", "--seed", "--check-distances", "--report"}) {
    EXPECT_NE(knot.out.find(option), std::string::npos) << option;
  }
  Result poly = Tresk("poly --help");
  EXPECT_EQ(poly.status, 0);
  for (const char* option : {"--direction", "--no-reduce"}) {
    EXPECT_NE(poly.out.find(option), std::string::npos) << option;
  }
}

TEST_F(KnotCli, BadInputFailsWithAMessage) {
  std::string empty = testing::TempDir() + "tresk_cli_empty.xyz";
  std::ofstream(empty).close();
  struct Case {
    const char* name;
    std::string args;
    const char* says;
  } cases[] = {
      {"missing file", "knot /nonexistent/chain.xyz", "/nonexistent/chain.xyz"},
      {"empty file", "knot '" + empty + "'", "Unable to open file"},
      {"closure method out of range", "knot " + Example("trefoil_open.xyz") + " -m 9", "9"},
      {"closures not a number", "knot " + Example("trefoil_open.xyz") + " -n many", "many"},
      {"no closures", "knot " + Example("trefoil_open.xyz") + " -n 0", "0"},
      {"negative seed", "knot " + Example("trefoil_open.xyz") + " --seed -3", "-3"},
      {"poly of an empty file", "poly '" + empty + "'", "cannot read"},
      {"direction out of range", "poly " + Example("trefoil_closed.xyz") + " -d 60", "60"},
      {"no command", "", "subcommand"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Result r = Tresk(c.args);
    EXPECT_NE(r.status, 0) << r.out;
    EXPECT_NE(r.out.find(c.says), std::string::npos) << r.out;
  }
}

} // namespace
