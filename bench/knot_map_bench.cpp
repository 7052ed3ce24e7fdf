// Time of the knot map and of the exact knot core of the 3KZN protein trace (332 atoms) at the
// defaults of `tresk map` and `tresk core`, on 1 and 2 threads.
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "preprocessing/chainprep.hpp" // for ChainRead
#include "scan/core.hpp"               // for tresk::FindKnotCore
#include "scan/knotMap.hpp"            // for tresk::MapKnots

namespace {

std::vector<ChainAtom> Read3KZN() {
  std::string path = std::string(TRESK_DATA_DIR) + "/proteins/ca_xyz/3kzn_A.xyz";
  bool error = true;
  std::vector<ChainAtom> chain = ChainRead(path.data(), error);
  if (error)
    chain.clear();
  return chain;
}

// MapKnots with the defaults of `tresk map` on state.range(0) threads.
void BM_Map3KZN(benchmark::State& state) {
  const std::vector<ChainAtom> chain = Read3KZN();
  if (chain.empty()) {
    state.SkipWithError("proteins/ca_xyz/3kzn_A.xyz is missing");
    return;
  }
  tresk::MapOptions options;
  options.threads = static_cast<int>(state.range(0));
  for (auto _ : state) {
    const tresk::KnotMap map = tresk::MapKnots(chain, options);
    benchmark::DoNotOptimize(map.types);
    state.counters["subchains"] = map.subchains;
  }
}
BENCHMARK(BM_Map3KZN)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

// FindKnotCore with the defaults of `tresk core` on state.range(0) threads.
void BM_Core3KZN(benchmark::State& state) {
  const std::vector<ChainAtom> chain = Read3KZN();
  if (chain.empty()) {
    state.SkipWithError("proteins/ca_xyz/3kzn_A.xyz is missing");
    return;
  }
  tresk::CoreOptions options;
  options.threads = static_cast<int>(state.range(0));
  for (auto _ : state) {
    const tresk::KnotCore core = tresk::FindKnotCore(chain, options);
    benchmark::DoNotOptimize(core.first);
    state.counters["subchains"] = core.subchains;
  }
}
BENCHMARK(BM_Core3KZN)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
