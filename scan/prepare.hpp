// Subchain preparation: batches of closed subchains packed into one single-precision buffer
// within a memory budget, and reduced jobs turned back into chains.
#pragma once

#include <vector>

#include "core/records.hpp" // for ChainAtom, fPointR3, Job

bool PrepareAllInfixesFuleren(const std::vector<ChainAtom>& chain, std::vector<fPointR3>& points,
                              std::vector<Job>& batch, const std::vector<Job>& grid,
                              unsigned int& next, int closures, int closureMethod,
                              unsigned long long memoryLimit);
int PrepareAllInfixes(const std::vector<ChainAtom>& chain, std::vector<fPointR3>& points,
                      std::vector<Job>& batch, unsigned int& len, unsigned int& start,
                      unsigned long long memoryLimit);
void CopyJobToChainAtom(const std::vector<fPointR3>& points, std::vector<ChainAtom>& out, Job job);

namespace tresk {

// Whether one subchain's closures fit the batch budget at all (the test the batch preparation
// makes before each subchain, with nothing buffered yet): when not, a scan would give up at once.
bool ClosuresFitBudget(int closures, unsigned long long memoryLimit);

} // namespace tresk
