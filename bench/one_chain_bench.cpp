// Time to name the knot of one chain: the vote over 100 random closures of the bundled 300-bead
// open chain (a trefoil core with random-coil tails) and of the 3KZN protein trace, and single
// projections of closed knots.
#include <cstdlib>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "chain/direction.hpp"
#include "chain/manyClosures.hpp"
#include "preprocessing/chainprep.hpp"

namespace {

std::vector<ChainAtom> ReadExample(const std::string& name) {
  std::string path = std::string(TRESK_SOURCE_DIR) + "/examples/chains/" + name;
  bool error = true;
  std::vector<ChainAtom> chain = ChainRead(path.data(), error);
  if (error)
    chain.clear();
  return chain;
}

// FindOneKnot over `closures` closures of the 300-bead open chain, with method state.range(0).
void BM_OpenChain300(benchmark::State& state) {
  std::vector<ChainAtom> chain = ReadExample("knotted_core.xyz");
  if (chain.empty()) {
    state.SkipWithError("examples/chains/knotted_core.xyz is missing");
    return;
  }
  const int method = static_cast<int>(state.range(0));
  const int closures = static_cast<int>(state.range(1));
  std::srand(1);
  int counts[42];
  for (auto _ : state) {
    FindOneKnot(chain, counts, method, closures);
    benchmark::DoNotOptimize(counts);
  }
  state.counters["trefoil%"] = 100.0 * counts[1] / closures;
  state.SetLabel(std::to_string(chain.size()) + " atoms");
}
BENCHMARK(BM_OpenChain300)->Args({2, 100})->Args({3, 100})->Unit(benchmark::kMillisecond);

// FindOneKnot over 100 closures (method 2) of the 3KZN protein trace (332 atoms, a 3_1 knot),
// read from the shared data next to the source tree.
void BM_Protein3KZN(benchmark::State& state) {
  std::string path =
      std::string(TRESK_SOURCE_DIR) + "/../shared/data/proteins/ca_xyz/3KZN_chain_A.knoto-id.xyz";
  bool error = true;
  std::vector<ChainAtom> chain = ChainRead(path.data(), error);
  if (error || chain.empty()) {
    state.SkipWithError("3KZN_chain_A.knoto-id.xyz is missing");
    return;
  }
  std::srand(1);
  int counts[42];
  for (auto _ : state) {
    FindOneKnot(chain, counts, 2, 100);
    benchmark::DoNotOptimize(counts);
  }
  state.counters["trefoil%"] = counts[1];
  state.SetLabel(std::to_string(chain.size()) + " atoms");
}
BENCHMARK(BM_Protein3KZN)->Unit(benchmark::kMillisecond);

// One projection of a closed chain that has not been reduced: the cost of projecting and
// finding crossings of every edge pair, plus the determinant.
void BM_ClosedTrefoilOneDirection(benchmark::State& state) {
  std::vector<ChainAtom> chain = ReadExample("trefoil_closed.xyz");
  if (chain.empty()) {
    state.SkipWithError("examples/chains/trefoil_closed.xyz is missing");
    return;
  }
  for (auto _ : state)
    benchmark::DoNotOptimize(FindTheKnotInParticularDirection(chain, 0));
  state.SetLabel(std::to_string(chain.size()) + " atoms, unreduced");
}
BENCHMARK(BM_ClosedTrefoilOneDirection)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
