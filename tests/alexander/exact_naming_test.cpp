// The exact Alexander determinant of any size against the wrapping Berkowitz recurrence and
// torus-knot polynomials, and exact naming of a closed chain whose every projection is large.
#include <random>

#include <gtest/gtest.h>

#include "alexander/exactDeterminant.hpp"
#include "alexander/polynomial.hpp"
#include "chain/naming.hpp"
#include "preprocessing/chainprep.hpp"
#include "tests/support/crossing_lists.hpp"
#include "tests/support/curves.hpp"

namespace {

using Poly = boost::math::tools::polynomial<int>;

// (t^pq - 1)(t - 1) / ((t^p - 1)(t^q - 1)), constant term first.
std::vector<int> TorusPolynomial(int p, int q) {
  std::vector<long long> n(p * q + 2, 0);
  n[0] = 1, n[1] = -1, n[p * q] = -1, n[p * q + 1] = 1;
  for (int m : {p, q}) { // exact division by t^m - 1, from the top
    std::vector<long long> quotient(n.size() - m, 0);
    for (int i = static_cast<int>(n.size()) - 1; i >= m; --i) {
      quotient[i - m] = n[i];
      n[i - m] += n[i];
    }
    n = quotient;
  }
  return std::vector<int>(n.begin(), n.end());
}

TEST(ExactAlexanderDeterminant, AgreesWithTheWrappingRecurrenceBeyondSixteenCrossings) {
  std::mt19937 rng(7);
  for (int n = 20; n <= 62; n += 3) {
    SCOPED_TRACE(n);
    int strands = 0;
    const std::vector<int> word = zoo::RandomKnotBraid(n, n, strands);
    for (const std::vector<Crossing>& crossings :
         {zoo::BraidClosure(strands, word), zoo::RandomArcList(n, rng)}) {
      const tresk::PolyMatrix M = CreateFoxMatrix(crossings);
      ASSERT_FALSE(tresk::BareissIsExact(M)); // the modular way is taken
      Poly exact;
      ASSERT_TRUE(tresk::ExactAlexanderDeterminant(M, exact));
      // Coefficients in int range agree with their residues mod 2^32.
      EXPECT_EQ(exact.data(), tresk::DetPolyBerkowitz(M).data());
    }
  }
}

TEST(ExactAlexanderDeterminant, GivesTorusKnotPolynomials) {
  for (auto [p, q] :
       std::vector<std::pair<int, int>>{{2, 41}, {2, 99}, {3, 14}, {3, 31}, {5, 12}}) {
    SCOPED_TRACE(std::to_string(p) + "," + std::to_string(q));
    std::vector<int> word;
    for (int k = 0; k < q; ++k)
      for (int s = 1; s < p; ++s)
        word.push_back(s);
    Poly det;
    ASSERT_TRUE(tresk::ExactAlexanderDeterminant(CreateFoxMatrix(zoo::BraidClosure(p, word)), det));
    EXPECT_EQ(NormalizePoly(det).data(), TorusPolynomial(p, q));
  }
}

TEST(ExactNaming, ClosedChainWithOnlyLargeProjectionsIsNotInTheTable) {
  zoo::Chain chain = zoo::TorusKnot(2, 19, 400);
  ChainReduce(chain, true);
  Poly poly;
  double value = 0;
  int crossings = 0;
  ASSERT_TRUE(tresk::PolynomialInDirection(chain, 0, {}, poly, value, crossings));
  EXPECT_GE(crossings, 19); // T(2,19) has no diagram of fewer crossings
  EXPECT_EQ(poly.data(), TorusPolynomial(2, 19));
  int counts[42];
  tresk::VoteOverClosures(chain, counts, 0, 1, {});
  EXPECT_EQ(counts[39], 1); // "not in the table", never a numeric failure or a false name
}

} // namespace
