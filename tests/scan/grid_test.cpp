// The scan grid: coarse jobs anchored at both chain ends, and refinement windows around strongly
// knotted rows (clipped, thresholded, the row itself cleared), with their log messages.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/log.hpp"
#include "scan/grid.hpp"

namespace {

// The jobs "first-last ..." of one grid over a straight chain whose ids are 100 + position.
std::string Grid(int atoms, int step, const std::vector<RowFile>* rows, std::string message) {
  std::vector<ChainAtom> chain;
  for (int i = 1; i <= atoms; ++i)
    chain.push_back({double(i), 0.0, 0.0, 100 + i});
  std::vector<Job> jobs;
  std::string log, out;
  {
    tresk::LogCapture capture(log);
    EXPECT_EQ(rows ? PrepareJobsAroundNet(chain, jobs, *rows, step, 20)
                   : PrepareJobsFromNet(chain, jobs, step),
              rows ? 0 : 1);
  }
  EXPECT_EQ(log, message.replace(message.find('#'), 1, std::to_string(jobs.size())));
  for (const Job& j : jobs) {
    EXPECT_EQ(j.firstId - j.first + j.lastId - j.last, 200);
    out += (out.empty() ? "" : " ") + std::to_string(j.first) + "-" + std::to_string(j.last);
  }
  return out;
}

TEST(ScanGrid, CoarseJobsAndRefinementWindows) {
  const struct {
    const char* name;
    int atoms, step;
    bool refine;
    std::vector<RowFile> rows; // first, last, strength; refined above 20
    const char* expected;
  } cases[] = {
      {"coarse", 10, 3, false, {}, "1-10 1-7 1-4 4-10 4-7 7-10"},
      {"coarse, j stops before wrapping", 7, 2, false, {}, "1-7 1-5 1-3 3-7 3-5 5-7"},
      {"coarse, step beyond the chain", 5, 9, false, {}, "1-5"},
      {"coarse, one atom", 1, 3, false, {}, ""},
      {"coarse, no atom", 0, 3, false, {}, ""},
      {"coarse, step 0 lays no grid", 5, 0, false, {}, ""},
      {"clipped at both ends", 10, 3, true, {{1, 10, 50, ""}}, "1-8 1-9 2-8 2-9 2-10 3-8 3-9 3-10"},
      {"strength at the threshold marks nothing", 10, 3, true, {{4, 8, 20, ""}}, ""},
      {"step 1: only the row itself, which is cleared", 10, 1, true, {{4, 8, 90, ""}}, ""},
      {"a later window sets a point an earlier row cleared",
       10,
       2,
       true,
       {{4, 8, 90, ""}, {5, 8, 90, ""}},
       "3-7 3-8 3-9 4-7 4-8 4-9 5-7 5-9 6-7 6-8 6-9"},
      {"on or below the diagonal", 10, 2, true, {{3, 4, 90, ""}}, "2-3 2-4 2-5 3-5 4-5"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Grid(c.atoms, c.step, c.refine ? &c.rows : nullptr,
                   c.refine ? "There is # more points on the net of matrix.\n"
                            : "Choosen # points on the net of matrix.\n"),
              c.expected);
  }
}

} // namespace
