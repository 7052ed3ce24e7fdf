// Fingerprints of long chains with a knotted core (a trefoil, a figure-eight and a 5_2 cut
// open, with straight or random-coil tails on both sides), for closure methods 1, 2 and 3:
// the knotted subchains are the ones that hold the core, and subchains that miss the core
// are not knotted.
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/log.hpp"
#include "entry/api.hpp" // for tresk::ReadFingerprint
#include "scan/scan.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/datafiles.hpp"

namespace {

struct Case {
  std::string name, knot;
  std::vector<ChainAtom> closedKnot;
  int tail;
  bool coil;
  int step;
};

void CheckCore(const Case& c, int method) {
  SCOPED_TRACE(c.name + ", closure method " + std::to_string(method));
  const std::vector<ChainAtom> chain = zoo::KnottedCore(c.closedKnot, c.tail, c.coil, 5);
  const int n = static_cast<int>(chain.size()), coreSize = static_cast<int>(c.closedKnot.size());
  const int coreFirst = c.tail + 1, coreLast = c.tail + coreSize;

  std::srand(2024);
  std::string text;
  {
    std::string log; // the scan's batch messages are not looked at
    tresk::LogCapture quiet(log);
    text = FindAllKnots_string(chain, c.step, 50, method, method == 1 ? 2 : 8, 1, 15, false,
                               768000000ULL);
  }
  std::istringstream in(text.substr(text.find('#', 1))); // the string driver repeats the header
  tresk::Fingerprint fingerprint;
  ASSERT_EQ(tresk::ReadFingerprint(in, fingerprint), "") << text;
  const std::vector<tresk::FingerprintCell>& rows = fingerprint.cells;
  ASSERT_FALSE(rows.empty()) << text;

  bool whole = false;
  int knotted = 0;
  for (const tresk::FingerprintCell& r : rows) {
    const int covered = std::max(0, std::min(r.last, coreLast) - std::max(r.first, coreFirst) + 1);
    const std::string where = std::to_string(r.first) + ".." + std::to_string(r.last);
    // Subchains that miss the core altogether (tails only) name no knot. (A perfectly straight
    // tail may project degenerately, which is counted as an unknown polynomial, "-3".)
    const bool namesKnot = r.knot != "IN" && r.knot != "-3";
    EXPECT_TRUE(covered > 0 || !namesKnot) << where << " " << r.knot;
    if (r.first == 1 && r.last == n) {
      whole = true;
      EXPECT_EQ(r.knot, c.knot) << where;
      EXPECT_GE(r.percent, 50) << where;
    }
    if (r.percent < 50 || !namesKnot)
      continue;
    // A subchain where one knot wins about half the closures or more holds most of the core;
    // holding all of it, it names the core's type (a part of a complex knot, closed another
    // way, may tie a simpler one).
    ++knotted;
    EXPECT_GE(2 * covered, coreSize) << where;
    if (covered == coreSize) {
      EXPECT_EQ(r.knot, c.knot) << where;
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
  for (const Case& c : cases)
    for (int method : {1, 2, 3})
      CheckCore(c, method);
}

TEST(ScanKnottedCore, FiveTwoFromFremlin) {
  TRESK_REQUIRE_DATA();
  const std::vector<ChainAtom> knot = zoo::ReadChain("closed/fremlin/knot.5_2r.short");
  ASSERT_GT(knot.size(), 50u);
  for (int method : {1, 2, 3})
    CheckCore({"5_2, random-coil tails", "5_2", knot, 30, true, 12}, method);
}

} // namespace
