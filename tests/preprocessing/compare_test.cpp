// CompareEq: the tolerance test of the numeric determinant.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"

TEST(CompareEq, BoundIsInclusiveAndNaNNeverEqual) {
  EXPECT_TRUE(CompareEq(1.0, 1.0, 0.0));
  EXPECT_TRUE(CompareEq(0.004, 0.0, 0.005));
  EXPECT_TRUE(CompareEq(-11.996, -12.0, 0.005));
  EXPECT_FALSE(CompareEq(0.006, 0.0, 0.005));
  EXPECT_TRUE(CompareEq(0.5, 0.0, 0.5));
  EXPECT_FALSE(CompareEq(std::nan(""), 0.0, 1.0));
  EXPECT_FALSE(CompareEq(std::numeric_limits<double>::infinity(), 0.0, 1e300));
}
