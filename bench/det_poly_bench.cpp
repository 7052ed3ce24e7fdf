// Time of the exact polynomial determinant on Alexander matrices of real projections with 8, 12
// and 16 crossings, beside the plain cofactor expansion and the numeric determinant at t = 12.
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "alexander/determinant.hpp"
#include "alexander/polynomial.hpp"
#include "crossings/crossings.hpp"
#include "preprocessing/chainprep.hpp"
#include "tests/support/det_reference.hpp"

namespace {

using Matrix = std::vector<std::vector<boost::math::tools::polynomial<int>>>;

constexpr int kDiagrams = 32;

// Crossing lists of random closed walks (10 to 29 unit-variance Gaussian steps) projected along
// direction 0, keeping those with exactly `crossings` crossings. Fixed seed per size.
std::vector<std::vector<Crossing>> Diagrams(int crossings) {
  std::mt19937 rng(1000 + crossings);
  std::normal_distribution<double> step(0.0, 1.0);
  std::vector<std::vector<Crossing>> out;
  for (int attempt = 0; attempt < 1000000 && static_cast<int>(out.size()) < kDiagrams; ++attempt) {
    const int vertices = 10 + static_cast<int>(rng() % 20);
    std::vector<ChainAtom> chain;
    ChainAtom p{0.0, 0.0, 0.0, 1};
    for (int i = 0; i < vertices; ++i) {
      chain.push_back(p);
      p = {p.x + step(rng), p.y + step(rng), p.z + step(rng), i + 2};
    }
    std::vector<Edge> edges = ProjectChain(chain, 0, true);
    std::vector<Crossing> found;
    if (FindAllCrossings(edges, found, true) != 0)
      continue;
    if (static_cast<int>(found.size()) != crossings)
      continue;
    FillCrossings(edges, found);
    out.push_back(found);
  }
  return out;
}

std::vector<Matrix> Matrices(int crossings) {
  std::vector<Matrix> out;
  for (const std::vector<Crossing>& d : Diagrams(crossings))
    out.push_back(CreateFoxMatrix(d));
  return out;
}

// Mean time per matrix over the set of matrices of one size.
template <class Determinant>
void RunOverMatrices(benchmark::State& state, Determinant determinant) {
  const std::vector<Matrix> matrices = Matrices(static_cast<int>(state.range(0)));
  if (matrices.empty()) {
    state.SkipWithError("no diagram of this size found");
    return;
  }
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(determinant(matrices[next]));
    next = (next + 1) % matrices.size();
  }
  state.SetLabel(std::to_string(matrices.size()) + " diagrams");
}

void BM_DetPoly(benchmark::State& state) {
  RunOverMatrices(state, [](Matrix const& M) { return det_poly(M); });
}
BENCHMARK(BM_DetPoly)->Arg(8)->Arg(12)->Arg(16)->Unit(benchmark::kMicrosecond);

void BM_CofactorExpansion(benchmark::State& state) {
  RunOverMatrices(state, [](Matrix const& M) { return reference::CofactorDeterminant(M); });
}
BENCHMARK(BM_CofactorExpansion)->Arg(8)->Arg(12)->Unit(benchmark::kMicrosecond);

// The numeric way at t = 12, matrix construction included.
void BM_DetDouble(benchmark::State& state) {
  const std::vector<std::vector<Crossing>> diagrams = Diagrams(static_cast<int>(state.range(0)));
  if (diagrams.empty()) {
    state.SkipWithError("no diagram of this size found");
    return;
  }
  std::size_t next = 0;
  for (auto _ : state) {
    std::vector<std::vector<double>> M = CreateFoxMatrix_double(diagrams[next], 12);
    benchmark::DoNotOptimize(det_double(M, 12));
    next = (next + 1) % diagrams.size();
  }
}
BENCHMARK(BM_DetDouble)->Arg(16)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
