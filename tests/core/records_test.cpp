// The shared records: field widths, the two sort orders and the status strings.
#include <algorithm>
#include <type_traits>

#include <gtest/gtest.h>

#include "core/records.hpp"

TEST(Records, WidthsAndLayout) {
  static_assert(std::is_same_v<decltype(CrossingShort::index), int16_t>);
  static_assert(std::is_same_v<decltype(ChainAtom::id), int32_t>);
  static_assert(std::is_same_v<decltype(fPointR3::x), float>);
  static_assert(std::is_same_v<decltype(Edge::z2), double>);
  // A crossing index above 32767 wraps to a negative 16-bit value.
  CrossingShort c{static_cast<int16_t>(32768), 0.5};
  EXPECT_EQ(c.index, -32768);
  Job fresh{0, 0, 7, 9, 1, 5};
  EXPECT_EQ(fresh.begin, 0);
  EXPECT_EQ(fresh.length, 0);
}

TEST(Records, RowOrderFirstAscendingThenLastDescending) {
  std::vector<RowFile> rows = {{5, 10, 0, "c"}, {1, 4, 0, "b"}, {5, 20, 0, "d"}, {1, 9, 0, "a"}};
  std::sort(rows.begin(), rows.end(), WayToSortRowsToFile);
  std::string order;
  for (const RowFile& r : rows)
    order += r.text;
  EXPECT_EQ(order, "abdc");
  EXPECT_FALSE(WayToSortRowsToFile(rows[0], rows[0]));
}

TEST(Records, CrossingOrderDescendingParameter) {
  EXPECT_TRUE(WayToSortCrossings({0, 0.9}, {1, 0.1}));
  EXPECT_FALSE(WayToSortCrossings({0, 0.1}, {1, 0.9}));
  EXPECT_FALSE(WayToSortCrossings({0, 0.5}, {1, 0.5}));
}

TEST(Records, StatusStrings) {
  EXPECT_EQ(OK, "OK");
  EXPECT_EQ(FILEOUT_DEFAULT, "KNOTS_out");
  EXPECT_EQ(MIXTURE, "-1");
  EXPECT_EQ(UNKNOT, "01");
  EXPECT_EQ(INSIDE, "-2");
  EXPECT_EQ(UNKNOWN, "-3");
}
