// Speed of the knot fingerprint on the host path: a 300-atom chain with a trefoil core (step
// 10, threshold 20, 100 two-point closures per subchain) and every subchain of the 3KZN
// C-alpha trace (331 atoms, step 1, 20 closures each), on one thread and on all cores.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

#include "entry/api.hpp" // for tresk::ReadChain, tresk::FingerprintRows

namespace {

// Runs one scan per iteration with the log stream silenced; threads 0 = all cores.
void Scan(benchmark::State& state, const std::vector<ChainAtom>& chain, int step, int threshold,
          int closures) {
  if (chain.empty()) {
    state.SkipWithError("chain file not found");
    return;
  }
  tresk::FingerprintParams params;
  params.step = step;
  params.threshold = threshold;
  params.closures = closures;
  std::ostream silent(nullptr);
  tresk::ScanOptions options;
  options.threads = static_cast<int>(state.range(0));
  options.log = &silent;
  std::size_t rows = 0;
  for (auto _ : state) {
    std::srand(1);
    rows = tresk::FingerprintRows(chain, params, options).size();
  }
  state.counters["rows"] = static_cast<double>(rows);
}

void BM_KnottedCore300(benchmark::State& state) {
  static const std::vector<ChainAtom> chain =
      tresk::ReadChain(std::string(TRESK_SOURCE_DIR) + "/examples/chains/knotted_core.xyz").atoms;
  Scan(state, chain, 10, 20, 100);
}

void BM_EverySubchain3KZN(benchmark::State& state) {
  static const std::vector<ChainAtom> chain =
      tresk::ReadChain(std::string(TRESK_DATA_DIR) + "/proteins/ca_xyz/3KZN_chain_A.knoto-id.xyz")
          .atoms;
  Scan(state, chain, 1, 101, 20);
}

} // namespace

BENCHMARK(BM_KnottedCore300)
    ->Arg(1)
    ->Arg(0)
    ->Iterations(1)
    ->Unit(benchmark::kSecond)
    ->UseRealTime();
BENCHMARK(BM_EverySubchain3KZN)
    ->Arg(1)
    ->Arg(0)
    ->Iterations(1)
    ->Unit(benchmark::kSecond)
    ->UseRealTime();

BENCHMARK_MAIN();
