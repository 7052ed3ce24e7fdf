// The segment-triangle test on hand-made cases around its tolerance bands, and the plain
// reduction of one chain: sizes it leaves alone, planar and 4-point chains, knots that cannot
// shrink below their stick number, and the order-keeping shape of every result.
#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/fastReduce.hpp"
#include "reduction/hostBatch.hpp"
#include "tests/reduction/chains.hpp"

namespace {

using reduction_chains::ToFloat;

// Segments through the unit right triangle A = origin, B = (1,0,0), C = (0,1,0), where the
// coordinates of the meeting point are u = x and v = y.
TEST(Intersection, HitsContactsAndMisses) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  struct Case {
    const char* name;
    fPointR3 p, q;
    int expected;
  };
  const Case cases[] = {
      {"clear hit", {0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}, 1},
      {"miss beside", {2, 2, 1}, {2, 2, -1}, 0},
      {"segment ends before the plane", {0.25f, 0.25f, 2}, {0.25f, 0.25f, 1}, 0},
      {"0.5e-5 outside edge AC", {-0.5e-5f, 0.5f, 1}, {-0.5e-5f, 0.5f, -1}, 2},
      {"0.5e-5 inside edge AC", {0.5e-5f, 0.5f, 1}, {0.5e-5f, 0.5f, -1}, 2},
      {"2e-5 outside edge AC", {-2e-5f, 0.5f, 1}, {-2e-5f, 0.5f, -1}, 0},
      {"0.5e-5 outside edge AB", {0.5f, -0.5e-5f, 1}, {0.5f, -0.5e-5f, -1}, 2},
      {"2e-5 outside edge AB", {0.5f, -2e-5f, 1}, {0.5f, -2e-5f, -1}, 0},
      {"0.5e-5 outside edge BC", {0.5f, 0.500005f, 1}, {0.5f, 0.500005f, -1}, 2},
      {"2e-5 outside edge BC", {0.5f, 0.50002f, 1}, {0.5f, 0.50002f, -1}, 0},
      {"first end inside the triangle", {0.25f, 0.25f, 0}, {0.25f, 0.25f, 1}, 2},
      {"second end inside the triangle", {0.25f, 0.25f, 1}, {0.25f, 0.25f, 0}, 2},
      {"parallel far away", {100, 100, 5}, {200, -50, 5}, 1},
      {"parallel in the plane", {5, 5, 0}, {6, 7, 0}, 1},
      {"zero length", {0.25f, 0.25f, 3}, {0.25f, 0.25f, 3}, 1},
      {"NaN end", {0.25f, 0.25f, 1}, {nan, 0.25f, -1}, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    fPointR3 triangle[3] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    fPointR3 segment[2] = {c.p, c.q};
    EXPECT_EQ(intersection(triangle, segment), c.expected);
  }
  fPointR3 degenerate[3] = {{0, 0, 0}, {0, 0, 0}, {0, 1, 0}};
  fPointR3 crossing[2] = {{0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}};
  EXPECT_EQ(intersection(degenerate, crossing), 1);
  fPointR3 nanTriangle[3] = {{0, 0, 0}, {1, 0, nan}, {0, 1, 0}};
  EXPECT_EQ(intersection(nanTriangle, crossing), 0);
}

// Both host reductions, so that every expectation holds for the fast path too.
int ReduceBoth(std::vector<fPointR3>& chain) {
  std::vector<fPointR3> fast = chain;
  const int n = ChainReduce(chain);
  EXPECT_EQ(ChainReduceFast(fast), n);
  EXPECT_TRUE(reduction_chains::SameBits(fast, chain));
  return n;
}

TEST(ChainReduce, FixedCases) {
  for (int n = 0; n <= 3; ++n) { // too small to lose a point
    SCOPED_TRACE(n);
    std::vector<fPointR3> chain = reduction_chains::RandomWalk(n, 5);
    const std::vector<fPointR3> before = chain;
    EXPECT_EQ(ReduceBoth(chain), n);
    EXPECT_TRUE(reduction_chains::SameBits(chain, before));
  }
  // Four points lose the second one, planar or not: its corner is tested against nothing.
  for (const std::vector<fPointR3>& four :
       {std::vector<fPointR3>{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
        std::vector<fPointR3>{{0, 0, 0}, {1, 0, 2}, {1, 1, -1}, {0, 1, 3}}}) {
    std::vector<fPointR3> chain = four;
    EXPECT_EQ(ReduceBoth(chain), 3);
    EXPECT_EQ(std::memcmp(&chain[1], &four[2], 2 * sizeof(fPointR3)), 0);
  }
  // In a plane every other segment is parallel to every corner: nothing goes.
  for (int n : {5, 8, 100}) {
    std::vector<fPointR3> chain = ToFloat(zoo::Circle(n));
    EXPECT_EQ(ReduceBoth(chain), n);
  }
  // A knot keeps at least its stick number of points: 6 for 3_1, 7 for 4_1, 8 for 5_1.
  struct Knot {
    const char* name;
    std::vector<ChainAtom> chain;
    int sticks;
  };
  for (const Knot& k : {Knot{"3_1", zoo::TorusKnot(2, 3, 300), 6},
                        Knot{"4_1", zoo::RandomlyRotated(zoo::FigureEight(300), 3), 7},
                        Knot{"5_1", zoo::RandomlyRotated(zoo::TorusKnot(2, 5, 300), 4), 8}}) {
    SCOPED_TRACE(k.name);
    std::vector<fPointR3> chain = ToFloat(k.chain);
    const int n = ReduceBoth(chain);
    EXPECT_GE(n, k.sticks);
    EXPECT_LT(n, 30);
  }
}

// Every result keeps point 0 first and the rest in their old order, and is no shorter than 3.
TEST(ChainReduce, ResultIsAnOrderedSubsetStartingAtTheFirstPoint) {
  for (const reduction_chains::NamedChain& c : reduction_chains::Suite(1)) {
    SCOPED_TRACE(c.name);
    std::vector<fPointR3> chain = c.points;
    const int n = ChainReduce(chain);
    ASSERT_EQ(static_cast<int>(chain.size()), n);
    EXPECT_GE(n, std::min<int>(3, c.points.size()));
    size_t from = 0;
    for (const fPointR3& p : chain) {
      while (from < c.points.size() && std::memcmp(&c.points[from], &p, sizeof p) != 0)
        ++from;
      ASSERT_LT(from, c.points.size());
      ++from;
    }
    if (n > 0) {
      EXPECT_EQ(std::memcmp(&chain[0], &c.points[0], sizeof(fPointR3)), 0);
    }
  }
}

// Jobs of three points or fewer, empty jobs and jobs with a negative length are left alone.
TEST(ChainReduceCPU, ShortJobsKeepLengthAndPoints) {
  std::vector<fPointR3> buffer = reduction_chains::RandomWalk(12, 9);
  const std::vector<fPointR3> before = buffer;
  std::vector<Job> jobs = {{0, 3, 1, 3, 1, 3},
                           {3, 0, 0, 0, 0, 0},
                           {3, 2, 4, 5, 4, 5},
                           {5, 1, 6, 6, 6, 6},
                           {6, -1, 0, 0, 0, 0}};
  const std::vector<Job> jobsBefore = jobs;
  EXPECT_EQ(ChainReduceCPU(buffer, jobs), 5);
  EXPECT_EQ(std::memcmp(buffer.data(), before.data(), buffer.size() * sizeof(fPointR3)), 0);
  EXPECT_EQ(std::memcmp(jobs.data(), jobsBefore.data(), jobs.size() * sizeof(Job)), 0);
}

} // namespace
