// Closed curves of known knot type must be named right: parametric knots and connected sums
// built here at random orientations, and every closed curve of the ground-truth corpus.
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "chain/direction.hpp"
#include "chain/manyClosures.hpp"
#include "crossings/crossings.hpp"
#include "entry/entry.hpp"
#include "knots/whichKnot.hpp"
#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/datafiles.hpp"
#include "tests/groundtruth/chain_corpus.hpp"

namespace {

using namespace corpus;
using Chain = std::vector<ChainAtom>;

// What closure method 0 does with a closed chain, guarded: a chain whose 30 directions all fail
// numerically would keep the vote closing it again for ever.
struct Naming {
  std::string name;   // the verdict of FindOneKnot with method 0
  int crossings = -1; // crossings of the reduced chain in direction 0
  int size = 0;       // atoms after reduction
};

Naming NameClosed(const Chain& chain) {
  Naming out;
  Chain reduced = chain;
  ChainReduce(reduced, true);
  out.size = static_cast<int>(reduced.size());
  std::vector<Edge> edges = ProjectChain(reduced, 0, true);
  std::vector<Crossing> crossings;
  if (FindAllCrossings(edges, crossings, true) == 0) {
    out.crossings = static_cast<int>(crossings.size());
  }
  bool anyUsable = false;
  for (int d = 0; d < 30 && !anyUsable; ++d) {
    anyUsable = FindTheKnotInParticularDirection(reduced, d) != 40;
  }
  if (!anyUsable) {
    out.name = "(every direction failed)";
    return out;
  }
  int counts[42];
  FindOneKnot(chain, counts, 0, 1);
  for (int k = 0; k < 42; ++k) {
    if (counts[k] > 0)
      out.name = knots[k].name;
  }
  return out;
}

// ---- curves built here ---------------------------------------------------------------------

double MaxX(const Chain& c, std::size_t& at) {
  at = 0;
  for (std::size_t i = 1; i < c.size(); ++i)
    if (c[i].x > c[at].x)
      at = i;
  return c[at].x;
}

// The connected sum of two closed curves: each is cut at its extreme point in x (outermost,
// so the joining band passes through no strand), `b` is mirrored in x and set beside `a`, and
// the two cut arcs are joined by two parallel bridges.
Chain ConnectedSum(const Chain& a, Chain b) {
  for (ChainAtom& p : b)
    p.x = -p.x; // b's extreme point now faces a
  std::size_t ia, ib;
  double right = MaxX(a, ia);
  double left = 1e300;
  ib = 0;
  for (std::size_t i = 0; i < b.size(); ++i)
    if (b[i].x < left)
      left = b[i].x, ib = i;
  const double shift = right - left + 6.0;
  Chain sum;
  for (std::size_t k = 1; k <= a.size(); ++k)
    sum.push_back(a[(ia + k) % a.size()]);
  for (std::size_t k = 0; k < b.size(); ++k) {
    ChainAtom p = b[(ib + k) % b.size()];
    p.x += shift;
    p.y += 0.05; // bridges not exactly parallel to the arcs' tangents
    sum.push_back(p);
  }
  for (std::size_t i = 0; i < sum.size(); ++i)
    sum[i].id = static_cast<int>(i) + 1;
  return sum;
}

struct Built {
  const char* name;
  Chain chain;
  const char* type;
};

// At most 256 atoms each: FindTheKnot projects the chain unreduced in direction 0, and only
// chains of that size get their directions ranked by crossings before projection.
std::vector<Built> BuiltCurves() {
  Chain trefoil = zoo::TorusKnot(2, 3, 100);
  Chain figureEight = zoo::FigureEight(120);
  return {
      {"circle", zoo::Circle(60), "0_1"},
      {"T(2,3)", trefoil, "3_1"},
      {"T(2,5)", zoo::TorusKnot(2, 5, 180), "5_1"},
      {"T(2,7)", zoo::TorusKnot(2, 7, 240), "7_1"},
      {"T(3,4)", zoo::TorusKnot(3, 4, 240), "8_19"},
      {"figure-eight", figureEight, "4_1"},
      {"trefoil # trefoil", ConnectedSum(trefoil, trefoil), "3_1#3_1"},
      {"trefoil # figure-eight", ConnectedSum(trefoil, figureEight), "3_1#4_1"},
  };
}

TEST(ClosedGroundTruth, BuiltCurvesAtRandomOrientations) {
  for (const Built& b : BuiltCurves()) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
      SCOPED_TRACE(std::string(b.name) + " seed " + std::to_string(seed));
      Chain chain = zoo::RandomlyRotated(b.chain, seed * 101);
      EXPECT_EQ(knots[FindTheKnot(chain)].name, TableName(b.type));
      EXPECT_EQ(NameClosed(chain).name, TableName(b.type));
    }
  }
}

// ---- the corpus ----------------------------------------------------------------------------

struct Tally {
  int right = 0, total = 0;
};

// Names every curve, expects the right name up to 8 crossings, and prints one line per curve
// plus the rate above 8 crossings.
void CheckCorpus(const std::string& source,
                 const std::vector<std::pair<std::string, Chain>>& curves,
                 const std::vector<std::string>& types) {
  Tally upTo8, beyond8;
  for (std::size_t i = 0; i < curves.size(); ++i) {
    const std::string& file = curves[i].first;
    SCOPED_TRACE(source + "/" + file + " (" + types[i] + ")");
    ASSERT_FALSE(curves[i].second.empty()) << "unreadable";
    Naming n = NameClosed(curves[i].second);
    bool right = n.name == TableName(types[i]);
    Tally& tally = CrossingNumber(types[i]) <= 8 ? upTo8 : beyond8;
    ++tally.total;
    tally.right += right;
    std::cout << (right ? "  ok   " : "  MISS ") << source << "/" << file << ": expected "
              << TableName(types[i]) << ", got " << n.name << " (" << curves[i].second.size()
              << " atoms, reduced to " << n.size << ", " << n.crossings
              << " crossings in direction 0)\n";
    if (CrossingNumber(types[i]) <= 8) {
      EXPECT_TRUE(right);
    }
  }
  std::cout << source << ": " << upTo8.right << "/" << upTo8.total << " right up to 8 crossings";
  if (beyond8.total > 0)
    std::cout << ", " << beyond8.right << "/" << beyond8.total << " right beyond 8 crossings";
  std::cout << "\n";
}

TEST(ClosedGroundTruth, FremlinPolygons) {
  std::vector<std::string> files = FilesIn("closed/fremlin", ".short");
  if (files.empty())
    GTEST_SKIP() << "ground-truth data absent";
  std::vector<std::pair<std::string, Chain>> curves;
  std::vector<std::string> types;
  for (const std::string& f : files) {
    curves.push_back({f, Read("closed/fremlin/" + f)});
    types.push_back(TypeFromName(f));
  }
  CheckCorpus("fremlin", curves, types);
}

TEST(ClosedGroundTruth, GilbertIdealKnots) {
  std::vector<std::string> files = FilesIn("closed/gilbert_ideal/sampled", ".xyz");
  if (files.empty())
    GTEST_SKIP() << "ground-truth data absent";
  std::vector<std::pair<std::string, Chain>> curves;
  std::vector<std::string> types;
  for (const std::string& f : files) {
    curves.push_back({f, Read("closed/gilbert_ideal/sampled/" + f)});
    types.push_back(TypeFromName(f));
  }
  CheckCorpus("gilbert_ideal", curves, types);
}

TEST(ClosedGroundTruth, CurveDataJson) {
  const std::map<std::string, std::string> typeOf = {
      {"figure8.json", "4_1"},  {"knot_0_1.json", "0_1"},      {"knot_10_66.json", "10_66"},
      {"knot_3_1.json", "3_1"}, {"knot_4_1.json", "4_1"},      {"knot_5_1.json", "5_1"},
      {"knot_5_2.json", "5_2"}, {"knot_6_1.json", "6_1"},      {"knot_6_2.json", "6_2"},
      {"knot_6_3.json", "6_3"}, {"ochiai_unknot.json", "0_1"}, {"trefoil.json", "3_1"},
  };
  std::vector<std::string> files = FilesIn("closed/curvedata", ".json");
  if (files.empty())
    GTEST_SKIP() << "ground-truth data absent";
  std::vector<std::pair<std::string, Chain>> curves;
  std::vector<std::string> types;
  for (const std::string& f : files) {
    ASSERT_EQ(typeOf.count(f), 1u) << f;
    curves.push_back({f, zoo::ReadCurveJson(zoo::DataFile("closed/curvedata/" + f))});
    types.push_back(typeOf.at(f));
  }
  CheckCorpus("curvedata", curves, types);
}

TEST(ClosedGroundTruth, KymoKnotRings) {
  std::string path = zoo::DataFile("closed/kymoknot_rings/structures_P05L_first_10.dat");
  if (path.empty())
    GTEST_SKIP() << "ground-truth data absent";
  // Labels of the reference output shipped with the rings.
  const std::vector<std::string> labels = {"4_1", "3_1", "0_1", "0_1", "3_1",
                                           "3_1", "3_1", "0_1", "0_1", "3_1"};
  std::vector<Chain> rings = zoo::ReadRings(path);
  ASSERT_EQ(rings.size(), labels.size());
  std::vector<std::pair<std::string, Chain>> curves;
  for (std::size_t i = 0; i < rings.size(); ++i)
    curves.push_back({"ring " + std::to_string(i), rings[i]});
  CheckCorpus("kymoknot_rings", curves, labels);
}

} // namespace
