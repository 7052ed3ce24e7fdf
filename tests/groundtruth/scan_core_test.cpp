// Fingerprints of long chains with a knotted core (a trefoil, a figure-eight and a 5_2 cut
// open, with straight or random-coil tails on both sides), for closure methods 1, 2 and 3:
// the knotted subchains are the ones that hold the core, and subchains that miss the core
// are not knotted.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/log.hpp" // for tresk::LogCapture
#include "scan/scan.hpp"
#include "tests/groundtruth/knotted_core.hpp"
#include "tests/support/curves.hpp"

namespace {

struct Row {
  int first;
  int last;
  std::string dominant; // first name in the highest non-empty band, "" when none
  int band;             // that band's threshold (90, 87, ..., 0), -1 when none
};

std::vector<Row> Rows(const std::string& text) {
  std::vector<Row> rows;
  std::istringstream in(text);
  std::string line;
  std::getline(in, line); // header
  while (std::getline(in, line)) {
    std::istringstream fields(line);
    std::vector<std::string> f;
    for (std::string s; fields >> s;)
      f.push_back(s);
    if (f.size() != 36)
      continue;
    Row r{std::stoi(f[34]), std::stoi(f[35]), "", -1};
    for (int c = 0; c < 31; ++c) {
      if (f[2 + c] == "0")
        continue;
      r.dominant = f[2 + c].substr(0, f[2 + c].find(','));
      r.band = 90 - 3 * c;
      break;
    }
    rows.push_back(r);
  }
  return rows;
}

// A closed polygon from a Fremlin ".short" file: '%' comment lines, then "x y z" per line.
std::vector<ChainAtom> ReadShort(const std::string& path) {
  std::vector<ChainAtom> out;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '%')
      continue;
    std::istringstream s(line);
    double x, y, z;
    if (s >> x >> y >> z)
      out.push_back({x, y, z, static_cast<int>(out.size()) + 1});
  }
  return out;
}

struct Case {
  std::string name;
  std::string knot;
  std::vector<ChainAtom> closedKnot;
  int tail;
  bool coil;
  int step;
};

void CheckCore(const Case& c, int method) {
  SCOPED_TRACE(c.name + ", closure method " + std::to_string(method));
  const std::vector<ChainAtom> chain = zoo::KnottedCore(c.closedKnot, c.tail, c.coil, 5);
  const int n = static_cast<int>(chain.size());
  const int coreFirst = c.tail + 1;
  const int coreLast = c.tail + static_cast<int>(c.closedKnot.size());
  const int coreSize = coreLast - coreFirst + 1;

  std::srand(2024);
  std::string text;
  {
    std::string log;
    tresk::LogCapture capture(log);
    text = FindAllKnots_string(chain, c.step, 50, method, method == 1 ? 2 : 8, 1, 15, false,
                               768000000ULL);
  }
  const std::vector<Row> rows = Rows(text);
  ASSERT_FALSE(rows.empty()) << text;

  bool whole = false;
  int knotted = 0;
  for (const Row& r : rows) {
    const int covered = std::max(0, std::min(r.last, coreLast) - std::max(r.first, coreFirst) + 1);
    const std::string where = std::to_string(r.first) + ".." + std::to_string(r.last);
    // Subchains that miss the core altogether (tails only) name no knot. (A perfectly straight
    // tail may project degenerately, which is counted as an unknown polynomial, "-3".)
    const bool namesKnot = !r.dominant.empty() && r.dominant != "-3";
    EXPECT_TRUE(covered > 0 || !namesKnot) << where << " " << r.dominant;
    if (r.first == 1 && r.last == n) {
      whole = true;
      EXPECT_EQ(r.dominant, c.knot) << where;
      EXPECT_GE(r.band, 48) << where;
    }
    if (r.band < 48 || !namesKnot)
      continue;
    // A subchain where one knot wins about half the closures or more holds most of the core;
    // holding all of it, it names the core's type (a part of a complex knot, closed another
    // way, may tie a simpler one).
    ++knotted;
    EXPECT_GE(2 * covered, coreSize) << where;
    if (covered == coreSize) {
      EXPECT_EQ(r.dominant, c.knot) << where;
    }
  }
  EXPECT_TRUE(whole) << "no row for the whole chain\n" << text;
  EXPECT_GT(knotted, 0);
}

TEST(ScanKnottedCore, TrefoilAndFigureEight) {
  const std::vector<Case> cases = {
      {"trefoil, straight tails", "3_1", zoo::TorusKnot(2, 3, 60), 40, false, 10},
      {"trefoil, random-coil tails", "3_1", zoo::TorusKnot(2, 3, 60), 40, true, 10},
      {"figure-eight, random-coil tails", "4_1", zoo::FigureEight(70), 35, true, 10},
  };
  for (const Case& c : cases) {
    for (int method : {1, 2, 3})
      CheckCore(c, method);
  }
}

TEST(ScanKnottedCore, FiveTwoFromFremlin) {
  const std::string path = zoo::DataFile("closed/fremlin/knot.5_2r.short");
  if (path.empty())
    GTEST_SKIP() << "ground-truth data not present";
  const Case c{"5_2, random-coil tails", "5_2", ReadShort(path), 30, true, 12};
  ASSERT_GT(c.closedKnot.size(), 50u);
  for (int method : {1, 2, 3})
    CheckCore(c, method);
}

} // namespace
