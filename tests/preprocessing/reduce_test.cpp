// ChainReduce: unknots shrink to a triangle and knots keep their type (the knot determinant,
// computed independently from the projected diagram, before and after), on named curves and
// random closed walks; without the flag the result is exactly the plain restart loop's; tiny
// chains stay as they are. Also the minimal-diagram stop and the open-chain cuts shared by
// closures.
#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "preprocessing/directions.hpp"
#include "preprocessing/open_cut.hpp"
#include "preprocessing/overpass.hpp"
#include "preprocessing/projection_rank.hpp"
#include "preprocessing/triangle_tests.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/invariants.hpp"
#include "tests/support/prep_reduce_reference.hpp"
#include "preprocessing/simd.hpp" // for tresk::SetSimdLimit

namespace {

bool SameAtoms(const std::vector<ChainAtom>& a, const std::vector<ChainAtom>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const ChainAtom& p, const ChainAtom& q) {
                      return p.x == q.x && p.y == q.y && p.z == q.z && p.id == q.id;
                    });
}

long Determinant(const std::vector<ChainAtom>& closed, int direction) {
  return zoo::KnotDeterminant(ProjectChain(closed, direction, false));
}

// A random walk that always climbs, closed outwards: an unknot by construction (the arc inside
// the closing sphere is monotone in z), with many crossings in its projections.
std::vector<ChainAtom> ClimbingCoil(int n, unsigned seed) {
  std::mt19937 gen(seed);
  std::normal_distribution<double> g;
  std::vector<ChainAtom> out;
  double x = 0, y = 0, z = 0;
  for (int i = 0; i < n; ++i) {
    x += g(gen), y += g(gen), z += 0.05 + 0.05 * std::fabs(g(gen));
    out.push_back({x, y, z, i + 1});
  }
  CloseChain_OUT(out, 1.25);
  return out;
}

TEST(ChainReduce, KnotTypeKept) {
  struct Case {
    std::string name;
    std::vector<ChainAtom> chain;
    long determinant; // 1: reduced to a triangle
  };
  std::vector<ChainAtom> star, doubled; // a non-convex planar polygon; zero-length segments
  for (int i = 0; i < 14; ++i) {
    double a = M_PI * i / 7, r = i % 2 ? 3.0 : 10.0;
    star.push_back({r * std::cos(a), 0.6 * r * std::sin(a), 0.8 * r * std::sin(a), i + 1});
  }
  for (const ChainAtom& a : zoo::TorusKnot(2, 3, 60))
    doubled.push_back(a), doubled.push_back(a);
  std::vector<Case> cases = {
      {"circle", zoo::RandomlyRotated(zoo::Circle(200), 3), 1},
      {"planar star", star, 1},
      {"long climbing coil", ClimbingCoil(3000, 9), 1},
      {"trefoil", zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 100), 1), 3},
      {"figure-eight", zoo::RandomlyRotated(zoo::FigureEight(150), 2), 5},
      {"7_1", zoo::RandomlyRotated(zoo::TorusKnot(2, 7, 300), 5), 7},
      {"8_19", zoo::RandomlyRotated(zoo::TorusKnot(3, 4, 300), 6), 3},
      {"fine trefoil", zoo::TorusKnot(2, 3, 4000), 3},
      {"trefoil with doubled vertices", doubled, 3},
  };
  // Random closed walks, knotted often enough to matter: the oracle gives the expected value.
  int knotted = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    std::mt19937 gen(seed);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<ChainAtom> walk;
    for (int i = 0; i < 25; ++i)
      walk.push_back({u(gen), u(gen), u(gen), i + 1});
    cases.push_back({"walk " + std::to_string(seed), walk, Determinant(walk, 0)});
    knotted += cases.back().determinant > 1;
  }
  EXPECT_GT(knotted, 5);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ASSERT_GT(c.determinant, 0);
    for (bool flag : {false, true}) {
      std::vector<ChainAtom> chain = c.chain;
      const int size = ChainReduce(chain, flag);
      EXPECT_EQ(size, static_cast<int>(chain.size()));
      if (c.determinant == 1 && c.name[0] != 'w') {
        EXPECT_EQ(size, 3);
      }
      EXPECT_GE(size, c.determinant > 1 ? 6 : 3); // a knot needs at least six sticks
      EXPECT_LT(size, 40);
      for (int d : {0, 11, 23, 42})
        EXPECT_EQ(Determinant(chain, d), c.determinant) << d;
      EXPECT_EQ(zoo::KnotDeterminant(ProjectChain(chain, 0, true)), c.determinant);
    }
  }
}

// Without the flag ChainReduce is the plain restart loop (the first empty corner in chain order
// goes, then the scan starts again), point for point: small chains (every segment tested), long
// ones (the grid), knots, lattice walks with coplanar and touching segments, lattice points
// moved by a few tolerances (contacts decided by the bands), repeated points.
TEST(ChainReduce, CornerCuttingIsThePlainRestartLoop) {
  std::vector<std::pair<std::string, std::vector<ChainAtom>>> cases = {
      {"climbing coil", ClimbingCoil(400, 3)},
      {"trefoil", zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 120), 1)},
      {"8_19", zoo::RandomlyRotated(zoo::TorusKnot(3, 4, 300), 6)},
      {"figure-eight", zoo::FigureEight(90)},
      {"fine trefoil (grid)", zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 1500), 4)},
  };
  for (unsigned seed = 0; seed < 40; ++seed) {
    std::mt19937 gen(seed);
    std::uniform_int_distribution<int> step(0, 5);
    std::uniform_int_distribution<int> nudge(-3, 3);
    const int n = seed % 2 ? 30 : 150;
    const double tol = 1e-9 * 4.0; // about the coordinate scale of these walks
    std::vector<ChainAtom> walk, jittered, coil;
    int p[3] = {0, 0, 0};
    for (int i = 0; i < n; ++i) {
      const int k = step(gen);
      p[k % 3] += k < 3 ? 1 : -1;
      walk.push_back({double(p[0]), double(p[1]), double(p[2]), i + 1});
      jittered.push_back(
          {p[0] + nudge(gen) * tol, p[1] + nudge(gen) * tol, p[2] + nudge(gen) * tol, i + 1});
    }
    std::normal_distribution<double> g;
    double x = 0, y = 0, z = 0;
    for (int i = 0; i < n; ++i) {
      x += g(gen), y += g(gen), z += g(gen);
      coil.push_back({x, y, z, i + 1});
      if (i % 7 == 3)
        coil.push_back(coil.back()); // a repeated point
    }
    CloseChain_OUT(coil, 1.25);
    cases.push_back({"lattice walk " + std::to_string(seed), walk});
    cases.push_back({"jittered walk " + std::to_string(seed), jittered});
    cases.push_back({"coil " + std::to_string(seed), coil});
  }
  // The box scan in four lanes where the CPU has AVX, and the plain one.
  for (const tresk::SimdLevel level : {tresk::kSimdScalar, tresk::kSimdAvx}) {
    const tresk::SimdLevel before = tresk::SimdLimit();
    tresk::SetSimdLimit(level);
    for (const auto& [name, chain] : cases) {
      std::vector<ChainAtom> fast = chain, plain = chain;
      const int size = ChainReduce(fast, false);
      reference::CutCornersPlain(plain);
      EXPECT_EQ(size, static_cast<int>(fast.size())) << name << ", simd limit " << level;
      EXPECT_TRUE(SameAtoms(fast, plain))
          << name << ", simd limit " << level << ": " << fast.size() << " / " << plain.size();
    }
    tresk::SetSimdLimit(before);
  }
}

// The reduction reuses per-thread buffers: a chain reduced after others of every size (grid and
// no grid, shortcuts or not) must come out exactly as on a fresh thread.
TEST(ChainReduce, ReusedBuffersChangeNothing) {
  const std::vector<std::vector<ChainAtom>> chains = {
      ClimbingCoil(3000, 4), zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 100), 1),
      zoo::TorusKnot(2, 3, 4000), zoo::RandomlyRotated(zoo::TorusKnot(3, 4, 300), 6)};
  for (bool flag : {false, true}) {
    std::vector<std::vector<ChainAtom>> fresh(chains.size());
    for (size_t i = 0; i < chains.size(); ++i)
      std::thread([&] { ChainReduce(fresh[i] = chains[i], flag); }).join();
    for (size_t i : {3, 0, 1, 2, 1, 3, 0}) {
      SCOPED_TRACE(std::to_string(i) + (flag ? " with shortcuts" : ""));
      std::vector<ChainAtom> chain = chains[i];
      ChainReduce(chain, flag);
      EXPECT_TRUE(SameAtoms(chain, fresh[i]));
    }
  }
}

// The quick rejection of corner cutting must never reject a segment the full test finds within
// tol: segments ending at multiples of tol from the triangle's edges and corners, in all
// directions.
TEST(ChainReduce, QuickRejectionOnlyOfMisses) {
  std::mt19937 gen(7);
  std::uniform_real_distribution<double> u(-1.0, 1.0);
  const double scale = 50.0, tol = 1e-9 * scale;
  int rejected = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    tresk::Vec3 v[3], e[2];
    for (tresk::Vec3& x : v)
      x = {scale * u(gen), scale * u(gen), scale * u(gen)};
    for (int k = 0; k < 2; ++k) { // ends near a point of an edge, off by a few tol
      tresk::Vec3 a = v[trial % 3], b = v[(trial + 1) % 3];
      double t = k == 0 ? std::clamp(u(gen), 0.0, 1.0) : u(gen);
      e[k] = a + t * (b - a) + (tol * (trial % 40)) * tresk::Vec3{u(gen), u(gen), u(gen)};
    }
    tresk::TriangleProbe probe(v[0], v[1], v[2], tol, scale);
    const bool near = tresk::SegmentNearTriangle(e[0], e[1], v[0], v[1], v[2], tol);
    if (probe.Separated(e[0], e[1])) {
      ++rejected;
      EXPECT_FALSE(near) << trial;
    }
    EXPECT_EQ(probe.Near(e[0], e[1]), near) << trial;
  }
  EXPECT_GT(rejected, 1000);
  // Segments through a point of the plane a few tol outside an edge (or a corner), steep to
  // shallow: the crossing rejection may only fire where the distances find no contact.
  int fired = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    tresk::Vec3 v[3];
    for (tresk::Vec3& x : v)
      x = {scale * u(gen), scale * u(gen), scale * u(gen)};
    const tresk::Vec3 a = v[trial % 3], b = v[(trial + 1) % 3], c = v[(trial + 2) % 3];
    const tresk::Vec3 n = tresk::Cross(b - a, c - a), edge = b - a;
    const tresk::Vec3 out = (1.0 / tresk::Norm(tresk::Cross(n, edge))) * tresk::Cross(edge, n);
    const double t = trial % 5 == 0 ? -0.001 * (trial % 7) : std::clamp(u(gen), 0.0, 1.0);
    const tresk::Vec3 y = a + t * edge + (tol * (trial % 40)) * out;
    const tresk::Vec3 dir = (1.0 / tresk::Norm(n)) * n +
                            std::pow(10.0, trial % 9 - 4) * tresk::Vec3{u(gen), u(gen), u(gen)};
    const tresk::Vec3 p = y + (0.01 + std::fabs(u(gen))) * dir,
                      q = y - (0.01 + std::fabs(u(gen))) * dir;
    const double nn = tresk::Norm(n);
    const double dp = tresk::Dot(n, p - a) / nn, dq = tresk::Dot(n, q - a) / nn;
    const tresk::Vec3 x = p + (dp / (dp - dq)) * (q - p);
    if (dp * dq < 0.0 && tresk::CrossesFarOutside(p, q, a, b, c, n, nn, dp - dq, x, tol)) {
      ++fired;
      EXPECT_FALSE(tresk::SegmentWithinByDistances(p, q, a, b, c, tol)) << trial;
    }
  }
  EXPECT_GT(fired, 1000);
}

TEST(ChainReduce, TinyChainsUnchanged) {
  for (size_t n = 0; n < 4; ++n) {
    std::vector<ChainAtom> chain = zoo::Circle(3);
    chain.resize(n);
    const std::vector<ChainAtom> copy = chain;
    EXPECT_EQ(ChainReduce(chain, true), static_cast<int>(n));
    EXPECT_TRUE(SameAtoms(chain, copy));
  }
}

// The stop of the shortcut rounds: a diagram is recognised as minimal only when it is reduced
// and alternating with exactly the crossings claimed; seen from above, the (2,3) torus knot is
// the trefoil's three-crossing diagram, the (3,4) torus knot a non-alternating one of eight, and
// a figure-eight curve with one crossing has a crossing that a circle cuts off.
TEST(ChainReduce, MinimalDiagramsRecognised) {
  const tresk::ProjectionFrame above{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  std::vector<ChainAtom> lemniscate;
  for (int i = 0; i < 40; ++i) {
    double t = 2 * M_PI * (i + 0.5) / 40;
    lemniscate.push_back({10 * std::cos(t), 10 * std::sin(t) * std::cos(t), 3 * std::sin(t), i});
  }
  const struct {
    const char* name;
    std::vector<ChainAtom> chain;
    int crossings;
    bool minimal;
  } cases[] = {
      {"trefoil", zoo::TorusKnot(2, 3, 61), 3, true},
      {"trefoil, wrong count", zoo::TorusKnot(2, 3, 61), 4, false},
      {"(3,4) torus knot", zoo::TorusKnot(3, 4, 121), 8, false},
      {"one nugatory crossing", lemniscate, 1, false},
      {"circle", zoo::Circle(20), 0, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(tresk::MinimalDiagram(c.chain, above, c.crossings), c.minimal);
  }
}

// An open chain's cuts replayed on its closures: every closure keeps its knot (the determinant
// in several directions, against the closure left whole; both cut to size first), the ends and
// the closing path stay, and most atoms go.
TEST(ChainReduce, OpenChainCutsKeepEveryClosuresKnot) {
  std::vector<std::pair<std::string, std::vector<ChainAtom>>> chains;
  std::vector<ChainAtom> trefoil = zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 120), 4);
  trefoil.resize(112); // opened: a trefoil for most closures
  chains.push_back({"open trefoil", trefoil});
  for (unsigned seed = 0; seed < 6; ++seed) { // compact walks, knotted for some closures
    std::mt19937 gen(seed);
    std::normal_distribution<double> g;
    std::vector<ChainAtom> walk;
    double x = 0, y = 0, z = 0;
    for (int i = 0; i < 120; ++i) {
      x = 0.95 * x + g(gen), y = 0.95 * y + g(gen), z = 0.95 * z + g(gen);
      walk.push_back({x, y, z, i + 1});
    }
    chains.push_back({"walk " + std::to_string(seed), walk});
  }
  std::srand(11);
  long kept = 0, total = 0, knotted = 0;
  for (const auto& [name, chain] : chains) {
    const tresk::OpenChainCut cut(chain);
    for (int closure = 0; closure < 24; ++closure) {
      SCOPED_TRACE(name + ", closure " + std::to_string(closure));
      std::vector<ChainAtom> closed = chain;
      const int method = 2 + closure % 3;
      if (method == 2)
        CloseChain_2points(closed, 1.25);
      else if (method == 3)
        CloseChain_1point(closed, 1.25);
      else
        CloseChain_1direction(closed);
      std::vector<ChainAtom> shorter = closed;
      cut.Apply(shorter);
      const size_t path = closed.size() - chain.size();
      ASSERT_GE(shorter.size(), path + 2);
      EXPECT_TRUE(SameAtoms({shorter.front()}, {closed.front()}));
      EXPECT_TRUE(SameAtoms({shorter.end() - static_cast<long>(path) - 1, shorter.end()},
                            {closed.end() - static_cast<long>(path) - 1, closed.end()}));
      // Compared after corner cutting alone, which keeps the knot (tested above).
      std::vector<ChainAtom> closedCut = closed, shorterCut = shorter;
      ChainReduce(closedCut, false);
      ChainReduce(shorterCut, false);
      for (int d : {0, 7, 19}) {
        const long before = Determinant(closedCut, d);
        knotted += d == 0 && before > 1;
        EXPECT_EQ(Determinant(shorterCut, d), before) << d;
      }
      kept += static_cast<long>(shorter.size() - path);
      total += static_cast<long>(chain.size());
    }
  }
  EXPECT_GT(knotted, 20);
  EXPECT_LT(4 * kept, total); // most atoms cut
}

} // namespace

// The shortcut rounds' crossing minima from a round chain's classified pairs, against counting
// every plane of the trial: chains with shortcuts made in several planes, then corner-cut, with
// vertices dropped (the widest among them, so the hair narrows), with a far vertex added (the
// hair widens) and with a vertex touching another (near-degenerate pairs), for many caps and
// plane orders; and the round chain's ranking, its best plane whatever plane is tried first
// and its two best planes alone.
TEST(ChainReduce, ClassifiedPairsGiveEveryTrialsFewestCrossings) {
  std::vector<std::pair<std::string, std::vector<ChainAtom>>> chains = {
      {"trefoil", zoo::RandomlyRotated(zoo::TorusKnot(2, 3, 24), 1)},
      {"(2,5) torus knot", zoo::RandomlyRotated(zoo::TorusKnot(2, 5, 40), 2)},
      {"(3,4) torus knot", zoo::RandomlyRotated(zoo::TorusKnot(3, 4, 64), 3)},
      {"coil", ClimbingCoil(40, 4)},
      {"coil, a vertex on another", ClimbingCoil(30, 5)}};
  chains.back().second[12] = chains.back().second[3];
  // A vertex 1e-7 from a segment: apart at this hair, too close to call at a 1000 times wider
  // one (the far vertex below) and at one a few times wider, and the other way round once the
  // far vertex is gone.
  std::vector<ChainAtom> nearMiss = ClimbingCoil(30, 6);
  const ChainAtom &p = nearMiss[3], &q = nearMiss[4];
  nearMiss[15] = {(p.x + q.x) / 2 + 1e-7, (p.y + q.y) / 2, (p.z + q.z) / 2, 16};
  chains.push_back({"coil, a vertex near a segment", nearMiss});
  nearMiss.insert(nearMiss.begin() + 20, {3e4, -2e4, 1e4, 0});
  chains.push_back({"coil, a vertex near a segment and one far", nearMiss});
  std::mt19937 gen(9);
  long compared = 0, below = 0;
  for (const auto& [name, chain] : chains) {
    SCOPED_TRACE(name);
    tresk::DiagramPairs pairs;
    ASSERT_TRUE(pairs.Build(chain));
    EXPECT_EQ(pairs.Rank(), tresk::RankPlanes(chain));
    std::vector<std::vector<ChainAtom>> trials;
    for (int plane : {0, 7, 19, 28}) {
      std::vector<ChainAtom> trial = chain;
      for (int moves = 0;
           moves < 3 && tresk::ShortcutBestPass(trial, tresk::ProjectionFrames()[plane]);)
        trials.push_back(trial), ++moves;
      ChainReduce(trial, false);
      trials.push_back(trial);
    }
    for (int k = 0; k < 6; ++k) {
      std::vector<ChainAtom> trial = chain;
      trial.erase(trial.begin() + static_cast<long>(gen() % trial.size()));
      trial.erase(trial.begin() + static_cast<long>(gen() % trial.size()));
      trials.push_back(trial);
      trial.insert(trial.begin() + static_cast<long>(gen() % trial.size()), {3e4, -2e4, 1e4, 0});
      trials.push_back(trial);
    }
    double reach = 0.0; // a vertex 1.2 to 3 times as far out widens the hair within the range
    for (const ChainAtom& a : chain)
      reach = std::max({reach, std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
    for (double f : {1.2, 2.0, 3.0}) {
      trials.push_back(chain);
      trials.back().insert(trials.back().begin() + 9, {f * reach, -f * reach, f * reach / 2, 0});
    }
    for (size_t drop = 0; drop < chain.size(); ++drop) {
      trials.push_back(chain);
      trials.back().erase(trials.back().begin() + static_cast<long>(drop));
    }
    for (size_t cut = 0; cut < chain.size(); cut += 5)
      trials.push_back({chain.begin(), chain.end() - static_cast<long>(cut)});
    for (size_t t = 0; t < trials.size(); ++t) {
      SCOPED_TRACE("trial " + std::to_string(t));
      const std::array<int, 30> rank = tresk::RankPlanes(trials[t]);
      for (int hint : {0, 13, 29, static_cast<int>(t % 30)})
        ASSERT_EQ(tresk::BestPlane(trials[t], hint), rank[0]) << hint;
      const std::array<int, 30> top = tresk::RankPlanesTop(trials[t], 2);
      ASSERT_EQ(std::vector<int>(top.begin(), top.begin() + 2),
                std::vector<int>(rank.begin(), rank.begin() + 2));
      for (int cap : {INT_MAX, 1, 2, 3, 5, 8, 13, 40}) {
        std::array<int, 30> order = pairs.Rank();
        if (cap % 2)
          std::shuffle(order.begin(), order.end(), gen);
        const int expected = tresk::FewestCrossings(trials[t], cap, &order);
        ASSERT_EQ(pairs.Fewest(trials[t], cap, order), expected) << cap;
        ++compared;
        below += expected < cap;
      }
    }
  }
  EXPECT_GT(below, compared / 4);
}

// The chord clearance against the plain minimum of every edge's hypot: polygons whose edges all
// pass within a few units in the last place of one distance from the point (near ties), and
// random ones, with every edge range and left-out edge.
TEST(ChainReduce, LeastDistanceIsThePlainMinimum) {
  using tresk::plane2d::P2;
  std::mt19937 gen(11);
  std::uniform_real_distribution<double> u(-1.0, 1.0);
  for (int trial = 0; trial < 400; ++trial) {
    const int m = 5 + trial % 12;
    std::vector<P2> p(m);
    for (int i = 0; i < m; ++i) {
      const double angle = 2 * M_PI * i / m,
                   r = trial % 2 ? 7.0 * (1 + 1e-15 * u(gen)) : 3 + u(gen);
      p[i] = {r * std::cos(angle) + (trial % 2 ? 0.0 : u(gen)), r * std::sin(angle)};
    }
    const P2 c = trial % 2 ? P2{0.0, 0.0} : P2{u(gen), u(gen)};
    for (int first = 0; first < m; ++first) {
      const int stop = (first + 2 + trial % (m - 2)) % m, skip = (first + trial) % m;
      double plain = INFINITY;
      for (int e = first; e != stop; e = (e + 1) % m) {
        if (e == skip)
          continue;
        const P2 a = p[e], b = p[(e + 1) % m];
        const double dx = b.x - a.x, dy = b.y - a.y, len2 = dx * dx + dy * dy;
        const double t = std::clamp(((c.x - a.x) * dx + (c.y - a.y) * dy) / len2, 0.0, 1.0);
        plain = std::min(plain, std::hypot(c.x - a.x - t * dx, c.y - a.y - t * dy));
      }
      ASSERT_EQ(tresk::LeastDistance(c, p, first, stop, skip), plain) << trial << " " << first;
    }
  }
}
