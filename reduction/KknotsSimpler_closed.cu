// The GPU path of the batch reduction: the kernel ChainReduceKernel, a thin grid-stride loop
// around the shared per-chain reduction of reduceOne.hpp, and the host side of one launch.
#include <cstdio>
#include <cstdlib>

#include <cuda_runtime.h>

#include "reduction/KknotsSimpler_closed.hpp"
#include "reduction/batch.hpp"
#include "reduction/reduceOne.hpp" // for ReduceChain, ReduceScratch

namespace {

constexpr int kBlocks = 8192;
constexpr int kThreadsPerBlock = 64;

// The working memory of the launch in progress, laid out parallel to the device point buffer
// (set before each launch; the kernel's signature has no room for it).
__device__ int* gScratchInts;
__device__ float* gScratchFloats;

[[noreturn]] void Fail(cudaError_t error) {
  printf("Error: %s\n", cudaGetErrorString(error));
  exit(static_cast<int>(error));
}

} // namespace

// Each thread reduces jobs j, j + (number of threads), ... in place; threads beyond the last job
// do nothing. `flag` is accepted for the callers, which all pass true; the reduction does not
// depend on it.
__global__ void ChainReduceKernel(fPointR3* points, int jobCount, Job* jobs, bool flag) {
  (void)flag;
  // Which test results block a corner, per thread: a miss does not, a hit or a contact does.
  bool interTypeTab[3] = {false, true, true};
  const tresk::ReduceScratch scratch{gScratchInts, gScratchFloats};
  const long long stride = static_cast<long long>(gridDim.x) * blockDim.x;
  for (long long j = static_cast<long long>(blockIdx.x) * blockDim.x + threadIdx.x; j < jobCount;
       j += stride) {
    const Job job = jobs[j];
    jobs[j].length = tresk::ReduceChain(points + job.begin, job.length,
                                        tresk::ReduceScratchAt(scratch, job.begin), interTypeTab);
  }
}

namespace tresk {

int ReduceDeviceCount() {
  int count = 0;
  if (cudaGetDeviceCount(&count) != cudaSuccess) {
    cudaGetLastError(); // no driver or no device: clear the error so that it is not reported later
    return 0;
  }
  return count;
}

// Allocation and copy failures are not checked one by one: they remain the runtime's last error
// and are reported after the launch.
int ReduceBatchOnDevice(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, bool flag) {
  const size_t pointBytes = buffer.size() * sizeof(fPointR3);
  const size_t jobBytes = jobs.size() * sizeof(Job);
  const size_t intBytes = buffer.size() * kReduceIntsPerPoint * sizeof(int);
  const size_t floatBytes = buffer.size() * kReduceFloatsPerPoint * sizeof(float);
  fPointR3* devicePoints = nullptr;
  Job* deviceJobs = nullptr;
  char* deviceScratch = nullptr;
  cudaSetDevice(0);
  // Empty vectors are neither allocated nor copied; the launch then finds no job.
  if (pointBytes > 0) {
    cudaMalloc(&devicePoints, pointBytes);
    cudaMemcpy(devicePoints, buffer.data(), pointBytes, cudaMemcpyHostToDevice);
    cudaMalloc(&deviceScratch, intBytes + floatBytes);
  }
  if (jobBytes > 0) {
    cudaMalloc(&deviceJobs, jobBytes);
    cudaMemcpy(deviceJobs, jobs.data(), jobBytes, cudaMemcpyHostToDevice);
  }
  int* ints = reinterpret_cast<int*>(deviceScratch);
  float* floats = deviceScratch ? reinterpret_cast<float*>(deviceScratch + intBytes) : nullptr;
  cudaMemcpyToSymbol(gScratchInts, &ints, sizeof ints);
  cudaMemcpyToSymbol(gScratchFloats, &floats, sizeof floats);
  cudaDeviceSynchronize();
  ChainReduceKernel<<<dim3(kBlocks), dim3(kThreadsPerBlock), 0, 0>>>(
      devicePoints, static_cast<int>(jobs.size()), deviceJobs, flag);
  cudaError_t error = cudaGetLastError();
  if (error != cudaSuccess)
    Fail(error);
  error = cudaDeviceSynchronize(); // a fault inside the kernel shows up here
  if (error != cudaSuccess)
    Fail(error);
  if (pointBytes > 0) {
    cudaMemcpy(buffer.data(), devicePoints, pointBytes, cudaMemcpyDeviceToHost);
    cudaFree(devicePoints);
    cudaFree(deviceScratch);
  }
  if (jobBytes > 0) {
    cudaMemcpy(jobs.data(), deviceJobs, jobBytes, cudaMemcpyDeviceToHost);
    cudaFree(deviceJobs);
  }
  return static_cast<int>(cudaDeviceSynchronize());
}

} // namespace tresk
