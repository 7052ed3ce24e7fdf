// The GPU side of the batch reduction, present only in builds that compile the CUDA unit
// (TRESK_HAVE_CUDA); ChainReduceANY routes to it when a device is present.
#pragma once

#include <vector>

#include "core/points.hpp" // for fPointR3, Job

#ifdef TRESK_HAVE_CUDA
// Number of CUDA devices; 0 when the runtime finds no device or no driver.
int ChainReduceDeviceCount();
// One launch of ChainReduceKernel over the whole batch (8192 blocks of 64 threads), with the
// buffer and the jobs copied to the device and back. A launch or runtime error prints
// "Error: %s\n" on standard output and ends the process with the error code; otherwise returns
// the result of the final synchronisation (0).
int ChainReduceGPU(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, bool flag);
#endif
