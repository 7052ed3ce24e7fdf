// The scan grid: the coarse grid of subchains anchored at both chain ends, and the refinement
// windows around strongly knotted rows, marked in a bit matrix of (atoms + 1)² entries.
#include "scan/grid.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>

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

// Square matrix of flags indexed by 1-based (first, last), one bit per entry.
struct MarkMatrix {
  std::size_t side;
  std::vector<uint64_t> words;
};

MarkMatrix EmptyMarks(std::size_t side) {
  return MarkMatrix{side, std::vector<uint64_t>((side * side + 63) / 64, 0)};
}

void SetMark(MarkMatrix& m, std::size_t i, std::size_t j, bool on) {
  std::size_t bit = i * m.side + j;
  uint64_t mask = uint64_t{1} << (bit % 64);
  if (on) {
    m.words[bit / 64] |= mask;
  } else {
    m.words[bit / 64] &= ~mask;
  }
}

bool Marked(const MarkMatrix& m, std::size_t i, std::size_t j) {
  std::size_t bit = i * m.side + j;
  return (m.words[bit / 64] >> (bit % 64)) & 1u;
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
  MarkMatrix marks = EmptyMarks(m);
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
        SetMark(marks, static_cast<std::size_t>(i), static_cast<std::size_t>(j), true);
      }
    }
    // The row's own subchain has been analysed already.
    if (r.first >= 0 && r.last >= 0 && r.first <= top && r.last <= top) {
      SetMark(marks, static_cast<std::size_t>(r.first), static_cast<std::size_t>(r.last), false);
    }
  }
  if (m > 2) {
    for (std::size_t i = 1; i < m; ++i) {
      for (std::size_t j = i + 1; j < m; ++j) {
        if (Marked(marks, i, j))
          jobs.push_back(GridJob(chain, i - 1, j - 1));
      }
    }
  }
  tresk::Log() << "There is " << jobs.size() << " more points on the net of matrix.\n";
  return 0;
}
