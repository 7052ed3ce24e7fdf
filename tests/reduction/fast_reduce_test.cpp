// The fast host reduction against the plain one: the same points, bit for bit, on random,
// knotted, degenerate and near-tolerance chains, and the batch paths built on it.
// TRESK_LONG_TESTS=1 in the environment runs chains several times longer.
#include <cstdlib>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/fastReduce.hpp"
#include "reduction/hostBatch.hpp"
#include "tests/reduction/chains.hpp"

namespace {

using reduction_chains::NamedChain;
using reduction_chains::SameBits;

int Scale() {
  const char* env = std::getenv("TRESK_LONG_TESTS");
  return env && std::atoi(env) > 0 ? 4 : 1;
}

// The four-lane test against the scalar one on segments aimed at the edges of the tolerance
// bands: meeting points with u, v and s just inside, on and just outside each band.
TEST(FastReduce, FourLaneTestAgreesWithTheScalarTest) {
  const float marks[] = {-3e-5f,    -2e-5f, -1e-5f,    -0.5e-5f, 0.f,      0.5e-5f,
                         1e-5f,     2e-5f,  0.3f,      0.5f,     0.99998f, 0.99999f,
                         0.999995f, 1.f,    1.000005f, 1.00001f, 1.00002f, 2.f};
  std::mt19937 gen(77);
  std::uniform_real_distribution<float> coord(-3.f, 3.f);
  auto pick = [&] { return marks[gen() % (sizeof marks / sizeof marks[0])]; };
  int blocking = 0, total = 0;
  for (int round = 0; round < 4000; ++round) {
    const fPointR3 a{coord(gen), coord(gen), coord(gen)};
    fPointR3 triangle[3] = {a, {coord(gen), coord(gen), coord(gen)}, {coord(gen), coord(gen), 0}};
    if (round % 7 == 0)
      triangle[2] = triangle[1]; // degenerate corner
    const fPointR3 e1{triangle[1].x - a.x, triangle[1].y - a.y, triangle[1].z - a.z};
    const fPointR3 e2{triangle[2].x - a.x, triangle[2].y - a.y, triangle[2].z - a.z};
    fPointR3 segments[8];
    for (int k = 0; k < 4; ++k) {
      const float u = pick(), v = round % 3 == 0 ? 1.f - u + pick() - 0.5f : pick(), t = pick();
      const fPointR3 x{a.x + u * e1.x + v * e2.x, a.y + u * e1.y + v * e2.y,
                       a.z + u * e1.z + v * e2.z};
      fPointR3 r{coord(gen), coord(gen), coord(gen)};
      if (gen() % 9 == 0)
        r = {e1.x - e2.x, e1.y - e2.y, e1.z - e2.z}; // parallel to the plane
      if (gen() % 17 == 0)
        r = {0, 0, 0};
      segments[2 * k] = {x.x - t * r.x, x.y - t * r.y, x.z - t * r.z};
      segments[2 * k + 1] = {segments[2 * k].x + r.x, segments[2 * k].y + r.y,
                             segments[2 * k].z + r.z};
    }
    const int bits = BlockingSegments4(triangle, segments);
    for (int k = 0; k < 4; ++k) {
      const int scalar = intersection(triangle, segments + 2 * k);
      ASSERT_EQ((bits >> k) & 1, scalar != 0) << "round " << round << " lane " << k;
      blocking += scalar != 0;
      ++total;
    }
  }
  EXPECT_GT(blocking, total / 10); // both answers must be common
  EXPECT_LT(blocking, total - total / 10);
}

TEST(FastReduce, SamePointsAsPlainReduction) {
  int reducedSomething = 0;
  for (const NamedChain& c : reduction_chains::Suite(Scale())) {
    SCOPED_TRACE(c.name + " (" + std::to_string(c.points.size()) + " points)");
    std::vector<fPointR3> plain = c.points, fast = c.points;
    const int plainSize = ChainReduce(plain);
    const int fastSize = ChainReduceFast(fast);
    ASSERT_EQ(fastSize, plainSize);
    EXPECT_TRUE(SameBits(fast, plain));
    reducedSomething += plainSize < static_cast<int>(c.points.size());
  }
  EXPECT_GT(reducedSomething, 50); // the suite must exercise removals, not only blocked chains
}

// One batch of every suite chain with gaps between the jobs: the fast batch, the plain batch
// and ChainReduceANY (host here unless a device is present) agree on the whole buffer, stale
// tails included, and the points outside the jobs stay untouched.
TEST(FastReduce, BatchPathsAgreeOnTheWholeBuffer) {
  std::vector<fPointR3> buffer;
  std::vector<Job> jobs;
  for (const NamedChain& c : reduction_chains::Suite(1)) {
    Job job{static_cast<int32_t>(buffer.size()), static_cast<int32_t>(c.points.size()), 0, 0, 0, 0};
    jobs.push_back(job);
    buffer.insert(buffer.end(), c.points.begin(), c.points.end());
    buffer.push_back({-7.f, -7.f, -7.f}); // two separators, as the scan lays them out
    buffer.push_back({-7.f, -7.f, -7.f});
  }
  jobs.push_back({static_cast<int32_t>(buffer.size()), -2, 0, 0, 0, 0}); // kept as it is
  std::vector<fPointR3> plainBuffer = buffer, fastBuffer = buffer;
  std::vector<Job> plainJobs = jobs, fastJobs = jobs;
  EXPECT_EQ(ChainReduceReference(plainBuffer, plainJobs), static_cast<int>(jobs.size()));
  EXPECT_EQ(ChainReduceCPU(fastBuffer, fastJobs), static_cast<int>(jobs.size()));
  EXPECT_TRUE(SameBits(fastBuffer, plainBuffer));
  for (size_t j = 0; j < jobs.size(); ++j) {
    SCOPED_TRACE("job " + std::to_string(j));
    EXPECT_EQ(fastJobs[j].length, plainJobs[j].length);
    EXPECT_EQ(fastJobs[j].begin, jobs[j].begin);
    for (int k = fastJobs[j].length < 0 ? 0 : fastJobs[j].length; k < jobs[j].length; ++k) {
      EXPECT_EQ(
          std::memcmp(&fastBuffer[jobs[j].begin + k], &buffer[jobs[j].begin + k], sizeof(fPointR3)),
          0);
    }
  }
  EXPECT_EQ(jobs.back().length, -2);
  if (!ChainReduceHasDevice()) { // the GPU leaves shifted points in the tails
    std::vector<fPointR3> anyBuffer = buffer;
    std::vector<Job> anyJobs = jobs;
    EXPECT_EQ(ChainReduceANY(anyBuffer, anyJobs, true), 0);
    EXPECT_TRUE(SameBits(anyBuffer, plainBuffer));
  }
}

// Disjoint job ranges reduced one after another equal the whole batch at once.
TEST(FastReduce, JobRangesComposeAndEmptyRangesDoNothing) {
  std::vector<fPointR3> buffer;
  std::vector<Job> jobs;
  for (unsigned seed = 0; seed < 9; ++seed) {
    const std::vector<fPointR3> c = reduction_chains::RandomWalk(40 + 10 * seed, seed);
    jobs.push_back(
        {static_cast<int32_t>(buffer.size()), static_cast<int32_t>(c.size()), 0, 0, 0, 0});
    buffer.insert(buffer.end(), c.begin(), c.end());
  }
  std::vector<fPointR3> whole = buffer, parts = buffer;
  std::vector<Job> wholeJobs = jobs, partJobs = jobs;
  ChainReduceJobsHost(whole, wholeJobs, 0, jobs.size());
  ChainReduceJobsHost(parts, partJobs, 5, 100); // the end is clamped to the job count
  ChainReduceJobsHost(parts, partJobs, 3, 3);
  ChainReduceJobsHost(parts, partJobs, 0, 5);
  EXPECT_TRUE(SameBits(parts, whole));
  for (size_t j = 0; j < jobs.size(); ++j)
    EXPECT_EQ(partJobs[j].length, wholeJobs[j].length);
  std::vector<Job> none;
  EXPECT_EQ(ChainReduceCPU(parts, none), 0);
  EXPECT_TRUE(SameBits(parts, whole));
}

} // namespace
