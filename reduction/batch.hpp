// The one place that decides where a batch of closed subchains is reduced: in one GPU launch
// when the library has its CUDA unit and a device is present, otherwise on the host in chunks
// of jobs handed to the caller's parallel loop. Both paths give bit-identical results.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "core/points.hpp" // for fPointR3, Job

namespace tresk {

// Calls body(i) for i in 0 .. count-1, in any order and on any threads, and returns when all
// are done. The serial loop is the default.
using ParallelFor =
    std::function<void(std::size_t count, const std::function<void(std::size_t)>& body)>;

// Reduces every job of the batch in place; returns 0 (the status of a successful GPU run).
// Jobs of fewer than 4 points (or a negative length) keep their length and points.
int ReduceBatch(std::vector<fPointR3>& points, std::vector<Job>& jobs,
                const ParallelFor& parallelFor = {});
// True when ReduceBatch takes the GPU path: the library was built with its CUDA unit and the
// runtime reports at least one device. Asked once per process.
bool ReduceBatchUsesDevice();

#ifdef TRESK_HAVE_CUDA
// Number of CUDA devices; 0 when the runtime finds no device or no driver.
int ReduceDeviceCount();
// One launch of ChainReduceKernel over the whole batch (8192 blocks of 64 threads), with the
// buffer and the jobs copied to the device and back. A launch or runtime error prints
// "Error: %s\n" on standard output and ends the process with the error code; otherwise returns
// the result of the final synchronisation (0).
int ReduceBatchOnDevice(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, bool flag);
#endif

} // namespace tresk
