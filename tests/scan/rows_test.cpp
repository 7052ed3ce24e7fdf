// Output rows in both formats and the short decimal text of a float.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "scan/rows.hpp"

TEST(Rows, Formats) {
  struct Case {
    const char* verdict;
    Job job; // begin, length, firstId, lastId, first, last
    int namesMode;
    const char* text;
  };
  const Case cases[] = {
      {"V", {0, 0, 12, 127, 5, 120}, 1, "12 127 V 5 120"},
      {"V", {0, 0, 12, 127, 5, 120}, 0, "(12, 127): V"},
      {"3_1", {0, 0, -4, 9, 1, 14}, -1, "-4 9 3_1 1 14"},
      {"3_1", {0, 0, -4, 9, 1, 14}, 0, "(-4, 9): 3_1"},
      {"", {0, 0, 1, 2, 3, 4}, 2, "1 2  3 4"},
      {"", {0, 0, 1, 2, 3, 4}, 0, "(1, 2): "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    RowFile row = MakeRowFromJob(c.verdict, c.job, 42, c.namesMode);
    EXPECT_EQ(row.text, c.text);
    EXPECT_EQ(row.first, c.job.first);
    EXPECT_EQ(row.last, c.job.last);
    EXPECT_EQ(row.strength, 42);
  }
}

TEST(Rows, TrailingZeros) {
  const float inf = std::numeric_limits<float>::infinity();
  struct Case {
    float value;
    const char* text;
  };
  const Case cases[] = {{0.5f, "0.5"},   {1.0f, "1"},        {1.0f / 3, "0.333"}, {12.25f, "12.25"},
                        {0.0004f, "0"},  {100.0f, "100"},    {0.0f, "0"},         {-0.0f, "-0"},
                        {-2.5f, "-2.5"}, {0.0005f, "0.001"}, {inf, "inf"},        {-inf, "-inf"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(removeTrailingZeros(c.value), c.text);
  }
}
