// ChainReduce on closed chains of 1,000 and 5,000 atoms: a random coil closed outwards (usually
// knotted, many blocked corners) and a finely sampled trefoil (few vertices survive).
#include <cmath>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "preprocessing/chainprep.hpp"

namespace {

std::vector<ChainAtom> ClosedCoil(int n) {
  std::mt19937 gen(42);
  std::normal_distribution<double> g;
  std::vector<ChainAtom> out;
  double x = 0, y = 0, z = 0;
  for (int i = 0; i < n; ++i) {
    double dx = g(gen), dy = g(gen), dz = g(gen), len = std::sqrt(dx * dx + dy * dy + dz * dz);
    x += 3.8 * dx / len, y += 3.8 * dy / len, z += 3.8 * dz / len;
    out.push_back({x, y, z, i + 1});
  }
  CloseChain_OUT(out, 1.25);
  return out;
}

std::vector<ChainAtom> FineTrefoil(int n) {
  std::vector<ChainAtom> out;
  for (int i = 0; i < n; ++i) {
    double a = 2 * M_PI * i / n, rho = 10 + 4 * std::cos(3 * a);
    out.push_back({rho * std::cos(2 * a), rho * std::sin(2 * a), 4 * std::sin(3 * a), i + 1});
  }
  return out;
}

template <bool flag> void BM_ReduceCoil(benchmark::State& state) {
  const std::vector<ChainAtom> chain = ClosedCoil(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::vector<ChainAtom> copy = chain;
    benchmark::DoNotOptimize(ChainReduce(copy, flag));
  }
}

void BM_ReduceTrefoil(benchmark::State& state) {
  const std::vector<ChainAtom> chain = FineTrefoil(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::vector<ChainAtom> copy = chain;
    benchmark::DoNotOptimize(ChainReduce(copy, true));
  }
}

} // namespace

BENCHMARK(BM_ReduceCoil<true>)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReduceCoil<false>)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReduceTrefoil)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
