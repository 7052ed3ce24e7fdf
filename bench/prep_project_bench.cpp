// ProjectChain on small reduced chains, as the fingerprint scan calls it: a new chain every call
// (the fewest-crossing ranking is computed each time) and the same chain again (ranking cached),
// against the fixed direction order.
#include <cmath>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "preprocessing/chainprep.hpp"

namespace {

std::vector<std::vector<ChainAtom>> SmallChains(int vertices) {
  std::mt19937 gen(7);
  std::uniform_real_distribution<double> u(-10.0, 10.0);
  std::vector<std::vector<ChainAtom>> chains(64);
  for (auto& c : chains)
    for (int i = 0; i < vertices; ++i)
      c.push_back({u(gen), u(gen), u(gen), i + 1});
  return chains;
}

void BM_ProjectNewChain(benchmark::State& state) {
  auto chains = SmallChains(static_cast<int>(state.range(0)));
  size_t k = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(ProjectChain(chains[k++ % chains.size()], 1, true));
}

void BM_ProjectSameChain(benchmark::State& state) {
  auto chains = SmallChains(static_cast<int>(state.range(0)));
  int d = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(ProjectChain(chains[0], d++ % 30, true));
}

void BM_ProjectFixedOrder(benchmark::State& state) {
  auto chains = SmallChains(static_cast<int>(state.range(0)));
  size_t k = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(ProjectChain(chains[k++ % chains.size()], 1, false));
}

} // namespace

BENCHMARK(BM_ProjectNewChain)->Arg(10)->Arg(20)->Arg(40)->Arg(200);
BENCHMARK(BM_ProjectSameChain)->Arg(10)->Arg(40);
BENCHMARK(BM_ProjectFixedOrder)->Arg(10)->Arg(40);

BENCHMARK_MAIN();
