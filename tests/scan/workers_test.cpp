// The worker pool of a scan: the same threads serve pass after pass, every job runs once, and a
// job's exception reaches the caller without stopping the pool.
#include <atomic>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "scan/workers.hpp"

TEST(WorkerPool, PassesAfterAnException) {
  tresk::WorkerPool pool(3);
  auto failing = [](std::size_t i) {
    if (i == 17)
      throw std::runtime_error("job 17");
  };
  EXPECT_THROW(pool.Run(50, failing, [](std::size_t) {}), std::runtime_error);
  for (std::size_t count : {200, 0, 1, 37}) {
    std::vector<std::atomic<int>> runs(count);
    std::size_t progress = 0;
    pool.Run(
        count, [&](std::size_t i) { ++runs[i]; }, [&](std::size_t done) { progress = done; });
    EXPECT_EQ(progress, count);
    for (const std::atomic<int>& r : runs)
      EXPECT_EQ(r.load(), 1);
  }
}
