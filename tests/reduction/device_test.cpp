// The GPU path against the reference on one large batch: every job's length and reduced points
// must agree bit for bit. Skipped where no CUDA device is present (or the build has no CUDA).
#include <cstring>

#include <gtest/gtest.h>

#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/batch.hpp"
#include "tests/reduction/chains.hpp"
#include "tests/support/reduce_reference.hpp"

namespace {

TEST(ChainReduceDevice, SameReductionsAsTheReference) {
  if (!tresk::ReduceBatchUsesDevice())
    GTEST_SKIP() << "no CUDA device: the GPU path is not taken";
  std::vector<fPointR3> buffer;
  std::vector<Job> jobs;
  auto add = [&](const std::vector<fPointR3>& c) {
    jobs.push_back(
        {static_cast<int32_t>(buffer.size()), static_cast<int32_t>(c.size()), 0, 0, 0, 0});
    buffer.insert(buffer.end(), c.begin(), c.end());
  };
  // More jobs than the launch has threads, so that the grid-stride loop is exercised.
  for (unsigned seed = 0; seed < 600000; ++seed) {
    const int n = static_cast<int>(seed % 13);
    add(seed % 2 ? reduction_chains::RandomWalk(n, seed)
                 : reduction_chains::LatticeWalk(n, seed, 1 + seed % 4));
  }
  for (const reduction_chains::NamedChain& c : reduction_chains::Suite())
    add(c.points);
  std::vector<fPointR3> deviceBuffer = buffer, hostBuffer = buffer;
  std::vector<Job> deviceJobs = jobs, hostJobs = jobs;
  EXPECT_EQ(ChainReduceANY(deviceBuffer, deviceJobs, true), 0);
  reference::ChainReduceReference(hostBuffer, hostJobs);
  for (size_t j = 0; j < jobs.size(); ++j) {
    ASSERT_EQ(deviceJobs[j].length, hostJobs[j].length) << "job " << j;
    ASSERT_EQ(deviceJobs[j].begin, jobs[j].begin) << "job " << j;
    ASSERT_EQ(std::memcmp(&deviceBuffer[jobs[j].begin], &hostBuffer[jobs[j].begin],
                          hostJobs[j].length * sizeof(fPointR3)),
              0)
        << "job " << j;
  }
}

} // namespace
