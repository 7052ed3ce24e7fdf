// Subchain preparation: buffer layout, the random draws, the memory budget and its messages,
// the open-subchain preparation and the copy of a reduced job back to a chain.
#include <cstdlib>
#include <iostream>
#include <vector>

#include <gtest/gtest.h>

#include "scan/prepare.hpp"
#include "tests/scan/stream_capture.hpp"

namespace {

std::vector<ChainAtom> Chain(int n) {
  std::vector<ChainAtom> chain;
  for (int i = 1; i <= n; ++i)
    chain.push_back({i + 0.1, 2.0 * i, -0.5 * i, 100 + i});
  return chain;
}

Job Grid(int first, int last) {
  return Job{0, 0, 100 + first, 100 + last, first, last};
}

bool Same(const fPointR3& p, const ChainAtom& a) {
  return p.x == float(a.x) && p.y == float(a.y) && p.z == float(a.z);
}

struct Fuleren {
  bool result;
  std::vector<fPointR3> points;
  std::vector<Job> batch;
  std::string log;
  std::string err;
};

Fuleren Prepare(const std::vector<Job>& grid, unsigned int& next, int closures, int method,
                unsigned long long limit, int atoms = 10) {
  Fuleren f;
  StreamCapture log(std::clog);
  StreamCapture err(std::cerr);
  f.result = PrepareAllInfixesFuleren(Chain(atoms), f.points, f.batch, grid, next, closures, method,
                                      limit);
  f.log = log.Text();
  f.err = err.Text();
  return f;
}

TEST(PrepareClosed, OpenMethodsLayOutEachCopyWithItsLastPointTwiceMore) {
  for (int method : {0, 4, 7, -1}) {
    SCOPED_TRACE(method);
    unsigned int next = 0;
    const std::vector<ChainAtom> chain = Chain(10);
    Fuleren f = Prepare({Grid(2, 5), Grid(6, 8)}, next, 2, method, 1000000);
    EXPECT_TRUE(f.result);
    EXPECT_EQ(next, 2u);
    ASSERT_EQ(f.batch.size(), 4u);
    const int begins[] = {0, 6, 12, 17};
    const int lengths[] = {4, 4, 3, 3};
    for (int k = 0; k < 4; ++k) {
      const Job& j = f.batch[k];
      EXPECT_EQ(j.begin, begins[k]);
      EXPECT_EQ(j.length, lengths[k]);
      EXPECT_EQ(j.first, k < 2 ? 2 : 6);
      EXPECT_EQ(j.lastId, k < 2 ? 105 : 108);
      for (int p = 0; p < j.length; ++p)
        EXPECT_TRUE(Same(f.points[j.begin + p], chain[j.first - 1 + p]));
      EXPECT_TRUE(Same(f.points[j.begin + j.length], chain[j.last - 1]));
      EXPECT_TRUE(Same(f.points[j.begin + j.length + 1], chain[j.last - 1]));
    }
    EXPECT_EQ(f.points.size(), 22u);
    EXPECT_EQ(f.log, "created 4 jobs of total size 22\n");
    EXPECT_EQ(f.err, "");
  }
}

TEST(PrepareClosed, DrawsTwoDistinctDirectionsPerClosure) {
  // The generator must end where these draws leave it, whatever the closure method does not draw.
  std::srand(7);
  for (int c = 0; c < 5; ++c) {
    const int r1 = std::rand() % 60;
    int r2;
    do {
      r2 = std::rand() % 60;
    } while (r2 == r1);
  }
  const int expected = std::rand();
  std::srand(7);
  unsigned int next = 0;
  Prepare({Grid(1, 4), Grid(3, 9)}, next, 2, 0, 1000000); // 4 closures
  Prepare({Grid(1, 4)}, next = 0, 1, 0, 1000000);         // 1 more
  EXPECT_EQ(std::rand(), expected);
}

TEST(PrepareClosed, BudgetEdges) {
  // Grid jobs have length 0, so one closure is estimated at 13 × (buffered + 100) units.
  const std::vector<Job> grid = {Grid(1, 5), Grid(1, 4)};
  struct Case {
    const char* name;
    unsigned long long limit;
    bool result;
    unsigned int next;
    std::size_t jobs;
    std::string log;
    std::string err;
  };
  const std::string uuups =
      "UUUPS. -------There is no memory? We quit here and do not check whole matrix. SORRY. \n";
  const Case cases[] = {
      {"both fit, the second exactly", 13 * (7 + 100), true, 2, 2,
       "created 2 jobs of total size 13\n", ""},
      {"the second is one unit over", 13 * (7 + 100) - 1, false, 1, 1,
       "created 1 jobs of total size 7The last: 101 104. Will continue.\n", ""},
      {"the first fits exactly", 13 * 100, false, 1, 1,
       "created 1 jobs of total size 7The last: 101 104. Will continue.\n", ""},
      {"nothing fits", 13 * 100 - 1, true, 0, 0,
       "created 0 jobs of total size 0The last: 101 105. Will continue.\n", uuups},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    unsigned int next = 0;
    Fuleren f = Prepare(grid, next, 1, 0, c.limit);
    EXPECT_EQ(f.result, c.result);
    EXPECT_EQ(next, c.next);
    EXPECT_EQ(f.batch.size(), c.jobs);
    EXPECT_EQ(f.log, c.log);
    EXPECT_EQ(f.err, c.err);
  }
}

TEST(PrepareClosed, EmptyGridAndNonPositiveClosures) {
  unsigned int next = 5;
  Fuleren none = Prepare({}, next, 3, 2, 1000000);
  EXPECT_TRUE(none.result);
  EXPECT_EQ(none.log, "created 0 jobs of total size 0\n");

  // A negative count makes the (wrapping) estimate huge: the phase gives up at once.
  next = 0;
  Fuleren negative = Prepare({Grid(1, 5)}, next, -2, 2, 1000000);
  EXPECT_TRUE(negative.result);
  EXPECT_TRUE(negative.batch.empty());
  EXPECT_NE(negative.err.find("UUUPS."), std::string::npos);
}

TEST(PrepareOpen, ForwardAndReversedCopiesOfEveryLengthAndBadLengths) {
  const std::vector<ChainAtom> chain = Chain(6);
  std::vector<fPointR3> points;
  std::vector<Job> batch;
  unsigned int len = 5, start = 0;
  StreamCapture log(std::clog);
  EXPECT_EQ(PrepareAllInfixes(chain, points, batch, len, start, 1000000), 1);
  EXPECT_EQ(log.Text(), "created 6 jobs of total size 44. Zaczynamy od id 1, len 7\n");
  ASSERT_EQ(batch.size(), 6u);
  const int firsts[] = {1, 1, 2, 2, 1, 1};
  const int lengths[] = {5, 5, 5, 5, 6, 6};
  const int begins[] = {0, 7, 14, 21, 28, 36};
  for (int k = 0; k < 6; ++k) {
    SCOPED_TRACE(k);
    const Job& j = batch[k];
    EXPECT_EQ(j.first, firsts[k]);
    EXPECT_EQ(j.length, lengths[k]);
    EXPECT_EQ(j.begin, begins[k]);
    EXPECT_EQ(j.last, j.first + j.length - 1);
    EXPECT_EQ(j.firstId, 100 + j.first);
    const bool reversed = k % 2 == 1;
    for (int p = 0; p < j.length + 2; ++p) {
      const int q = std::min(p, j.length - 1);
      const int atom = reversed ? j.last - 1 - q : j.first - 1 + q;
      EXPECT_TRUE(Same(points[j.begin + p], chain[atom]));
    }
  }
  for (unsigned int bad : {3u, 7u}) {
    StreamCapture err(std::cerr);
    len = bad;
    EXPECT_EQ(PrepareAllInfixes(chain, points, batch, len, start, 1000000), -1);
    EXPECT_EQ(err.Text(), "Problem with 'len' in PrepareAllInfixes(), tresk. Tell it Brenvo. \n");
    EXPECT_TRUE(points.empty() && batch.empty());
  }
}

TEST(CopyJob, WidensThePointsOfOneJobOnly) {
  const std::vector<fPointR3> points = {{1, 2, 3}, {4.5f, 5, 6}, {7, 8, 9}, {7, 8, 9}, {7, 8, 9}};
  std::vector<ChainAtom> out = {{0, 0, 0, 5}};
  CopyJobToChainAtom(points, out, Job{1, 2, 11, 12, 1, 2});
  ASSERT_EQ(out.size(), 2u);
  EXPECT_EQ(out[0].x, 4.5);
  EXPECT_EQ(out[1].z, 9.0);
  EXPECT_EQ(out[1].id, 0);
  for (int length : {0, -3}) {
    CopyJobToChainAtom(points, out, Job{1, length, 0, 0, 0, 0});
    EXPECT_TRUE(out.empty());
  }
}

} // namespace
