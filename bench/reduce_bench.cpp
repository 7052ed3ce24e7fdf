// Batch reduction of 1,000 closed random chains of 300 points: the plain reference reduction,
// the host path (ChainReduceCPU) and, where a CUDA device is present, one GPU launch.
// Two kinds of chains: free random walks, and walks confined to a sphere (compact, knotted
// coils, much like the closed subchains of a protein scan).
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/batch.hpp"                // for tresk::ReduceBatchUsesDevice
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
  state.counters["points_left_per_chain"] = static_cast<double>(left) / kChains;
  state.SetItemsProcessed(state.iterations() * kChains);
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
