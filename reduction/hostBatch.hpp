// Host-side helpers of the batch reduction for the fingerprint scan and the tests: reducing a
// range of jobs (safe to call from several threads on disjoint ranges), whether the GPU path
// will be taken, and the plain batch reduction that the fast host path must reproduce.
#pragma once

#include <cstddef>
#include <vector>

#include "core/points.hpp" // for fPointR3, Job

// Reduces jobs [firstJob, lastJob) with the fast host reduction, in place in `buffer`. Writes
// only those jobs' `length` and the first `length` points of each, so threads may share the
// buffer and the job vector as long as their ranges (and the jobs' points) do not overlap.
// Jobs of fewer than 4 points (or a negative length) keep their length and points.
void ChainReduceJobsHost(std::vector<fPointR3>& buffer, std::vector<Job>& jobs, size_t firstJob,
                         size_t lastJob);
// True when ChainReduceANY will reduce on a GPU: the library was built with its CUDA unit and
// the runtime reports at least one device. Asked once per process.
bool ChainReduceHasDevice();
// The plain batch reduction, kept as the reference for tests and benchmarks: every job's points
// are copied out, reduced by ChainReduce and copied back. Returns the number of jobs.
int ChainReduceReference(std::vector<fPointR3>& buffer, std::vector<Job>& jobs);
