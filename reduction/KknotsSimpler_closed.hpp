// Batch reduction of closed subchains held in one single-precision point buffer, on the host
// (ChainReduceCPU) or in one GPU launch (ChainReduceANY, kernel ChainReduceKernel).
#pragma once

#include <vector>

#include "core/points.hpp" // for fPointR3, Job

// 0 miss, 1 clear hit or degenerate, 2 contact within tolerance.
int intersection(fPointR3* triangle, fPointR3* segment);
// Empty-triangle elimination of one closed single-precision chain; returns the new size.
int ChainReduce(std::vector<fPointR3>& chain);
// Reduces every job on the host; returns the number of jobs.
int ChainReduceCPU(std::vector<fPointR3>& buffer, std::vector<Job>& jobs);
// Reduces every job on the GPU when one is present, on the host otherwise.
int ChainReduceANY(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, bool flag);

#ifdef __CUDACC__
__global__ void ChainReduceKernel(fPointR3* points, int jobCount, Job* jobs, bool flag);
#endif
