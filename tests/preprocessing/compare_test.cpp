// CompareEq: the tolerance test of the numeric determinant.
#include <cmath>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"

TEST(CompareEq, BoundIsInclusiveAndNaNNeverEqual) {
  EXPECT_TRUE(CompareEq(-11.5, -12.0, 0.5));
  EXPECT_FALSE(CompareEq(0.006, 0.0, 0.005));
  EXPECT_FALSE(CompareEq(std::nan(""), 0.0, 1.0));
}
