// The scan grid: the coarse grid of subchains anchored at both chain ends, and the refinement
// windows around strongly knotted rows, marked in a bit matrix of (atoms + 1)² entries.
#include "scan/grid.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <unordered_set>
#include <vector>

#include "core/log.hpp" // for tresk::Log

namespace {

Job GridJob(const std::vector<ChainAtom>& chain, std::size_t firstIndex, std::size_t lastIndex) {
  // Positions are 1-based; begin and length are filled by the batch preparation.
  return Job{0,
             0,
             chain[firstIndex].id,
             chain[lastIndex].id,
             static_cast<int32_t>(firstIndex + 1),
             static_cast<int32_t>(lastIndex + 1)};
}

// Refinement marks of 1-based (first, last) pairs, kept sparse: memory grows with the windows
// around knotted rows, not with the square of the chain's length.
using Marks = std::unordered_set<uint64_t>;

uint64_t MarkKey(int64_t i, int64_t j) {
  return (static_cast<uint64_t>(i) << 32) | static_cast<uint64_t>(j);
}

} // namespace

int PrepareJobsFromNet(const std::vector<ChainAtom>& chain, std::vector<Job>& jobs, int step) {
  // Unsigned index arithmetic: starts 0, step, 2 step, ...; ends n-1, n-1-step, ... above the
  // start; a negative step wraps to a huge stride (only the whole chain is taken). A step of 0
  // would never advance, so it lays no grid at all.
  const std::size_t n = chain.size();
  const std::size_t stride = static_cast<std::size_t>(static_cast<unsigned int>(step));
  if (n > 0 && stride > 0) {
    for (std::size_t i = 0; i < n; i += stride) {
      for (std::size_t j = n - 1; j > i; j -= stride) {
        jobs.push_back(GridJob(chain, i, j));
        if (j < stride)
          break;
      }
    }
  }
  tresk::Log() << "Choosen " << jobs.size() << " points on the net of matrix.\n";
  return 1;
}

int PrepareJobsAroundNet(const std::vector<ChainAtom>& chain, std::vector<Job>& jobs,
                         const std::vector<RowFile>& rows, int step, int threshold) {
  const std::size_t m = chain.size() + 1;
  Marks marks;
  const int64_t top = static_cast<int64_t>(m) - 1;
  for (const RowFile& r : rows) {
    if (r.strength <= threshold)
      continue;
    // Window of half-width step - 1 around the row, clipped to positions 1 .. m-1.
    const int64_t iLow = std::max<int64_t>(1, int64_t{r.first} - step + 1);
    const int64_t iHigh = std::min<int64_t>(top, int64_t{r.first} + step - 1);
    const int64_t jLow = std::max<int64_t>(1, int64_t{r.last} - step + 1);
    const int64_t jHigh = std::min<int64_t>(top, int64_t{r.last} + step - 1);
    for (int64_t i = iLow; i <= iHigh; ++i) {
      for (int64_t j = jLow; j <= jHigh; ++j) {
        marks.insert(MarkKey(i, j));
      }
    }
    // The row's own subchain has been analysed already.
    if (r.first >= 0 && r.last >= 0 && r.first <= top && r.last <= top) {
      marks.erase(MarkKey(r.first, r.last));
    }
  }
  // In (first, last) order, only pairs with first < last.
  std::vector<uint64_t> marked(marks.begin(), marks.end());
  std::sort(marked.begin(), marked.end());
  for (uint64_t key : marked) {
    const std::size_t i = static_cast<std::size_t>(key >> 32), j = key & 0xffffffffu;
    if (i < j)
      jobs.push_back(GridJob(chain, i - 1, j - 1));
  }
  tresk::Log() << "There is " << jobs.size() << " more points on the net of matrix.\n";
  return 0;
}
