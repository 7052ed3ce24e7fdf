// Subchain preparation: batches of closed subchains packed end to end into one
// single-precision buffer within a memory budget, and reduced jobs turned back into chains.
#include "scan/prepare.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <iterator>

#include "core/log.hpp"         // for tresk::Log
#include "chain/closing.hpp"    // for tresk::CloseByMethod
#include "scan/closedBatch.hpp" // for tresk::AppendPackedRun

namespace {

// Budget units per buffered point of the closed-subchain preparation, and the allowance per
// closure for the points that a closure adds.
constexpr unsigned long long kUnitsPerPoint = 13;
constexpr int kClosureAllowance = 100;

// 13 × (points already buffered + closures × (length + 100)). The product is a 32-bit signed
// int (it wraps), sign-extended into the unsigned 64-bit sum, which also wraps: a negative
// number of closures thus gives a huge estimate.
unsigned long long Estimate(std::size_t buffered, int closures, const Job& job) {
  const uint32_t perJob = static_cast<uint32_t>(closures) *
                          (static_cast<uint32_t>(job.length) + uint32_t{kClosureAllowance});
  const uint64_t wide = static_cast<uint64_t>(static_cast<int64_t>(static_cast<int32_t>(perJob)));
  return kUnitsPerPoint * (static_cast<uint64_t>(buffered) + wide);
}

// Room for the batch that starts at grid job `next`, so that the buffer is not copied while
// it grows: each closure counted with a few extra points, the whole capped by the budget.
// Capacity that is never written costs no memory.
std::size_t BatchCapacity(const std::vector<Job>& grid, unsigned int next, int closures,
                          unsigned long long memoryLimit) {
  if (closures <= 0)
    return 0;
  const unsigned long long cap = memoryLimit / kUnitsPerPoint;
  unsigned long long total = 0;
  for (std::size_t g = next; g < grid.size() && total < cap; ++g) {
    const long long atoms = static_cast<long long>(grid[g].last) - grid[g].first + 1;
    total += static_cast<unsigned long long>(closures) *
             static_cast<unsigned long long>(std::max(0LL, atoms) + 2 + 8);
  }
  return static_cast<std::size_t>(std::min(total, cap));
}

void LogCreated(std::size_t jobs, std::size_t points) {
  tresk::Log() << "created " << jobs << " jobs of total size " << points;
}

} // namespace

bool PrepareAllInfixesFuleren(const std::vector<ChainAtom>& chain, std::vector<fPointR3>& points,
                              std::vector<Job>& batch, const std::vector<Job>& grid,
                              unsigned int& next, int closures, int closureMethod,
                              unsigned long long memoryLimit) {
  points.clear();
  batch.clear();
  if (next >= grid.size())
    next = 0;
  if (grid.empty()) {
    LogCreated(0, 0);
    tresk::Log() << std::endl;
    return true;
  }
  int32_t offset = 0;
  std::vector<ChainAtom> sub;
  points.reserve(BatchCapacity(grid, next, closures, memoryLimit));
  bool fits = Estimate(points.size(), closures, grid[next]) <= memoryLimit;
  while (fits) {
    const Job& g = grid[next];
    for (int c = 0; c < closures; ++c) {
      // Two distinct directions out of 60 are drawn and thrown away; the draws keep the
      // generator's sequence, and with it every later closure, where it has always been.
      const int r1 = std::rand() % 60;
      while (std::rand() % 60 == r1) {
      }
      sub.assign(chain.begin() + (g.first - 1), chain.begin() + g.last);
      // Methods 1 to 3 only, each closure used as it comes: 0, 4 and others stay open.
      tresk::CloseByMethod(sub, closureMethod, tresk::ClosureRetry::useAsIs, false);
      const int32_t length = static_cast<int32_t>(sub.size());
      batch.push_back(Job{offset, length, g.firstId, g.lastId, g.first, g.last});
      tresk::AppendPackedRun(points, sub.begin(), sub.end());
      offset =
          static_cast<int32_t>(static_cast<uint32_t>(offset) + static_cast<uint32_t>(length) + 2u);
    }
    ++next;
    if (next == grid.size()) {
      LogCreated(batch.size(), points.size());
      tresk::Log() << std::endl;
      return true;
    }
    fits = Estimate(points.size(), closures, grid[next]) <= memoryLimit;
  }
  LogCreated(batch.size(), points.size());
  tresk::Log() << "The last: " << grid[next].firstId << " " << grid[next].lastId
               << ". Will continue." << std::endl;
  if (batch.empty()) {
    std::cerr << "UUUPS. -------There is no memory? We quit here and do not check whole matrix. "
                 "SORRY. \n";
    return true;
  }
  return false;
}

int PrepareAllInfixes(const std::vector<ChainAtom>& chain, std::vector<fPointR3>& points,
                      std::vector<Job>& batch, unsigned int& len, unsigned int& start,
                      unsigned long long memoryLimit) {
  points.clear();
  batch.clear();
  const std::size_t n = chain.size();
  if (len <= 3 || len > n) {
    std::cerr << "Problem with 'len' in PrepareAllInfixes(), tresk. Tell it Brenvo. \n";
    return -1;
  }
  if (start > n - len)
    start = 0;
  int32_t offset = 0;
  for (;;) {
    if (26ull * (len + points.size() + 2) > memoryLimit)
      return 0;
    // The subchain of atoms start .. start+len-1 (0-based), forward and then reversed; both
    // copies stay open (no closure).
    const auto from = chain.begin() + start;
    const auto to = from + len;
    const int32_t length = static_cast<int32_t>(len);
    const Job job{offset,
                  length,
                  chain[start].id,
                  chain[start + len - 1].id,
                  static_cast<int32_t>(start + 1),
                  static_cast<int32_t>(start + len)};
    batch.push_back(job);
    tresk::AppendPackedRun(points, from, to);
    Job reversed = job;
    reversed.begin = offset + length + 2;
    batch.push_back(reversed);
    tresk::AppendPackedRun(points, std::make_reverse_iterator(to),
                           std::make_reverse_iterator(from));
    offset += 2 * (length + 2);
    ++start;
    if (start > n - len) {
      ++len;
      if (len > n)
        break;
      start = 0;
    }
  }
  tresk::Log() << "created " << batch.size() << " jobs of total size " << points.size()
               << ". Zaczynamy od id " << start << ", len " << len << std::endl;
  return 1;
}

void CopyJobToChainAtom(const std::vector<fPointR3>& points, std::vector<ChainAtom>& out, Job job) {
  out.clear();
  // Signed range; indices outside the buffer are skipped rather than read.
  const int64_t end = int64_t{job.begin} + job.length;
  const int64_t size = static_cast<int64_t>(points.size());
  for (int64_t k = job.begin; k < end; ++k) {
    if (k < 0 || k >= size)
      continue;
    const fPointR3& p = points[static_cast<std::size_t>(k)];
    out.push_back(ChainAtom{p.x, p.y, p.z, 0});
  }
}

bool tresk::ClosuresFitBudget(int closures, unsigned long long memoryLimit) {
  // Grid jobs carry no length yet, so the estimate counts only the closure allowance.
  return Estimate(0, closures, Job{}) <= memoryLimit;
}
