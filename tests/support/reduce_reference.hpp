// The plain empty-corner reduction, restarted from the first corner after every removal: the
// reference that the library's single-precision reduction and batch paths are tested against.
#pragma once

#include <vector>

#include "core/points.hpp" // for fPointR3, Job

namespace reference {

// Reduces the closed chain points[0..n-1] in place and returns the new size.
int ReduceClosedChain(fPointR3* points, int n);
// Every job of the batch reduced by ReduceClosedChain on a copy of its points, then copied back.
// Returns the number of jobs.
int ChainReduceReference(std::vector<fPointR3>& buffer, std::vector<Job>& jobs);

} // namespace reference
