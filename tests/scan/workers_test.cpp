// Threaded batch passes: every job runs once, log text comes out in job order whatever the
// threads do, progress reaches the end, and a job's exception reaches the caller.
#include <atomic>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "scan/workers.hpp"
#include "tests/scan/stream_capture.hpp"

namespace {

TEST(Workers, LogInJobOrderAndEveryJobOnce) {
  const std::size_t count = 200;
  std::string expected;
  for (std::size_t i = 0; i < count; ++i)
    expected += "job " + std::to_string(i) + "\n";
  for (int workers : {1, 2, 7}) {
    SCOPED_TRACE(workers);
    std::vector<std::atomic<int>> runs(count);
    std::size_t lastProgress = 0;
    StreamCapture log(std::clog);
    RunJobs(
        count, workers,
        [&](std::size_t i) {
          // Later jobs finish first when threads run them side by side.
          volatile double spin = 0;
          for (std::size_t k = 0; k < (count - i) * 200; ++k)
            spin = spin + 1;
          std::clog << "job " << i << "\n";
          ++runs[i];
        },
        [&](std::size_t done) {
          EXPECT_GE(done, lastProgress);
          lastProgress = done;
        });
    EXPECT_EQ(log.Text(), expected);
    EXPECT_EQ(lastProgress, count);
    for (const std::atomic<int>& r : runs)
      EXPECT_EQ(r.load(), 1);
  }
}

TEST(Workers, ExceptionReachesTheCaller) {
  StreamCapture log(std::clog);
  EXPECT_THROW(RunJobs(
                   50, 3,
                   [](std::size_t i) {
                     if (i == 17)
                       throw std::runtime_error("job 17");
                   },
                   [](std::size_t) {}),
               std::runtime_error);
  // The log stream is the caller's again.
  std::clog << "after";
  EXPECT_EQ(log.Text(), "after");
}

} // namespace
