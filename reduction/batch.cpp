// The exported single-precision reduction calls, the host batch over ranges of jobs, and the
// routing of a batch between the GPU and the host.
#include "reduction/batch.hpp"

#include <algorithm>

#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/reduceOne.hpp" // for SegmentTriangleTest, ReduceChain

namespace {

// Which test results block a corner: a miss does not, a hit or a contact does.
const bool kBlocks[3] = {false, true, true};

// This thread's working memory for chains of up to n points; it only grows, so a thread
// reducing many chains allocates a few times at most.
tresk::ReduceScratch HostScratch(int n) {
  thread_local std::vector<int> ints;
  thread_local std::vector<float> floats;
  const size_t points = static_cast<size_t>(n);
  if (ints.size() < points * tresk::kReduceIntsPerPoint) {
    ints.resize(points * tresk::kReduceIntsPerPoint);
    floats.resize((points + tresk::kReduceHostPad) * tresk::kReduceFloatsPerPoint);
  }
  return tresk::ReduceScratch{ints.data(), floats.data()};
}

// Reduces jobs [firstJob, lastJob) in place. Writes only those jobs' `length` and the first
// `length` points of each, so threads may share the buffer and the job vector as long as their
// ranges do not overlap.
void ReduceJobsOnHost(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, size_t firstJob,
                      size_t lastJob) {
  for (size_t j = firstJob; j < lastJob; ++j) {
    Job& job = jobs[j];
    if (job.length >= 4)
      job.length = tresk::ReduceChain(buffer.data() + job.begin, job.length,
                                      HostScratch(job.length), kBlocks);
  }
}

} // namespace

int intersection(fPointR3* triangle, fPointR3* segment) {
  return tresk::SegmentTriangleTest(triangle, segment);
}

int ChainReduce(std::vector<fPointR3>& chain) {
  const int size = static_cast<int>(chain.size());
  const int n = tresk::ReduceChain(chain.data(), size, HostScratch(size), kBlocks);
  chain.resize(static_cast<size_t>(n)); // shrinking: the capacity stays
  return n;
}

int ChainReduceCPU(std::vector<fPointR3>& buffer, std::vector<Job>& jobs) {
  ReduceJobsOnHost(buffer, jobs, 0, jobs.size());
  return static_cast<int>(jobs.size());
}

// Without a device the host reduces the batch with the same results and the call returns 0,
// the value of a successful GPU run. `flag` only reaches the kernel, whose result does not
// depend on it.
int ChainReduceANY(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, bool flag) {
  (void)flag;
  return tresk::ReduceBatch(buffer, jobs);
}

namespace tresk {

bool ReduceBatchUsesDevice() {
#ifdef TRESK_HAVE_CUDA
  static const bool present = ReduceDeviceCount() > 0;
  return present;
#else
  return false;
#endif
}

int ReduceBatch(std::vector<fPointR3>& points, std::vector<Job>& jobs,
                const ParallelFor& parallelFor) {
#ifdef TRESK_HAVE_CUDA
  if (ReduceBatchUsesDevice())
    return ReduceBatchOnDevice(points, jobs, true);
#endif
  // Chunks of a few jobs: enough work per hand-out.
  constexpr std::size_t kChunk = 8;
  const std::size_t chunks = (jobs.size() + kChunk - 1) / kChunk;
  auto body = [&](std::size_t c) {
    ReduceJobsOnHost(points, jobs, c * kChunk, std::min(jobs.size(), (c + 1) * kChunk));
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
