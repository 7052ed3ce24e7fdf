// Speed of the knot fingerprint on the host path: a 300-atom chain with a trefoil core (step
// 10, threshold 20, 100 two-point closures per subchain) and every subchain of the 3KZN
// C-alpha trace (331 atoms, step 1, 20 closures each), on one thread and on all cores.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "preprocessing/chainprep.hpp" // for ChainRead
#include "scan/scan.hpp"
#include "scan/threads.hpp"

namespace {

std::vector<ChainAtom> Read(const std::string& path) {
  std::vector<char> name(path.begin(), path.end());
  name.push_back('\0');
  bool error = true;
  std::vector<ChainAtom> chain = ChainRead(name.data(), error);
  return error ? std::vector<ChainAtom>() : chain;
}

// Runs one scan per iteration with the log stream silenced; threads 0 = all cores.
void Scan(benchmark::State& state, const std::vector<ChainAtom>& chain, int step, int threshold,
          int closures) {
  if (chain.empty()) {
    state.SkipWithError("chain file not found");
    return;
  }
  SetFingerprintThreads(static_cast<int>(state.range(0)));
  std::ostringstream sink;
  std::streambuf* log = std::clog.rdbuf(sink.rdbuf());
  std::size_t bytes = 0;
  for (auto _ : state) {
    std::srand(1);
    const std::string text =
        FindAllKnots_string(chain, step, threshold, 2, closures, 1, 15, false, 768000000ULL);
    bytes = text.size();
    sink.str("");
  }
  std::clog.rdbuf(log);
  state.counters["threads"] = FingerprintWorkerCount();
  SetFingerprintThreads(1);
  state.counters["text_bytes"] = static_cast<double>(bytes);
}

void BM_KnottedCore300(benchmark::State& state) {
  static const std::vector<ChainAtom> chain =
      Read(std::string(TRESK_SOURCE_DIR) + "/examples/chains/knotted_core.xyz");
  Scan(state, chain, 10, 20, 100);
}

void BM_EverySubchain3KZN(benchmark::State& state) {
  static const std::vector<ChainAtom> chain =
      Read(std::string(TRESK_DATA_DIR) + "/proteins/ca_xyz/3KZN_chain_A.knoto-id.xyz");
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
