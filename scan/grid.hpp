// The scan grid: coarse subchain grid, refinement around knotted rows.
#pragma once

#include <vector>

#include "core/records.hpp" // for ChainAtom, Job, RowFile

int PrepareJobsFromNet(const std::vector<ChainAtom>& chain, std::vector<Job>& jobs, int step);
int PrepareJobsAroundNet(const std::vector<ChainAtom>& chain, std::vector<Job>& jobs,
                         const std::vector<RowFile>& rows, int step, int threshold);
