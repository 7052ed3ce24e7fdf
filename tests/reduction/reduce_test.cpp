// The segment-triangle test around its tolerance bands, and the library's reduction (one chain,
// every host batch path and the GPU) against the plain restart-after-every-removal reference,
// bit for bit, on random walks, confined coils, lattice walks (exactly parallel and touching
// segments, collinear runs, repeated points), lattice walks jittered by multiples of 1e-5,
// NaN, and knots.
#include <cmath>
#include <cstring>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "preprocessing/simd.hpp" // for tresk::SetSimdLimit
#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/batch.hpp"
#include "tests/support/curves.hpp" // for zoo::TorusKnot, zoo::Circle
#include "tests/support/reduce_reference.hpp"

namespace {

using Chain = std::vector<fPointR3>;

// Equal sizes and the same bits in every coordinate (so NaN equals itself and -0 differs from 0).
bool SameBits(const Chain& a, const Chain& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0);
}

// Steps of length 3.8 in random directions; `confine` > 0 redraws steps that leave a sphere of
// radius confine + 4, which packs the walk into a knotted, mostly blocked coil.
Chain RandomWalk(int n, unsigned seed, double confine = 0.0) {
  std::mt19937 gen(seed);
  std::normal_distribution<double> g(0.0, 1.0);
  Chain out;
  double p[3] = {0, 0, 0}, q[3];
  while (static_cast<int>(out.size()) < n) {
    out.push_back({float(p[0]), float(p[1]), float(p[2])});
    do {
      const double d[3] = {g(gen), g(gen), g(gen)};
      const double len = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]) / 3.8;
      for (int a = 0; a < 3; ++a)
        q[a] = p[a] + d[a] / len;
    } while (confine > 0 && std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2]) >= confine + 4);
    std::memcpy(p, q, sizeof p);
  }
  return out;
}

// Steps from {-1, 0, 1}^3 inside a box (collinear runs, repeated points), each coordinate then
// moved by `jitter` times a random integer in [-2, 2] (contacts inside, on and just outside the
// bands).
Chain LatticeWalk(int n, unsigned seed, int box, float jitter = 0.f) {
  std::mt19937 gen(seed);
  Chain out;
  int p[3] = {0, 0, 0};
  auto jit = [&](int v) { return float(v) + jitter * float(int(gen() % 5) - 2); };
  while (static_cast<int>(out.size()) < n) {
    out.push_back({jit(p[0]), jit(p[1]), jit(p[2])});
    for (int a = 0; a < 3; ++a)
      p[a] = std::min(box, std::max(-box, p[a] + int(gen() % 3) - 1));
  }
  return out;
}

std::vector<std::pair<std::string, Chain>> Suite() {
  std::vector<std::pair<std::string, Chain>> all;
  auto add = [&](std::string name, Chain chain) { all.push_back({name, std::move(chain)}); };
  auto zoo = [&](const char* name, const std::vector<ChainAtom>& atoms) {
    add(name, {});
    for (const ChainAtom& a : atoms)
      all.back().second.push_back({float(a.x), float(a.y), float(a.z)});
  };
  for (unsigned seed = 0; seed < 80; ++seed) { // every corner case of 0 to 15 points
    add("short walk s" + std::to_string(seed), RandomWalk(seed % 16, seed));
    add("short lattice s" + std::to_string(seed), LatticeWalk(seed % 16, seed, 1 + seed % 5));
  }
  for (unsigned seed = 1; seed <= 12; ++seed) {
    const int n = 60 + 20 * static_cast<int>(seed);
    const std::string s = " s" + std::to_string(seed);
    add("walk" + s, RandomWalk(n, seed));
    add("coil" + s, RandomWalk(n, seed, 2 * std::cbrt(double(n))));
    add("jittered lattice" + s, LatticeWalk(n, seed, 2, 1e-5f));
  }
  Chain nan = RandomWalk(120, 5, 8); // no side-of-plane proofs
  nan[60].y = std::nanf("");
  add("coil with NaN", nan);
  zoo("trefoil", zoo::TorusKnot(2, 3, 200));
  zoo("planar circle", zoo::Circle(100));
  return all;
}

void AddJob(Chain& buffer, std::vector<Job>& jobs, const Chain& chain) {
  jobs.push_back({int32_t(buffer.size()), int32_t(chain.size()), 0, 0, 0, 0});
  buffer.insert(buffer.end(), chain.begin(), chain.end());
}

// Every suite chain as one job followed by two separator points, and among the first jobs some
// of -1 to 3 points that must be left alone.
void MakeBatch(Chain& buffer, std::vector<Job>& jobs) {
  int32_t shortLength = -1;
  for (const auto& c : Suite()) {
    AddJob(buffer, jobs, c.second);
    buffer.insert(buffer.end(), 2, fPointR3{-7.f, -7.f, -7.f});
    if (shortLength < 4)
      jobs.push_back({int32_t(buffer.size() - 2), shortLength++, 0, 0, 0, 0});
  }
}

// Segments through the triangle A, B = (1,0,0), C = (0,1,0), with A at the origin (then the
// meeting point has u = x and v = y) or on B (degenerate).
TEST(Intersection, HitsContactsAndMisses) {
  const struct {
    const char* name;
    fPointR3 p, q, a;
    int expected;
  } cases[] = {
      {"clear hit", {0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}, {0, 0, 0}, 1},
      {"0.5e-5 outside AC", {-0.5e-5f, 0.5f, 1}, {-0.5e-5f, 0.5f, -1}, {0, 0, 0}, 2},
      {"2e-5 outside AC", {-2e-5f, 0.5f, 1}, {-2e-5f, 0.5f, -1}, {0, 0, 0}, 0},
      {"0.5e-5 outside BC", {0.5f, 0.500005f, 1}, {0.5f, 0.500005f, -1}, {0, 0, 0}, 2},
      {"2e-5 outside BC", {0.5f, 0.50002f, 1}, {0.5f, 0.50002f, -1}, {0, 0, 0}, 0},
      {"first end inside", {0.25f, 0.25f, 0}, {0.25f, 0.25f, 1}, {0, 0, 0}, 2},
      {"parallel far away", {100, 100, 5}, {200, -50, 5}, {0, 0, 0}, 1},
      {"NaN end", {0.25f, 0.25f, 1}, {std::nanf(""), 0.25f, -1}, {0, 0, 0}, 0},
      {"degenerate triangle", {0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}, {1, 0, 0}, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    fPointR3 triangle[3] = {c.a, {1, 0, 0}, {0, 1, 0}}, segment[2] = {c.p, c.q};
    EXPECT_EQ(intersection(triangle, segment), c.expected);
  }
}

// Every host scan (scalar, four lanes, eight lanes where the CPU has AVX2) against the reference.
TEST(ChainReduce, SamePointsAsThePlainReduction) {
  for (const tresk::SimdLevel level : {tresk::kSimdScalar, tresk::kSimdSse, tresk::kSimdAvx}) {
    SCOPED_TRACE("simd limit " + std::to_string(level));
    const tresk::SimdLevel before = tresk::SimdLimit();
    tresk::SetSimdLimit(level);
    int reduced = 0;
    for (const auto& c : Suite()) {
      SCOPED_TRACE(c.first + " (" + std::to_string(c.second.size()) + " points)");
      Chain plain = c.second, chain = c.second;
      plain.resize(reference::ReduceClosedChain(plain.data(), static_cast<int>(plain.size())));
      ASSERT_EQ(ChainReduce(chain), static_cast<int>(plain.size()));
      EXPECT_TRUE(SameBits(chain, plain));
      reduced += plain.size() < c.second.size();
    }
    tresk::SetSimdLimit(before);
    EXPECT_GT(reduced, 50); // the suite must exercise removals, not only blocked chains
  }
}

// Every host path agrees with the reference on the whole buffer: stale tails keep their old
// points and nothing outside the jobs changes.
TEST(ChainReduceBatch, HostPathsAgreeWithTheReference) {
  Chain buffer, plainBuffer;
  std::vector<Job> jobs, plainJobs;
  MakeBatch(buffer, jobs);
  plainBuffer = buffer, plainJobs = jobs;
  ASSERT_EQ(reference::ChainReduceReference(plainBuffer, plainJobs), int(jobs.size()));
  const tresk::ParallelFor lastFirst = [](size_t n, const std::function<void(size_t)>& body) {
    for (size_t i = n; i-- > 0;)
      body(i);
  };
  // 0: ChainReduceCPU, 1: ChainReduceANY, 2: chunks handed out last first. The GPU leaves
  // shifted points in the tails: see the device test.
  for (int path = 0; path < 3 && (path == 0 || !tresk::ReduceBatchUsesDevice()); ++path) {
    SCOPED_TRACE(path);
    Chain b = buffer;
    std::vector<Job> j = jobs;
    EXPECT_EQ(path == 0   ? ChainReduceCPU(b, j)
              : path == 1 ? ChainReduceANY(b, j, true)
                          : tresk::ReduceBatch(b, j, lastFirst),
              path == 0 ? int(jobs.size()) : 0);
    EXPECT_TRUE(SameBits(b, plainBuffer));
    EXPECT_EQ(std::memcmp(j.data(), plainJobs.data(), j.size() * sizeof(Job)), 0);
  }
  std::vector<Job> none;
  EXPECT_EQ(ChainReduceCPU(buffer, none), 0);
}

// More jobs than the launch has threads, so that the grid-stride loop is exercised; only the
// reduced points are compared.
TEST(ChainReduceDevice, SameReductionsAsTheReference) {
  if (!tresk::ReduceBatchUsesDevice())
    GTEST_SKIP() << "no CUDA device: the GPU path is not taken";
  Chain buffer, plainBuffer;
  std::vector<Job> jobs, plainJobs;
  MakeBatch(buffer, jobs);
  for (unsigned n = 0; n < 600000; ++n)
    AddJob(buffer, jobs, n % 2 ? RandomWalk(n % 13, n) : LatticeWalk(n % 13, n, 1 + n % 4));
  plainBuffer = buffer, plainJobs = jobs;
  reference::ChainReduceReference(plainBuffer, plainJobs);
  EXPECT_EQ(ChainReduceANY(buffer, jobs, true), 0);
  for (size_t j = 0; j < jobs.size(); ++j) {
    ASSERT_EQ(std::memcmp(&jobs[j], &plainJobs[j], sizeof(Job)), 0) << "job " << j;
    const size_t bytes = std::max(0, jobs[j].length) * sizeof(fPointR3);
    ASSERT_EQ(std::memcmp(&buffer[jobs[j].begin], &plainBuffer[jobs[j].begin], bytes), 0) << j;
  }
}

} // namespace
