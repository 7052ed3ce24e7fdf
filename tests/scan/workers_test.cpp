// The worker pool of a scan: the same threads serve pass after pass, every job runs once, what
// the jobs log comes out in job order, and a job's exception reaches the caller.
#include <atomic>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "core/log.hpp"
#include "scan/workers.hpp"

TEST(WorkerPool, PassesAfterAnException) {
  tresk::WorkerPool pool(3);
  auto failing = [](std::size_t i) {
    if (i == 17)
      throw std::runtime_error("job 17");
  };
  EXPECT_THROW(pool.Run(50, failing, [](std::size_t) {}), std::runtime_error);
  for (std::size_t count : {200, 0, 1, 37}) {
    std::string log, expected;
    std::size_t progress = 0;
    {
      tresk::LogCapture capture(log);
      pool.Run(
          count,
          [&](std::size_t i) {
            volatile double spin = 0; // later jobs finish first when threads run side by side
            for (std::size_t k = 0; k < (count - i) * 200; ++k)
              spin = spin + 1;
            tresk::Log() << i << " ";
          },
          [&](std::size_t done) { progress = done; });
    }
    for (std::size_t i = 0; i < count; ++i)
      expected += std::to_string(i) + " ";
    EXPECT_EQ(log, expected); // also: each job once
    EXPECT_EQ(progress, count);
  }
}
