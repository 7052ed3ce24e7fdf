// The segment-triangle test and the plain reduction of one chain (shared with the GPU through
// reduceOne.hpp), the host batch reduction and the routing of ChainReduceANY.
#include "reduction/KknotsSimpler_closed.hpp"

#include "reduction/batch.hpp"       // for tresk::ReduceBatch
#include "reduction/deviceBatch.hpp" // for ChainReduceDeviceCount
#include "reduction/hostBatch.hpp"   // for ChainReduceJobsHost
#include "reduction/reduceOne.hpp"   // for SegmentTriangleTest, ReduceClosedChain

int intersection(fPointR3* triangle, fPointR3* segment) {
  return SegmentTriangleTest(triangle, segment);
}

int ChainReduce(std::vector<fPointR3>& chain) {
  static const bool blocks[3] = {false, true, true}; // a hit or a contact blocks a corner
  const int n = ReduceClosedChain(chain.data(), static_cast<int>(chain.size()), blocks);
  chain.resize(static_cast<size_t>(n)); // shrinking: the capacity stays, nothing is allocated
  return n;
}

// The fast host reduction removes exactly the points of the plain one (see fastReduce.cpp).
int ChainReduceCPU(std::vector<fPointR3>& buffer, std::vector<Job>& jobs) {
  ChainReduceJobsHost(buffer, jobs, 0, jobs.size());
  return static_cast<int>(jobs.size());
}

bool ChainReduceHasDevice() {
#ifdef TRESK_HAVE_CUDA
  static const bool present = ChainReduceDeviceCount() > 0;
  return present;
#else
  return false;
#endif
}

// Without a device the host reduces the batch with the same results and the call returns 0,
// the value of a successful GPU run. `flag` only reaches the kernel, whose result does not
// depend on it.
int ChainReduceANY(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, bool flag) {
  (void)flag;
  return tresk::ReduceBatch(buffer, jobs);
}
