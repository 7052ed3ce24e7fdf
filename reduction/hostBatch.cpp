// Batch reduction on the host: the fast path over a range of jobs and the plain reference.
#include "reduction/hostBatch.hpp"

#include <algorithm>

#include "reduction/KknotsSimpler_closed.hpp" // for ChainReduce
#include "reduction/fastReduce.hpp"           // for ChainReduceFast, ReduceScratch

void ChainReduceJobsHost(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, size_t firstJob,
                         size_t lastJob) {
  lastJob = std::min(lastJob, jobs.size());
  ReduceScratch scratch; // one allocation for the whole range
  for (size_t j = firstJob; j < lastJob; ++j) {
    Job& job = jobs[j];
    if (job.length < 4)
      continue;
    job.length = ChainReduceFast(buffer.data() + job.begin, job.length, scratch);
  }
}

int ChainReduceReference(std::vector<fPointR3>& buffer, std::vector<Job>& jobs) {
  std::vector<fPointR3> chain;
  for (Job& job : jobs) {
    if (job.length < 4)
      continue;
    chain.assign(buffer.begin() + job.begin, buffer.begin() + job.begin + job.length);
    job.length = ChainReduce(chain);
    std::copy(chain.begin(), chain.end(), buffer.begin() + job.begin);
  }
  return static_cast<int>(jobs.size());
}
