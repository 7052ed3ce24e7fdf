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
int ReduceBatch(std::vector<fPointR3>& points, std::vector<Job>& jobs,
                const ParallelFor& parallelFor = {});

} // namespace tresk
