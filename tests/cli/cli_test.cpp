// The `tresk` program as a user runs it, through one runner: every command on the bundled
// example chains, the fingerprint unchanged by threads and drawn as a PNG, and the exit
// status and message on bad options and bad input.
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/datafiles.hpp"

namespace {

std::string Quote(const std::string& path) {
  return "'" + path + "'";
}

std::string Temp(const std::string& name) {
  return zoo::TempPath("cli_" + name);
}

std::string Slurp(const std::string& path) {
  std::stringstream s;
  s << std::ifstream(path, std::ios::binary).rdbuf();
  return s.str();
}

struct Result {
  int status;
  std::string out; // standard output and standard error together
};

// The one runner: the built program with these arguments.
Result Tresk(const std::string& args) {
  const std::string out = Temp(testing::UnitTest::GetInstance()->current_test_info()->name());
  const int status = std::system(
      (Quote(std::string(TRESK_BINARY_DIR) + "/tresk") + " " + args + " > " + Quote(out) + " 2>&1")
          .c_str());
  Result r{WIFEXITED(status) ? WEXITSTATUS(status) : -1, Slurp(out)};
  std::remove(out.c_str());
  return r;
}

#define SKIP_WITHOUT_PROGRAM()                                                                     \
  if (!std::ifstream(std::string(TRESK_BINARY_DIR) + "/tresk").good())                             \
  GTEST_SKIP() << "the tresk program is not built"

TEST(Cli, EveryCommandAndBadInput) {
  SKIP_WITHOUT_PROGRAM();
  const std::string fp = Temp("1.fp"), fp2 = Temp("2.fp"), png = Temp("fp.png"),
                    empty = Temp("empty.xyz"), dictionary = Temp("dictionary.fp");
  std::ofstream(empty).close();
  std::ofstream(dictionary) << "{(1, 30): {'1 -1 1': 1}}";
  auto example = [](const char* name) { return Quote(zoo::SourceFile("examples/chains/") + name); };
  auto data = [](const char* name) { return Quote(zoo::SourceFile("tests/data/") + name); };
  const std::string copy = Temp("copy.xyz"); // an input that an output must not overwrite
  std::ofstream(copy) << Slurp(zoo::SourceFile("examples/chains/trefoil_open.xyz"));
  const std::string open = example("trefoil_open.xyz"), closed = example("trefoil_closed.xyz");
  const std::string matrix =
      "matrix " + example("knotted_core.xyz") + " -s 30 -t 101 -n 4 --seed 3 -q -o ";
  const struct {
    std::string args;
    bool ok;
    std::string says; // in the output; "" when ok: no output at all (matrix -q, plot)
  } cases[] = {
      {"knot " + open + " --seed 1", true, "3_1("},
      {"knot " + closed + " -m 0", true, "3_1(100%) \n"},
      {"poly " + closed, true, "coefficients: 1 -1 1\n"},
      {matrix + Quote(fp), true, ""},
      {matrix + Quote(fp2) + " -j 2", true, ""},
      {"plot " + Quote(fp) + " -o " + Quote(png) + " --size 400 --title knotted", true, ""},
      {"", false, "subcommand"},
      {"knot /nonexistent/chain.xyz", false, "/nonexistent/chain.xyz"},
      {"knot " + Quote(empty), false, "cannot read a chain from " + empty + ": no atoms"},
      {"knot " + data("repro/stars.pdb"), false, "'********' is not a number"},
      {"knot " + data("repro/coincident.xyz"), false, "all 50 atoms lie at one point"},
      // Once a hang: the single deterministic closure ends the vote, whatever it gives.
      {"knot " + data("repro/hang_m1.xyz") + " -m 1 --numeric-above 16", true, "(100%)"},
      {"knot " + data("structures/crambin_edge.cif.gz") + " --chain Q -m 1", true,
       "chain B of model 1: 47 CA atoms, 0 chain breaks\n01(100%)"},
      {"knot " + data("structures/crambin_edge.pdb") + " --all-chains -m 1", true,
       "A\t01(100%) \n"},
      {"knot " + Quote(copy) + " -c -o " + Quote(copy), false, "is the input file"},
      {"knot " + open + " -c -o /nonexistent/report", false, "could not write /nonexistent"},
      {"knot " + open + " -m 9", false, "9"},
      {"poly " + Quote(empty), false, "tresk poly: cannot read a chain"},
      {"matrix " + Quote(empty) + " -o x.fp", false, "tresk matrix: cannot read a chain"},
      {"matrix " + open + " -o /nonexistent/x.fp", false, "tresk matrix: cannot write"},
      {"matrix " + open + " -o x.fp -j -1", false, "-1"},
      {"matrix " + open + " -o x.fp -j 100000", false, "100000"},
      {"matrix " + open + " -o x.fp --memory 1", false, "do not fit a batch budget of 1 "},
      {"matrix " + open + " -o x.fp -n 1000000", false, "1000000 closures per subchain"},
      {"matrix " + open + " -s 50 -n 1 -q -o /dev/full", false, "could not write /dev/full"},
      {"core " + open + " -n 20 --tsv", true, "atoms\tverdict\n3_1\t"},
      {"core " + example("coil_unknotted.xyz") + " -n 10", true,
       "no knot core: the chain is not knotted (01(100%))\n"},
      {"core " + Quote(empty), false, "tresk core: cannot read a chain"},
      {"core " + open + " -m 5", false, "5"},
      {"plot " + data("repro/fp_maxatoms.fp") + " -o x.png", false, "more than 1000000"},
      {"plot " + Quote(dictionary) + " -o x.png", false, "line 1: not the header"},
      {"plot " + Quote(dictionary) + " -o x.jpg --size 100", false, "100"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.args);
    const Result r = Tresk(c.args);
    EXPECT_EQ(r.status == 0, c.ok) << r.out;
    EXPECT_NE(r.out.find(c.says), std::string::npos) << r.out;
    EXPECT_TRUE(!c.ok || !c.says.empty() || r.out.empty()) << r.out;
  }
  EXPECT_NE(Slurp(fp).find(" 3_1 "), std::string::npos) << Slurp(fp); // -q: nothing else
  EXPECT_EQ(Slurp(fp2), Slurp(fp));                                   // the same on two threads
  EXPECT_EQ(Slurp(png).substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(Slurp(copy), Slurp(zoo::SourceFile("examples/chains/trefoil_open.xyz")));
  for (const std::string& path : {fp, fp2, png, empty, dictionary, copy})
    std::remove(path.c_str());
}

// --table extended counts the same closures as the default and names them by the larger
// table; without it, or with --table standard, the output is the documented one.
TEST(Cli, ExtendedTable) {
  SKIP_WITHOUT_PROGRAM();
  const std::string open = Quote(zoo::SourceFile("examples/chains/trefoil_open.xyz"));
  EXPECT_EQ(Tresk("knot " + open + " -s 5").out, "3_1(94%) 5_2(5%) 5_1(1%) \n");
  EXPECT_EQ(Tresk("knot " + open + " -s 5 --table standard").out, "3_1(94%) 5_2(5%) 5_1(1%) \n");
  EXPECT_EQ(Tresk("knot " + open + " -s 5 --table extended").out,
            "3_1(94%) 5_2(5%) 5_1|10_132(1%) \n");
  const Result bad = Tresk("knot " + open + " --table large");
  EXPECT_NE(bad.status, 0);
  EXPECT_NE(bad.out.find("large not in {standard,extended}"), std::string::npos) << bad.out;

  TRESK_REQUIRE_DATA();
  auto ideal = [](const char* name) {
    return Quote(zoo::DataFile(std::string("closed/gilbert_ideal/sampled/") + name));
  };
  EXPECT_EQ(Tresk("knot " + ideal("7_4.xyz") + " -m 0").out, "7_4(100%) \n");
  EXPECT_EQ(Tresk("knot " + ideal("7_4.xyz") + " -m 0 --table extended").out, "7_4|9_2(100%) \n");
  const std::string poly = Tresk("poly " + ideal("10_1.xyz")).out;
  const std::string extended = Tresk("poly " + ideal("10_1.xyz") + " --table extended").out;
  EXPECT_NE(poly.find("\nknot: 8_3\n"), std::string::npos) << poly;
  EXPECT_EQ(extended.substr(0, extended.find("knot: ")), poly.substr(0, poly.find("knot: ")));
  EXPECT_NE(extended.find("\nknot: 8_3|10_1\n"), std::string::npos) << extended;
}

// A batch over the structure files, a list with a chain and a bad file: one row per file and
// chain in input order, an error row that does not stop the run; a run cut short in the middle
// of a row and resumed on another number of workers gives the uninterrupted table. The seeds
// come from base names, so the rows are the same wherever the checkout lies.
TEST(Cli, BatchRowsAndResume) {
  SKIP_WITHOUT_PROGRAM();
  const std::string bad = Temp("bad.xyz"), list = Temp("list.txt"), table = Temp("table");
  std::ofstream(bad) << "not a chain\n";
  const std::string pdb = zoo::SourceFile("tests/data/structures/crambin_edge.pdb");
  std::ofstream(list) << "# file and chain\n" << pdb << " B\n" << bad << "\n" << pdb << " B\n";
  const std::string run = "batch " + Quote(zoo::SourceFile("examples/chains")) + " @" +
                          Quote(list) + " -n 8 -s 5 --no-times -o " + Quote(table);
  for (const std::string format : {"tsv", "jsonl"}) {
    SCOPED_TRACE(format);
    std::remove(table.c_str());
    Result r = Tresk(run + " -j 1 --format " + format);
    ASSERT_EQ(r.status, 0) << r.out;
    const std::string full = Slurp(table);
    std::istringstream lines(full);
    std::vector<std::string> rows;
    for (std::string line; std::getline(lines, line);)
      rows.push_back(line);
    const bool tsv = format == std::string("tsv");
    ASSERT_EQ(rows.size(), tsv ? 7u : 6u) << full; // 4 chains of the folder, 1 listed, 1 bad
    EXPECT_EQ(rows[0].substr(0, tsv ? 11 : 9), tsv ? "file\tchain\t" : "{\"file\":\"");
    const std::string open =
        tsv ? "\t\t160\t31\t3_1(75%) 01(12%) 5_2(12%)\t3_1\t0.750\t0.0000\t\n"
            : "\",\"chain\":\"\",\"atoms\":160,\"breaks\":31,\"verdict\":\"3_1(75%) 01(12%) "
              "5_2(12%)\",\"dominant\":\"3_1\",\"share\":0.750,\"seconds\":0.0000,\"error\":\"\"}";
    EXPECT_NE(full.find("trefoil_open.xyz" + open), std::string::npos) << full;
    EXPECT_NE(full.find(pdb + (tsv ? "\tB\t47\t" : "\",\"chain\":\"B\",\"atoms\":47,")),
              std::string::npos);
    EXPECT_NE(rows.back().find(bad), std::string::npos);
    EXPECT_NE(rows.back().find("not a finite number"), std::string::npos) << rows.back();
    // Cut short: the header and part of the next rows, the last one unfinished.
    for (const std::size_t keep : {std::size_t(3), full.find('\n', full.size() / 2) + 5}) {
      std::ofstream(table, std::ios::binary | std::ios::trunc) << full.substr(0, keep);
      r = Tresk(run + " -j 3 --format " + format);
      EXPECT_EQ(r.status, 0) << r.out;
      EXPECT_EQ(Slurp(table), full) << keep;
    }
  }
  std::ofstream(table, std::ios::trunc) << "something else\n";
  Result r = Tresk(run);
  EXPECT_NE(r.out.find("will not append to " + table), std::string::npos) << r.out;
  EXPECT_EQ(Slurp(table), "something else\n");
  for (const std::string& path : {bad, list, table})
    std::remove(path.c_str());
}

} // namespace
