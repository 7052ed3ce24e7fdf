// The scan grid: coarse jobs anchored at both chain ends, and refinement windows around strongly
// knotted rows (clipped, thresholded, the row itself cleared), with their log messages.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/log.hpp"
#include "scan/grid.hpp"

namespace {

using Pairs = std::vector<std::pair<int, int>>;

// The jobs of one grid over a straight chain of `atoms` whose ids are 100 + position.
Pairs Grid(int atoms, int step, const std::vector<RowFile>* rows, const std::string& message) {
  std::vector<ChainAtom> chain;
  for (int i = 1; i <= atoms; ++i)
    chain.push_back({double(i), 0.0, 0.0, 100 + i});
  std::vector<Job> jobs;
  std::string log;
  {
    tresk::LogCapture capture(log);
    EXPECT_EQ(rows ? PrepareJobsAroundNet(chain, jobs, *rows, step, 20)
                   : PrepareJobsFromNet(chain, jobs, step),
              rows ? 0 : 1);
  }
  EXPECT_EQ(log, message.substr(0, message.find('#')) + std::to_string(jobs.size()) +
                     message.substr(message.find('#') + 1));
  Pairs out;
  for (const Job& j : jobs) {
    EXPECT_EQ(j.firstId - j.first + j.lastId - j.last, 200);
    out.emplace_back(j.first, j.last);
  }
  return out;
}

TEST(ScanGrid, CoarseJobs) {
  const struct {
    int atoms, step;
    Pairs expected;
  } cases[] = {
      {10, 3, {{1, 10}, {1, 7}, {1, 4}, {4, 10}, {4, 7}, {7, 10}}},
      {7, 2, {{1, 7}, {1, 5}, {1, 3}, {3, 7}, {3, 5}, {5, 7}}}, // j stops before wrapping
      {5, 9, {{1, 5}}},
      {1, 3, {}},
      {0, 3, {}},
      {5, 0, {}}, // a step of 0 lays no grid
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.atoms) + " atoms, step " + std::to_string(c.step));
    EXPECT_EQ(Grid(c.atoms, c.step, nullptr, "Choosen # points on the net of matrix.\n"),
              c.expected);
  }
}

TEST(ScanGrid, RefinementWindows) {
  const struct {
    const char* name;
    std::vector<RowFile> rows; // first, last, strength (threshold 20)
    int step;
    Pairs expected;
  } cases[] = {
      {"clipped at position 1 and at the last atom",
       {{1, 10, 50, ""}},
       3,
       {{1, 8}, {1, 9}, {2, 8}, {2, 9}, {2, 10}, {3, 8}, {3, 9}, {3, 10}}},
      {"strength at the threshold marks nothing", {{4, 8, 20, ""}}, 3, {}},
      {"step 1: the window is the row itself, which is cleared", {{4, 8, 90, ""}}, 1, {}},
      {"a later window sets a point an earlier row cleared",
       {{4, 8, 90, ""}, {5, 8, 90, ""}},
       2,
       {{3, 7}, {3, 8}, {3, 9}, {4, 7}, {4, 8}, {4, 9}, {5, 7}, {5, 9}, {6, 7}, {6, 8}, {6, 9}}},
      {"marks on or below the diagonal are ignored",
       {{3, 4, 90, ""}},
       2,
       {{2, 3}, {2, 4}, {2, 5}, {3, 5}, {4, 5}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Grid(10, c.step, &c.rows, "There is # more points on the net of matrix.\n"),
              c.expected);
  }
}

} // namespace
