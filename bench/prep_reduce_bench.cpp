// ChainReduce on closed chains of 1,000 and 5,000 atoms: a random coil closed outwards (usually
// knotted, many blocked corners) and a finely sampled trefoil (few vertices survive); and on
// eight protein traces closed outwards, against the plain restart-after-every-erasure cutting.
#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "preprocessing/chainprep.hpp"
#include "tests/support/prep_reduce_reference.hpp" // for CutCornersPlain

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

// Eight C-alpha traces of the corpus, each closed outwards (closure method 1).
std::vector<std::vector<ChainAtom>> ClosedProteins() {
  const char* names[] = {"1ns5_A", "1o6d_A", "1uaj_A", "1v2x_A",
                         "1vh0_A", "2qmm_A", "3kzn_A", "4h31_A"};
  std::vector<std::vector<ChainAtom>> chains;
  for (const char* name : names) {
    std::string path = std::string(TRESK_DATA_DIR) + "/proteins/ca_xyz/" + name + ".xyz";
    bool error = true;
    std::vector<ChainAtom> chain = ChainRead(path.data(), error);
    if (error || chain.empty())
      return {};
    CloseChain_OUT(chain, 1.25);
    chains.push_back(chain);
  }
  return chains;
}

// Corner cutting of the eight closed traces: ChainReduce (range 0: flag false, 1: true) or the
// plain restart loop (range 2). The counter is the number of vertices left in all eight.
void BM_ReduceProteins(benchmark::State& state) {
  const std::vector<std::vector<ChainAtom>> chains = ClosedProteins();
  if (chains.empty()) {
    state.SkipWithError(("protein traces missing under " + std::string(TRESK_DATA_DIR)).c_str());
    return;
  }
  const int variant = static_cast<int>(state.range(0));
  long left = 0;
  for (auto _ : state) {
    left = 0;
    for (const std::vector<ChainAtom>& chain : chains) {
      std::vector<ChainAtom> copy = chain;
      left += variant == 2 ? reference::CutCornersPlain(copy) : ChainReduce(copy, variant == 1);
    }
    benchmark::DoNotOptimize(left);
  }
  state.counters["left"] = static_cast<double>(left);
  state.SetLabel(variant == 2 ? "plain restart loop" : variant == 1 ? "flag true" : "flag false");
}

} // namespace

BENCHMARK(BM_ReduceProteins)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReduceCoil<true>)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReduceCoil<false>)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReduceTrefoil)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
