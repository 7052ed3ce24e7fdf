// Lookups by polynomial (normal form first, the first equal row wins) and refilling the table.
#include <gtest/gtest.h>

#include "knots/whichKnot.hpp"

using Poly = boost::math::tools::polynomial<int>;

TEST(KnotTable, LookupsAndRefill) {
  FillKnotsArray();
  const struct {
    std::vector<int> c;
    const char* name;
    int ordinal;
  } cases[] = {
      {{1}, "01", 0},
      {{0, 0}, "01", 0},
      {{0, 0, -1, 1, -1}, "3_1", 1},
      {{1, -1, 1, 0}, "3_1", 1},
      {{-1, 4, -5, 4, -1}, "8_21|3_1#4_1", 35},
      {{1, 1, 1}, "NO", 39},
      {{}, "NO", 39},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Poly p;
    p.data() = c.c;
    EXPECT_EQ(WhichKnot(p), c.name);
    EXPECT_EQ(WhichKnot_OrdNr(p), c.ordinal);
  }
  knots[5].poly = knots[1].poly; // a second 3_1 further down: the first row still wins
  knots[2].name = "changed";
  EXPECT_EQ(WhichKnot_OrdNr(knots[1].poly), 1);
  FillKnotsArray();
  EXPECT_EQ(WhichKnot(knots[5].poly), "6_1");
  EXPECT_EQ(knots[2].name, "4_1");
}
