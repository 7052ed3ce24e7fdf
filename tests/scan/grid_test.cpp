// The scan grid: coarse jobs anchored at both chain ends and refinement windows around
// strongly knotted rows, with their log messages.
#include <iostream>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "scan/grid.hpp"
#include "tests/scan/stream_capture.hpp"

namespace {

using Pairs = std::vector<std::pair<int, int>>;

// A straight chain whose ids (100 + position) differ from the positions.
std::vector<ChainAtom> Line(int n) {
  std::vector<ChainAtom> chain;
  for (int i = 1; i <= n; ++i)
    chain.push_back({double(i), 0.0, 0.0, 100 + i});
  return chain;
}

Pairs Positions(const std::vector<Job>& jobs) {
  Pairs out;
  for (const Job& j : jobs)
    out.emplace_back(j.first, j.last);
  return out;
}

TEST(CoarseGrid, JobsAndMessage) {
  struct Case {
    const char* name;
    int atoms;
    int step;
    Pairs expected;
  };
  const Case cases[] = {
      {"n=10 step 3", 10, 3, {{1, 10}, {1, 7}, {1, 4}, {4, 10}, {4, 7}, {7, 10}}},
      {"step 1: every pair", 4, 1, {{1, 4}, {1, 3}, {1, 2}, {2, 4}, {2, 3}, {3, 4}}},
      {"step longer than the chain", 5, 9, {{1, 5}}},
      {"j stops before wrapping below 0", 7, 2, {{1, 7}, {1, 5}, {1, 3}, {3, 7}, {3, 5}, {5, 7}}},
      {"one atom", 1, 3, {}},
      {"no atom", 0, 3, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<Job> jobs;
    StreamCapture log(std::clog);
    EXPECT_EQ(PrepareJobsFromNet(Line(c.atoms), jobs, c.step), 1);
    EXPECT_EQ(Positions(jobs), c.expected);
    EXPECT_EQ(log.Text(),
              "Choosen " + std::to_string(c.expected.size()) + " points on the net of matrix.\n");
    for (const Job& j : jobs) {
      EXPECT_EQ(j.firstId, 100 + j.first);
      EXPECT_EQ(j.lastId, 100 + j.last);
      EXPECT_EQ(j.begin, 0);
      EXPECT_EQ(j.length, 0);
    }
  }
}

RowFile Row(int first, int last, int strength) {
  return RowFile{first, last, strength, ""};
}

TEST(Refinement, WindowsAroundStrongRows) {
  struct Case {
    const char* name;
    std::vector<RowFile> rows;
    int step;
    int threshold;
    Pairs expected;
  };
  const Case cases[] = {
      {"clipped at position 1 and at the last atom",
       {Row(1, 10, 50)},
       3,
       20,
       {{1, 8}, {1, 9}, {2, 8}, {2, 9}, {2, 10}, {3, 8}, {3, 9}, {3, 10}}},
      {"strength at the threshold marks nothing", {Row(4, 8, 20)}, 3, 20, {}},
      {"step 1: the window is the row itself, which is cleared", {Row(4, 8, 90)}, 1, 20, {}},
      {"a later window sets a point an earlier row cleared",
       {Row(4, 8, 90), Row(5, 8, 90)},
       2,
       20,
       {{3, 7}, {3, 8}, {3, 9}, {4, 7}, {4, 8}, {4, 9}, {5, 7}, {5, 9}, {6, 7}, {6, 8}, {6, 9}}},
      {"marks on or below the diagonal are ignored",
       {Row(3, 4, 90)},
       2,
       20,
       {{2, 3}, {2, 4}, {2, 5}, {3, 5}, {4, 5}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<Job> jobs;
    StreamCapture log(std::clog);
    EXPECT_EQ(PrepareJobsAroundNet(Line(10), jobs, c.rows, c.step, c.threshold), 0);
    EXPECT_EQ(Positions(jobs), c.expected);
    EXPECT_EQ(log.Text(), "There is " + std::to_string(c.expected.size()) +
                              " more points on the net of matrix.\n");
    for (const Job& j : jobs)
      EXPECT_EQ(j.lastId, 100 + j.last);
  }
}

} // namespace
