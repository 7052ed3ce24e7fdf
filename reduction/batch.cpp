// Routing of the batch reduction between the GPU and the host.
#include "reduction/batch.hpp"

#include <algorithm>

#include "reduction/deviceBatch.hpp" // for ChainReduceGPU
#include "reduction/hostBatch.hpp"   // for ChainReduceJobsHost, ChainReduceHasDevice

namespace tresk {

int ReduceBatch(std::vector<fPointR3>& points, std::vector<Job>& jobs,
                const ParallelFor& parallelFor) {
#ifdef TRESK_HAVE_CUDA
  if (ChainReduceHasDevice())
    return ChainReduceGPU(points, jobs, true);
#endif
  // Chunks of a few jobs: enough work per hand-out, and the jobs of one chunk share scratch.
  constexpr std::size_t kChunk = 8;
  const std::size_t chunks = (jobs.size() + kChunk - 1) / kChunk;
  auto body = [&](std::size_t c) {
    ChainReduceJobsHost(points, jobs, c * kChunk, std::min(jobs.size(), (c + 1) * kChunk));
  };
  if (parallelFor) {
    parallelFor(chunks, body);
  } else {
    for (std::size_t c = 0; c < chunks; ++c)
      body(c);
  }
  return 0;
}

} // namespace tresk
