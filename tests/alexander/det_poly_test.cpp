// The exact polynomial determinant: small blocks by hand, known knots drawn as closed braids,
// and differential tests of every method against the plain cofactor expansion.
#include <climits>
#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "alexander/exactDeterminant.hpp"
#include "alexander/polynomial.hpp"
#include "tests/support/crossing_lists.hpp"
#include "tests/support/det_reference.hpp"

using Poly = boost::math::tools::polynomial<int>;
using Matrix = std::vector<std::vector<Poly>>;

namespace {

// A polynomial holding exactly these coefficients, trailing zeros included.
Poly Raw(std::vector<int> c) {
  Poly p;
  p.data() = std::move(c);
  return p;
}

struct MatrixShape {
  int rows;
  int extraColumns;
  int maxDegree;
  int density; // percent of non-zero entries
  int64_t maxCoefficient;
};

int RandomCoefficient(int64_t bound, std::mt19937_64& rng) {
  if (bound > INT_MAX) {
    // Full range, with the extremes drawn often.
    switch (rng() % 6) {
    case 0:
      return INT_MIN;
    case 1:
      return INT_MAX;
    default:
      return static_cast<int32_t>(static_cast<uint32_t>(rng()));
    }
  }
  return static_cast<int>(static_cast<int64_t>(rng() % (2 * bound + 1)) - bound);
}

// Random entries; some stored with trailing zeros, some rows and columns forced to zero.
Matrix RandomMatrix(MatrixShape const& shape, std::mt19937_64& rng) {
  const int columns = shape.rows + shape.extraColumns;
  Matrix M(shape.rows, std::vector<Poly>(columns));
  for (auto& row : M) {
    for (Poly& e : row) {
      if (static_cast<int>(rng() % 100) >= shape.density)
        continue;
      std::vector<int> c(1 + rng() % (shape.maxDegree + 1));
      for (int& x : c)
        x = RandomCoefficient(shape.maxCoefficient, rng);
      if (rng() % 8 == 0)
        c.push_back(0);
      e = Raw(c);
    }
  }
  if (shape.rows > 1 && rng() % 10 == 0) {
    for (Poly& e : M[rng() % shape.rows])
      e = Poly();
  }
  if (shape.rows > 1 && rng() % 10 == 0) {
    const std::size_t j = rng() % shape.rows;
    for (auto& row : M)
      row[j] = Raw({0, 0});
  }
  return M;
}

// det_poly equals the cofactor expansion coefficient for coefficient (trailing zeros included),
// and so does every method that is exact for M. Returns the method det_poly chose.
DetPolyMethod ExpectSameAsCofactors(Matrix const& M) {
  const Poly expected = reference::CofactorDeterminant(M);
  EXPECT_EQ(det_poly(M).data(), expected.data());
  const DetPolyMethod method = ChooseDetPolyMethod(M);
  if (M.size() >= 2) {
    SCOPED_TRACE("method " + std::to_string(static_cast<int>(method)));
    EXPECT_EQ(DetPolyBerkowitz(M).data(), expected.data());
    if (method != DetPolyMethod::Berkowitz32) {
      EXPECT_EQ(DetPolyBareiss128(M).data(), expected.data());
    }
    if (method == DetPolyMethod::Bareiss64) {
      EXPECT_EQ(DetPolyBareiss64(M).data(), expected.data());
    }
  }
  return method;
}

} // namespace

TEST(DetPoly, SmallBlocksByHand) {
  struct Case {
    const char* name;
    Matrix M;
    std::vector<int> expected;
  };
  const Case cases[] = {
      {"no rows", {}, {}},
      {"one row without entries", {{}}, {}},
      {"1x3 reads only [0][0], as stored", {{Raw({0, 1, 0}), Raw({5}), Raw({7, 7})}}, {0, 1, 0}},
      {"1x1 zero", {{Poly()}}, {}},
      // (1 + t)(1 - t) - t * t = 1 - 2t^2
      {"2x2", {{Raw({1, 1}), Raw({0, 1})}, {Raw({0, 1}), Raw({1, -1})}}, {1, 0, -2}},
      {"extra column ignored",
       {{Raw({2}), Raw({0}), Raw({9})}, {Raw({0}), Raw({3}), Raw({9})}},
       {6}},
      {"zero last column", {{Raw({2}), Raw({0, 0})}, {Raw({3}), Poly()}}, {}},
      {"singular", {{Raw({1, 1}), Raw({2, 2})}, {Raw({1}), Raw({2})}}, {}},
      // 65536 * 65536 = 2^32 wraps to 0; the leading coefficient disappears.
      {"wraps to zero", {{Raw({1, 65536}), Raw({0})}, {Raw({0}), Raw({1, 65536})}}, {1, 131072}},
      {"INT_MAX squared", {{Raw({INT_MAX}), Raw({0})}, {Raw({0}), Raw({INT_MAX})}}, {1}},
      // The elimination divides (1 + t^2) t by the pivot t: a quotient with an inner zero.
      {"inner zero in a quotient",
       {{Raw({0, 1}), Raw({-1}), Poly()},
        {Raw({1, 1}), Raw({-1, 1}), Poly()},
        {Poly(), Poly(), Raw({1})}},
       {1, 0, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(det_poly(c.M).data(), c.expected);
    if (c.M.size() != 1 || !c.M[0].empty())
      ExpectSameAsCofactors(c.M);
  }
}

// Closed braids of known knots: the normalised determinant is the knot's Alexander polynomial.
TEST(DetPoly, KnownKnotsFromBraids) {
  struct Case {
    const char* name;
    int strands;
    std::vector<int> word;
    std::vector<int> polynomial;
  };
  const Case cases[] = {
      {"3_1", 2, {1, 1, 1}, {1, -1, 1}},
      {"3_1 mirror", 2, {-1, -1, -1}, {1, -1, 1}},
      {"4_1", 3, {1, -2, 1, -2}, {1, -3, 1}},
      {"5_1", 2, {1, 1, 1, 1, 1}, {1, -1, 1, -1, 1}},
      {"5_2", 3, {1, 1, 1, 2, -1, 2}, {2, -3, 2}},
      {"granny 3_1#3_1", 3, {1, 1, 1, 2, 2, 2}, {1, -2, 3, -2, 1}},
      {"unknot: two stabilisations", 3, {1, -2}, {1}},
      {"unknot with a Reidemeister-II pair", 3, {1, 2, 2, -2}, {1}},
      {"8_19 = T(3,4)", 3, {1, 2, 1, 2, 1, 2, 1, 2}, {1, -1, 0, 1, 0, -1, 1}},
      {"T(3,7), 14 crossings",
       3,
       {1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2},
       {1, -1, 0, 1, -1, 0, 1, 0, -1, 1, 0, -1, 1}},
      {"T(2,15), 15 crossings",
       2,
       std::vector<int>(15, 1),
       {1, -1, 1, -1, 1, -1, 1, -1, 1, -1, 1, -1, 1, -1, 1}},
      {"T(3,8), 16 crossings",
       3,
       {1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2},
       {1, -1, 0, 1, -1, 0, 1, -1, 1, 0, -1, 1, 0, -1, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::vector<Crossing> crossings = zoo::BraidClosure(c.strands, c.word);
    ASSERT_EQ(crossings.size(), c.word.size());
    EXPECT_EQ(NormalizePoly(det_poly(CreateFoxMatrix(crossings))).data(), c.polynomial);
  }
}

// Alexander matrices of random arc lists and random closed braids, 1 to 16 crossings.
TEST(DetPoly, AlexanderMatricesMatchCofactorExpansion) {
  std::mt19937 rng(20240611);
  for (int n = 1; n <= 16; ++n) {
    const int samples = n <= 10 ? 20 : n <= 13 ? 8 : 3;
    for (int s = 0; s < samples; ++s) {
      SCOPED_TRACE("random arcs, n = " + std::to_string(n) + ", sample " + std::to_string(s));
      const Matrix M = CreateFoxMatrix(zoo::RandomArcList(n, rng));
      EXPECT_EQ(ExpectSameAsCofactors(M), DetPolyMethod::Bareiss64);
    }
    for (int s = 0; s < samples; ++s) {
      SCOPED_TRACE("braid, n = " + std::to_string(n) + ", sample " + std::to_string(s));
      int strands = 0;
      const std::vector<int> word = zoo::RandomKnotBraid(n, rng(), strands);
      const Matrix M = CreateFoxMatrix(zoo::BraidClosure(strands, word));
      EXPECT_EQ(ExpectSameAsCofactors(M), DetPolyMethod::Bareiss64);
    }
  }
}

// Random integer-polynomial matrices, from small coefficients (elimination in 64 bits) to the
// full int range (intermediates overflow; the division-free method must take over).
TEST(DetPoly, RandomMatricesMatchCofactorExpansion) {
  const MatrixShape shapes[] = {
      {0, 2, 1, 100, 3},         {1, 3, 3, 100, 5},         {2, 0, 1, 100, 3},
      {2, 1, 3, 100, INT64_MAX}, {3, 0, 2, 100, 9},         {3, 2, 3, 70, 1000},
      {4, 0, 1, 100, 2},         {4, 1, 3, 80, 100000},     {4, 0, 2, 100, INT64_MAX},
      {5, 0, 3, 60, 30},         {5, 0, 1, 100, INT64_MAX}, {6, 1, 2, 50, 4},
      {6, 0, 0, 100, 1000},      {7, 0, 1, 40, 3},          {7, 0, 3, 40, INT64_MAX},
      {8, 0, 1, 30, 2},          {8, 1, 2, 30, 5000},       {9, 0, 1, 25, 2},
      {9, 0, 2, 25, INT64_MAX},
  };
  std::mt19937_64 rng(7);
  int byMethod[3] = {0, 0, 0};
  for (const MatrixShape& shape : shapes) {
    for (int s = 0; s < 30; ++s) {
      SCOPED_TRACE(
          "rows " + std::to_string(shape.rows) + ", degree " + std::to_string(shape.maxDegree) +
          ", |c| <= " + std::to_string(shape.maxCoefficient) + ", sample " + std::to_string(s));
      ++byMethod[static_cast<int>(ExpectSameAsCofactors(RandomMatrix(shape, rng)))];
    }
  }
  // Every method took part.
  EXPECT_GT(byMethod[static_cast<int>(DetPolyMethod::Bareiss64)], 0);
  EXPECT_GT(byMethod[static_cast<int>(DetPolyMethod::Bareiss128)], 0);
  EXPECT_GT(byMethod[static_cast<int>(DetPolyMethod::Berkowitz32)], 0);
}
