// Open chains of known knot type must get the right type as the clear majority over random
// closures: knots tied in a small region with long tails built here, unknotted coils, and the
// open chains and proteins of the ground-truth corpus.
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "chain/manyClosures.hpp"
#include "knots/whichKnot.hpp"
#include "tests/groundtruth/chain_corpus.hpp"
#include "tests/support/curves.hpp"

namespace {

using namespace corpus;
using Chain = std::vector<ChainAtom>;

constexpr int kClosures = 100;

struct Vote {
  int counts[42];
  std::string name;      // the verdict: a type with more than half of the closures, or "-1"
  std::string plurality; // the most frequent outcome
  std::string text;      // every outcome with its share
  int share = 0;         // percentage of the expected type
};

Vote Close(const Chain& chain, int method, const std::string& expected) {
  Vote v;
  FindOneKnot(chain, v.counts, method, kClosures);
  v.name = GiveTheNameOfKnotOne(v.counts);
  v.text = GiveTheNameOfKnot_allProj(v.counts);
  int best = 0;
  for (int k = 0; k < 42; ++k) {
    if (v.counts[k] > v.counts[best])
      best = k;
    if (k < 40 && knots[k].name == expected)
      v.share = v.counts[k] * 100 / kClosures;
  }
  v.plurality = knots[best].name;
  return v;
}

// A closed knot opened at its outermost point in x: both cut ends continue as straight tails
// that leave along +x and part in z, so the knot stays tied in its small region.
Chain Opened(const Chain& closed, int tailBeads, double step) {
  std::size_t at = 0;
  for (std::size_t i = 1; i < closed.size(); ++i)
    if (closed[i].x > closed[at].x)
      at = i;
  const std::size_t n = closed.size();
  Chain chain;
  const ChainAtom first = closed[(at + 1) % n];
  for (int k = tailBeads; k >= 1; --k)
    chain.push_back({first.x + 0.8 * step * k, first.y, first.z - 0.6 * step * k, 0});
  for (std::size_t k = 1; k <= n; ++k)
    chain.push_back(closed[(at + k) % n]);
  const ChainAtom last = closed[at];
  for (int k = 1; k <= tailBeads; ++k)
    chain.push_back({last.x + 0.8 * step * k, last.y, last.z + 0.6 * step * k, 0});
  for (std::size_t i = 0; i < chain.size(); ++i)
    chain[i].id = static_cast<int>(i) + 1;
  return chain;
}

// An open random coil that only climbs in z: no closure can knot it.
Chain ClimbingCoil(int beads, unsigned seed) {
  std::mt19937 gen(seed);
  std::uniform_real_distribution<double> angle(0.0, 6.283185307179586), rise(0.2, 0.6);
  Chain chain;
  double x = 0, y = 0, z = 0;
  for (int i = 0; i < beads; ++i) {
    double a = angle(gen);
    x += 0.9 * std::cos(a), y += 0.9 * std::sin(a), z += rise(gen);
    chain.push_back({x, y, z, i + 1});
  }
  return chain;
}

// A circle with an arc removed is an unknotted open chain.
Chain OpenCircle() {
  Chain circle = zoo::Circle(80);
  circle.resize(60);
  return circle;
}

struct Built {
  const char* name;
  Chain chain;
  const char* type;
};

TEST(OpenGroundTruth, BuiltChainsClearMajority) {
  const std::vector<Built> built = {
      {"open trefoil", Opened(zoo::TorusKnot(2, 3, 100), 60, 1.0), "3_1"},
      {"open figure-eight", Opened(zoo::FigureEight(120), 60, 1.0), "4_1"},
      {"open cinquefoil", Opened(zoo::TorusKnot(2, 5, 150), 60, 1.0), "5_1"},
      {"opened circle", OpenCircle(), "0_1"},
      {"climbing coil", ClimbingCoil(200, 7), "0_1"},
  };
  std::srand(2024);
  for (const Built& b : built) {
    for (int method : {2, 3}) {
      for (unsigned seed : {1u, 2u}) {
        SCOPED_TRACE(std::string(b.name) + ", method " + std::to_string(method));
        Chain chain = zoo::RandomlyRotated(b.chain, seed + 40);
        Vote v = Close(chain, method, TableName(b.type));
        EXPECT_EQ(v.name, TableName(b.type)) << v.text;
        EXPECT_GE(v.share, 60) << v.text;
      }
    }
  }
}

struct OpenFile {
  std::string path;
  std::string type;
  bool closureSensitive = false; // splits between the type and 01 under random closures
};

std::vector<OpenFile> OpenFiles() {
  std::vector<OpenFile> files;
  for (const std::string& f : FilesIn("open/kymoknot_linear", ".knt"))
    files.push_back({"open/kymoknot_linear/" + f, "3_1"});
  for (const std::string& f : FilesIn("open/knoto_id", ".xyz"))
    files.push_back({"open/knoto_id/" + f, TypeFromName(f), f == "3_1m.xyz"});
  // Shallow carbonic anhydrases (2cbe, 1cak) depend on the closure and are left out.
  const char* unknottedOtc[] = {"1pvv_A", "1fvo_A", "1ep9_A", "4h31_A"};
  for (const std::string& f : FilesIn("proteins/ca_xyz", ".xyz")) {
    if (f.rfind("2cbe", 0) == 0 || f.rfind("1cak", 0) == 0)
      continue;
    std::string type = "3_1";
    for (const char* u : unknottedOtc)
      if (f.rfind(u, 0) == 0)
        type = "0_1";
    files.push_back({"proteins/ca_xyz/" + f, type});
  }
  for (const std::string& f : FilesIn("proteins/pdb", ".pdb"))
    files.push_back({"proteins/pdb/" + f, "0_1"});
  for (const std::string& f : FilesIn("proteins/designs", ".pdb"))
    files.push_back({"proteins/designs/" + f, f.rfind("kcTRP3", 0) == 0 ? "3_1" : "5_1"});
  return files;
}

TEST(OpenGroundTruth, CorpusChainsClearMajority) {
  std::vector<OpenFile> files = OpenFiles();
  if (files.empty())
    GTEST_SKIP() << "ground-truth data absent";
  std::srand(77);
  int right = 0, total = 0;
  for (const OpenFile& f : files) {
    SCOPED_TRACE(f.path + " (" + f.type + ")");
    Chain chain = Read(f.path);
    if (chain.empty()) {
      ADD_FAILURE() << "unreadable";
      continue;
    }
    // Two random closures: straight from each end to its own random point of a sphere around
    // the chain (2), and from both ends to one random point (3). The first is the noisier for
    // flat, disk-like knots (the pentafoil designs stay near half), so it must make the right
    // type the most frequent outcome, the second must give it more than half of the votes. A
    // closure-sensitive chain is held to the second rule only.
    for (int method : {2, 3}) {
      Vote v = Close(chain, method, TableName(f.type));
      bool ok = method == 2 ? f.closureSensitive || v.plurality == TableName(f.type)
                            : v.name == TableName(f.type);
      ++total;
      right += ok;
      std::cout << (ok ? "  ok   " : "  MISS ") << f.path << " method " << method << " ("
                << chain.size() << " atoms): expected " << TableName(f.type) << ": " << v.text
                << "\n";
      EXPECT_TRUE(ok) << v.text;
    }
  }
  std::cout << "open chains: " << right << "/" << total << " right\n";
}

} // namespace
