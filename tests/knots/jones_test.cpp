// The contracted Jones polynomial against the plain state sum on random diagrams, the handed
// naming rules, and the bound on wide diagrams.
#include <random>

#include <gtest/gtest.h>

#include "crossings/crossings.hpp"     // for FindAllCrossings
#include "knots/jones.hpp"             // for tresk::JonesOfPd, tresk::HandedName
#include "preprocessing/chainprep.hpp" // for ProjectChain
#include "tests/support/jones_reference.hpp"

namespace {

// Closed random walks of 6 to 22 steps seen in several directions: kinks, nugatory crossings,
// split and nested loops in the states all occur; diagrams of up to 14 crossings are compared.
TEST(JonesPolynomial, ContractionIsTheStateSum) {
  std::mt19937 gen(7);
  std::normal_distribution<double> g;
  int compared = 0, knotted = 0;
  for (int walk = 0; walk < 300; ++walk) {
    std::vector<ChainAtom> chain;
    const int n = 6 + walk % 17;
    for (int i = 0; i < n; ++i)
      chain.push_back({g(gen), g(gen), g(gen), i + 1});
    for (const int direction : {0, 7, 31}) {
      std::vector<Edge> edges = ProjectChain(chain, direction, false);
      std::vector<Crossing> crossings;
      if (FindAllCrossings(edges, crossings, true) != 0 || crossings.size() > 14)
        continue;
      std::vector<tresk::PdCrossing> pd;
      ASSERT_TRUE(tresk::PdOfDiagram(edges, crossings, pd));
      tresk::JonesPolynomial fast;
      ASSERT_EQ(tresk::JonesOfPd(pd, fast), tresk::JonesStatus::ok);
      const tresk::JonesPolynomial plain = reference::JonesByStateSum(pd);
      SCOPED_TRACE("walk " + std::to_string(walk) + ", " + std::to_string(pd.size()) +
                   " crossings");
      EXPECT_EQ(fast, plain) << tresk::JonesText(fast) << " vs " << tresk::JonesText(plain);
      ++compared;
      knotted += !(fast == tresk::JonesPolynomial{0, {1}});
    }
  }
  EXPECT_GT(compared, 400);
  EXPECT_GT(knotted, 20); // the sample must hold knots, not only unknots
}

// The handed names: hands, mirrors, amphichiral knots, composites, and the rule that a knot the
// Alexander polynomial cannot see is never the unknot.
TEST(JonesPolynomial, HandedNaming) {
  const tresk::JonesPolynomial rightTrefoil{-16, {-1, 1, 0, 1}}; // t + t^3 - t^4
  const tresk::JonesPolynomial figureEight{-8, {1, -1, 1, -1, 1}};
  const tresk::JonesPolynomial notInTable{-40, {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7}};
  struct Case {
    const char* name;
    std::string alexander;
    tresk::JonesStatus status;
    tresk::JonesPolynomial jones;
    std::string handed;
  } cases[] = {
      {"right-handed trefoil", "3_1", tresk::JonesStatus::ok, rightTrefoil, "+3_1"},
      {"left-handed trefoil", "3_1", tresk::JonesStatus::ok, tresk::Mirror(rightTrefoil), "-3_1"},
      {"figure-eight, amphichiral", "4_1", tresk::JonesStatus::ok, figureEight, "4_1"},
      {"granny knot", "3_1#3_1", tresk::JonesStatus::ok,
       tresk::JonesPolynomial{-32, {1, -2, 1, -2, 2, 0, 1}}, "+3_1#+3_1"},
      {"unknot", "01", tresk::JonesStatus::ok, tresk::JonesPolynomial{0, {1}}, "01"},
      {"Alexander-blind, in the table", "01", tresk::JonesStatus::ok, rightTrefoil, "+3_1"},
      {"Alexander-blind, not in the table", "01", tresk::JonesStatus::ok, notInTable, "UNKNOWN"},
      {"too wide for the Jones polynomial", "3_1", tresk::JonesStatus::tooWide, {}, "UNKNOWN"},
      {"a status stays a status", "Problem with projecting", tresk::JonesStatus::ok, rightTrefoil,
       "Problem with projecting"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(tresk::HandedName(c.alexander, c.status, c.jones), c.handed);
  }
}

// A wide diagram ends with tooWide instead of growing its states without bound: the closure of
// a long braid-like twisted band keeps many strands open at once.
TEST(JonesPolynomial, WideDiagramsAreBounded) {
  std::vector<tresk::PdCrossing> pd;
  // 2 x 40 crossings contracted in an order that keeps 40 strands open: first one crossing of
  // every Hopf-like pair, then the others.
  const int pairs = 40;
  for (int half = 0; half < 2; ++half)
    for (int k = 0; k < pairs; ++k) {
      const int a = 4 * k, b = 4 * k + 1, c = 4 * k + 2, d = 4 * k + 3;
      pd.push_back(half == 0 ? tresk::PdCrossing{{a, b, c, d}, 1}
                             : tresk::PdCrossing{{c, d, a, b}, 1});
    }
  tresk::JonesPolynomial out;
  EXPECT_EQ(tresk::JonesOfPd(pd, out), tresk::JonesStatus::tooWide);
}

} // namespace
