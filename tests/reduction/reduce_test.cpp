// The segment-triangle test around its tolerance bands, and the library's reduction (one chain
// and every batch path) against the plain restart-after-every-removal reference, bit for bit.
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/batch.hpp"
#include "tests/reduction/chains.hpp"
#include "tests/support/reduce_reference.hpp"

namespace {

using reduction_chains::SameBits;

// Segments through the unit right triangle A = origin, B = (1,0,0), C = (0,1,0), where the
// coordinates of the meeting point are u = x and v = y.
TEST(Intersection, HitsContactsAndMisses) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const struct {
    const char* name;
    fPointR3 p, q;
    int expected;
  } cases[] = {
      {"clear hit", {0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}, 1},
      {"miss beside", {2, 2, 1}, {2, 2, -1}, 0},
      {"ends before the plane", {0.25f, 0.25f, 2}, {0.25f, 0.25f, 1}, 0},
      {"0.5e-5 outside AC", {-0.5e-5f, 0.5f, 1}, {-0.5e-5f, 0.5f, -1}, 2},
      {"0.5e-5 inside AC", {0.5e-5f, 0.5f, 1}, {0.5e-5f, 0.5f, -1}, 2},
      {"2e-5 outside AC", {-2e-5f, 0.5f, 1}, {-2e-5f, 0.5f, -1}, 0},
      {"0.5e-5 outside AB", {0.5f, -0.5e-5f, 1}, {0.5f, -0.5e-5f, -1}, 2},
      {"2e-5 outside AB", {0.5f, -2e-5f, 1}, {0.5f, -2e-5f, -1}, 0},
      {"0.5e-5 outside BC", {0.5f, 0.500005f, 1}, {0.5f, 0.500005f, -1}, 2},
      {"2e-5 outside BC", {0.5f, 0.50002f, 1}, {0.5f, 0.50002f, -1}, 0},
      {"first end inside", {0.25f, 0.25f, 0}, {0.25f, 0.25f, 1}, 2},
      {"second end inside", {0.25f, 0.25f, 1}, {0.25f, 0.25f, 0}, 2},
      {"parallel far away", {100, 100, 5}, {200, -50, 5}, 1},
      {"zero length", {0.25f, 0.25f, 3}, {0.25f, 0.25f, 3}, 1},
      {"NaN end", {0.25f, 0.25f, 1}, {nan, 0.25f, -1}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    fPointR3 triangle[3] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, segment[2] = {c.p, c.q};
    EXPECT_EQ(intersection(triangle, segment), c.expected);
  }
  fPointR3 degenerate[3] = {{0, 0, 0}, {0, 0, 0}, {0, 1, 0}};
  fPointR3 crossing[2] = {{0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}};
  EXPECT_EQ(intersection(degenerate, crossing), 1);
}

TEST(ChainReduce, SamePointsAsThePlainReduction) {
  int reduced = 0;
  for (const reduction_chains::NamedChain& c : reduction_chains::Suite()) {
    SCOPED_TRACE(c.name + " (" + std::to_string(c.points.size()) + " points)");
    std::vector<fPointR3> plain = c.points, chain = c.points;
    plain.resize(reference::ReduceClosedChain(plain.data(), static_cast<int>(plain.size())));
    ASSERT_EQ(ChainReduce(chain), static_cast<int>(plain.size()));
    EXPECT_TRUE(SameBits(chain, plain));
    reduced += plain.size() < c.points.size();
  }
  EXPECT_GT(reduced, 50); // the suite must exercise removals, not only blocked chains
}

// One batch of every suite chain with separators between the jobs, short and negative jobs
// among them: every host path agrees with the reference on the whole buffer, so stale tails
// keep their old points and nothing outside the jobs changes.
TEST(ChainReduceBatch, HostPathsAgreeWithTheReference) {
  std::vector<fPointR3> buffer;
  std::vector<Job> jobs;
  int32_t length = -1;
  for (const reduction_chains::NamedChain& c : reduction_chains::Suite()) {
    jobs.push_back(
        {static_cast<int32_t>(buffer.size()), static_cast<int32_t>(c.points.size()), 0, 0, 0, 0});
    buffer.insert(buffer.end(), c.points.begin(), c.points.end());
    buffer.insert(buffer.end(), 2, fPointR3{-7.f, -7.f, -7.f});
    if (length < 4)
      jobs.push_back({static_cast<int32_t>(buffer.size() - 2), length++, 0, 0, 0, 0});
  }
  std::vector<fPointR3> plainBuffer = buffer;
  std::vector<Job> plainJobs = jobs;
  ASSERT_EQ(reference::ChainReduceReference(plainBuffer, plainJobs), int(jobs.size()));
  for (int path = 0; path < 3; ++path) {
    SCOPED_TRACE(path == 0 ? "ChainReduceCPU" : path == 1 ? "ChainReduceANY" : "parallel chunks");
    if (path > 0 && tresk::ReduceBatchUsesDevice())
      continue; // the GPU leaves shifted points in the tails; see the device test
    std::vector<fPointR3> b = buffer;
    std::vector<Job> j = jobs;
    if (path == 0)
      EXPECT_EQ(ChainReduceCPU(b, j), int(jobs.size()));
    if (path == 1)
      EXPECT_EQ(ChainReduceANY(b, j, true), 0);
    if (path == 2) // chunks handed out last first
      tresk::ReduceBatch(b, j, [](size_t n, const std::function<void(size_t)>& body) {
        for (size_t i = n; i-- > 0;)
          body(i);
      });
    EXPECT_TRUE(SameBits(b, plainBuffer));
    EXPECT_EQ(std::memcmp(j.data(), plainJobs.data(), j.size() * sizeof(Job)), 0);
  }
  std::vector<Job> none;
  EXPECT_EQ(ChainReduceCPU(buffer, none), 0);
}

} // namespace
