// Batch reduction: the plain reference reduction, the host path (ChainReduceCPU) and, where a
// CUDA device is present, one GPU launch, on 1,000 random chains of 300 points (free walks, and
// compact knotted coils confined to a sphere) and on eight protein C-alpha traces, closed as
// they are.
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/batch.hpp"         // for tresk::ReduceBatchUsesDevice
#ifndef TRESK_BENCH_NO_CORPUS          // built without the test suite: no corpus readers
#include "tests/support/datafiles.hpp" // for zoo::ReadChain, zoo::DataFile
#endif
#include "tests/support/reduce_reference.hpp" // for reference::ChainReduceReference

namespace {

constexpr int kChains = 1000;
constexpr int kPoints = 300;

struct Batch {
  std::vector<fPointR3> points;
  std::vector<Job> jobs;
};

// Steps of 3.8 in random directions; with `radius` > 0 steps leaving that sphere are redrawn.
Batch MakeBatch(double radius) {
  std::mt19937 gen(2024);
  std::normal_distribution<double> g(0.0, 1.0);
  Batch batch;
  for (int c = 0; c < kChains; ++c) {
    batch.jobs.push_back({static_cast<int32_t>(batch.points.size()), kPoints, 0, 0, 0, 0});
    double x = 0, y = 0, z = 0;
    for (int i = 0; i < kPoints; ++i) {
      batch.points.push_back({float(x), float(y), float(z)});
      for (;;) {
        double dx = g(gen), dy = g(gen), dz = g(gen);
        const double scale = 3.8 / std::sqrt(dx * dx + dy * dy + dz * dz);
        dx *= scale, dy *= scale, dz *= scale;
        if (radius <= 0 ||
            (x + dx) * (x + dx) + (y + dy) * (y + dy) + (z + dz) * (z + dz) < radius * radius) {
          x += dx, y += dy, z += dz;
          break;
        }
      }
    }
    batch.points.insert(batch.points.end(), 2, batch.points.back());
  }
  return batch;
}

#ifndef TRESK_BENCH_NO_CORPUS
// Eight protein traces of 100 to 330 atoms from the corpus, each one job; empty without it.
const Batch& Proteins() {
  static const Batch batch = [] {
    Batch b;
    for (const char* name :
         {"1cak_A", "1ep9_A", "1fvo_A", "1j85_A", "1ns5_A", "1o6d_A", "1pvv_A", "3kzn_A"}) {
      const std::vector<ChainAtom> atoms =
          zoo::ReadChain("proteins/ca_xyz/" + std::string(name) + ".xyz");
      b.jobs.push_back(
          {static_cast<int32_t>(b.points.size()), static_cast<int32_t>(atoms.size()), 0, 0, 0, 0});
      for (const ChainAtom& a : atoms)
        b.points.push_back({float(a.x), float(a.y), float(a.z)});
      b.points.insert(b.points.end(), 2, b.points.empty() ? fPointR3{} : b.points.back());
    }
    return b;
  }();
  return batch;
}

const Batch& Walks() {
  static const Batch batch = MakeBatch(0.0);
  return batch;
}

const Batch& Coils() {
  static const Batch batch = MakeBatch(16.0);
  return batch;
}

template <int (*Reduce)(std::vector<fPointR3>&, std::vector<Job>&)>
void RunBatch(benchmark::State& state, const Batch& source) {
  long long left = 0;
  for (auto _ : state) {
    state.PauseTiming();
    Batch batch = source;
    state.ResumeTiming();
    Reduce(batch.points, batch.jobs);
    benchmark::DoNotOptimize(batch.points.data());
    state.PauseTiming();
    left = 0;
    for (const Job& job : batch.jobs)
      left += job.length;
    state.ResumeTiming();
  }
  const auto chains = static_cast<long long>(source.jobs.size());
  state.counters["points_left_per_chain"] = static_cast<double>(left) / chains;
  state.SetItemsProcessed(state.iterations() * chains);
}

int ReduceOnDevice(std::vector<fPointR3>& points, std::vector<Job>& jobs) {
  return ChainReduceANY(points, jobs, true);
}

void BM_PlainWalks(benchmark::State& s) {
  RunBatch<reference::ChainReduceReference>(s, Walks());
}
void BM_FastWalks(benchmark::State& s) {
  RunBatch<ChainReduceCPU>(s, Walks());
}
void BM_PlainCoils(benchmark::State& s) {
  RunBatch<reference::ChainReduceReference>(s, Coils());
}
void BM_FastCoils(benchmark::State& s) {
  RunBatch<ChainReduceCPU>(s, Coils());
}
void BM_PlainProteins(benchmark::State& s) {
  RunBatch<reference::ChainReduceReference>(s, Proteins());
}
void BM_FastProteins(benchmark::State& s) {
  RunBatch<ChainReduceCPU>(s, Proteins());
}
#endif
void BM_KernelWalks(benchmark::State& s) {
  RunBatch<ReduceOnDevice>(s, Walks());
}
void BM_KernelCoils(benchmark::State& s) {
  RunBatch<ReduceOnDevice>(s, Coils());
}

} // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  for (auto* b : {benchmark::RegisterBenchmark("PlainWalks", BM_PlainWalks),
                  benchmark::RegisterBenchmark("FastWalks", BM_FastWalks),
                  benchmark::RegisterBenchmark("PlainCoils", BM_PlainCoils),
                  benchmark::RegisterBenchmark("FastCoils", BM_FastCoils)}) {
    b->Unit(benchmark::kMillisecond);
  }
#ifndef TRESK_BENCH_NO_CORPUS
  // The corpus: missing is an error under CI, a one-line skip elsewhere.
  if (!zoo::DataFile("MANIFEST.md").empty()) {
    benchmark::RegisterBenchmark("PlainProteins", BM_PlainProteins)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("FastProteins", BM_FastProteins)->Unit(benchmark::kMicrosecond);
  } else if (zoo::InCI()) {
    std::fprintf(stderr, "ground-truth corpus missing: expected at %s\n", zoo::DataDir().c_str());
    return 1;
  } else {
    std::fprintf(stderr, "PlainProteins, FastProteins: skipped (no corpus at %s)\n",
                 zoo::DataDir().c_str());
  }
#endif
  if (tresk::ReduceBatchUsesDevice()) {
    benchmark::RegisterBenchmark("KernelWalks", BM_KernelWalks)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("KernelCoils", BM_KernelCoils)->Unit(benchmark::kMillisecond);
  } else {
    std::fprintf(stderr, "KernelWalks, KernelCoils: skipped (no CUDA device)\n");
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
