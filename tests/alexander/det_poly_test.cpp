// The exact polynomial determinant against the plain cofactor expansion: small blocks, Alexander
// matrices up to 16 crossings and random integer matrices whose huge coefficients force the
// wrapping fallback.
#include <climits>
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

// det_poly and every method exact for M equal the cofactor expansion, trailing zeros included.
// Returns whether the 64-bit elimination was exact for M.
bool ExpectSameAsCofactors(Matrix const& M) {
  const Poly expected = reference::CofactorDeterminant(M);
  EXPECT_EQ(det_poly(M).data(), expected.data());
  const bool bareiss = tresk::BareissIsExact(M);
  if (M.size() >= 2) {
    EXPECT_EQ(tresk::DetPolyBerkowitz(M).data(), expected.data());
    if (bareiss) {
      EXPECT_EQ(tresk::DetPolyBareiss(M).data(), expected.data());
    }
  }
  return bareiss;
}

// rows x (rows + 1) entries of degree <= 2, about half of them zero, some stored with a trailing
// zero; coefficients in [-3, 3] or (`huge`) anywhere in the int range, extremes drawn often.
Matrix RandomMatrix(int rows, bool huge, std::mt19937_64& rng) {
  Matrix M(rows, std::vector<Poly>(rows + 1));
  for (auto& row : M) {
    for (Poly& e : row) {
      for (int k = rng() % 2 == 0 ? 0 : 1 + rng() % 4; k > 0; --k) {
        const uint64_t pick = rng();
        const int big = pick % 4 == 0 ? (pick % 8 == 0 ? INT_MIN : INT_MAX)
                                      : static_cast<int>(static_cast<uint32_t>(pick >> 32));
        e.data().push_back(k == 1 && pick % 5 == 0 ? 0
                           : huge                  ? big
                                                   : static_cast<int>(pick % 7) - 3);
      }
    }
  }
  return M;
}

Poly Raw(std::vector<int> c) {
  Poly p;
  p.data() = std::move(c);
  return p;
}

} // namespace

// The expansion's own answers for 0 and 1 rows; blocks the random matrices rarely produce.
TEST(DetPoly, SmallBlocks) {
  EXPECT_EQ(det_poly({}).data(), std::vector<int>{});
  EXPECT_EQ(det_poly({{}}).data(), std::vector<int>{});
  EXPECT_EQ(det_poly({{Raw({0, 1, 0}), Raw({5})}}).data(), std::vector<int>({0, 1, 0}));
  // (1 + 2^16 t)^2 = 1 + 2^17 t + 2^32 t^2: the leading coefficient wraps away.
  EXPECT_EQ(det_poly({{Raw({1, 65536}), {}}, {{}, Raw({1, 65536})}}).data(),
            std::vector<int>({1, 131072}));
  ExpectSameAsCofactors({{Raw({1, 1}), Raw({2, 2})}, {Raw({1}), Raw({2})}}); // singular
  ExpectSameAsCofactors({{Raw({INT_MAX}), {}}, {{}, Raw({INT_MAX})}});
  // The elimination divides (1 + t^2) t by the pivot t: a quotient with an inner zero.
  ExpectSameAsCofactors(
      {{Raw({0, 1}), Raw({-1}), {}}, {Raw({1, 1}), Raw({-1, 1}), {}}, {{}, {}, Raw({1})}});
}

// Random arc lists and random closed braids of 1 to 16 crossings: always the fast elimination.
TEST(DetPoly, AlexanderMatricesMatchCofactorExpansion) {
  std::mt19937 rng(20240611);
  for (int n = 1; n <= 16; ++n) {
    for (int s = 0; s < (n <= 10 ? 20 : n <= 13 ? 8 : 3); ++s) {
      SCOPED_TRACE("n = " + std::to_string(n) + ", sample " + std::to_string(s));
      EXPECT_TRUE(ExpectSameAsCofactors(CreateFoxMatrix(zoo::RandomArcList(n, rng))));
      int strands = 0;
      const std::vector<int> word = zoo::RandomKnotBraid(n, rng(), strands);
      EXPECT_TRUE(ExpectSameAsCofactors(CreateFoxMatrix(zoo::BraidClosure(strands, word))));
    }
  }
}

// Up to 9 x 9 with small coefficients (elimination) and across the int range (fallback).
TEST(DetPoly, RandomMatricesMatchCofactorExpansion) {
  std::mt19937_64 rng(7);
  int byMethod[2] = {0, 0};
  for (int rows = 0; rows <= 9; ++rows) {
    for (int s = 0; s < 40; ++s) {
      SCOPED_TRACE("rows " + std::to_string(rows) + ", sample " + std::to_string(s));
      ++byMethod[ExpectSameAsCofactors(RandomMatrix(rows, s % 2 == 1, rng))];
    }
  }
  EXPECT_GT(byMethod[0], 0);
  EXPECT_GT(byMethod[1], 0);
}
