// ChainReduce: simplification of a closed chain by cutting off empty corners (a vertex goes
// when no other segment meets the triangle it forms with its two neighbours), in double
// precision, with the result of the plain loop that restarts from the first corner after every
// cut, re-testing only what a cut can unblock; then over/under-pass shortcuts that bring the
// best diagram down to few crossings.
#include "preprocessing/chainprep.hpp"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <vector>
#if defined(__GNUC__) && defined(__x86_64__)
#include <immintrin.h> // box comparisons four at a time where the CPU has AVX (chosen at run time)
#define TRESK_PREP_AVX 1
#endif

#include "preprocessing/directions.hpp" // for ProjectionFrames
#include "preprocessing/open_cut.hpp"
#include "preprocessing/overpass.hpp"        // for ShortcutBestPass
#include "preprocessing/projection_rank.hpp" // for DiagramPairs, FewestCrossings, RankPlanesTop
#include "preprocessing/triangle_tests.hpp"  // for SegmentNearTriangle, TriangleProbe
#include "preprocessing/vec3.hpp"            // for Vec3
#include "preprocessing/simd.hpp"            // for tresk::SimdLimit

using tresk::PositionOf;
using tresk::ProjectionFrames;
using tresk::RankPlanesTop;
using tresk::TriangleProbe;
using tresk::Vec3;

namespace {

// Contacts closer than this fraction of the chain's coordinate scale count as contacts.
constexpr double kRelativeTolerance = 1e-9;
// Segments sharing a vertex with a corner block it when they run within this angle (radians)
// of the corner's plane and into its angle.
constexpr double kAngleTolerance = 1e-9;
// Up to this many vertices every segment's box is compared with the triangle's, four at a time;
// above it a grid finds the nearby segments (until the chain has shrunk to this size).
constexpr int kFlatSize = 1024;
// A segment whose box covers more grid cells than this is kept in a list tested by all queries.
constexpr long kMaxCellsPerSegment = 64;
// Over/under-pass shortcuts: rounds at most, all 30 planes tried up to this chain size, and no
// shortcuts at all above the second size (the diagrams would be too costly to search).
constexpr int kMaxShortcutRounds = 32;
constexpr int kAllPlanesSize = 64;
constexpr size_t kMaxShortcutSize = 400;

struct Box {
  Vec3 lo;
  Vec3 hi;
};

#ifdef TRESK_PREP_AVX
// For each mask of four lanes: the numbers of the lanes set, in order, and how many there are.
struct LaneTable {
  int lanes[16][4];
  int count[16];
};

constexpr LaneTable MakeLaneTable() {
  LaneTable t{};
  for (int mask = 0; mask < 16; ++mask)
    for (int lane = 0; lane < 4; ++lane)
      if (mask >> lane & 1)
        t.lanes[mask][t.count[mask]++] = lane;
  return t;
}

constexpr LaneTable kLaneTable = MakeLaneTable();
#endif

// A segment is named by its first vertex s (it runs s -> next[s]); `version` tells whether a
// stored entry still describes the current segment of s (it changes when the segment does and
// when s is erased), and then `box` is the segment's box.
struct SegmentRef {
  int start;
  unsigned version;
  Box box;
};

Box BoxOf(Vec3 a, Vec3 b) {
  return {{std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)},
          {std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)}};
}

Box BoxOf(Vec3 a, Vec3 b, Vec3 c, double pad) {
  Box ab = BoxOf(a, b);
  return {
      {std::min(ab.lo.x, c.x) - pad, std::min(ab.lo.y, c.y) - pad, std::min(ab.lo.z, c.z) - pad},
      {std::max(ab.hi.x, c.x) + pad, std::max(ab.hi.y, c.y) + pad, std::max(ab.hi.z, c.z) + pad}};
}

bool Overlap(const Box& a, const Box& b) {
  return a.lo.x <= b.hi.x && b.lo.x <= a.hi.x && a.lo.y <= b.hi.y && b.lo.y <= a.hi.y &&
         a.lo.z <= b.hi.z && b.lo.z <= a.hi.z;
}

// The working state of one reduction: a doubly linked ring over the input points, the blocked
// corners waiting for their blocker to change, and a uniform grid of segments. One per thread is
// reused by every reduction on it, so its buffers (and the grid's lists) keep their capacity.
struct Reducer {
  std::vector<Vec3> pts;
  std::vector<int> prev, next;
  std::vector<char> alive;
  std::vector<unsigned> version;
  std::vector<std::vector<int>> blockedBy; // corners blocked by the segment starting at s
  // Per corner, the start of the segment that last blocked it (-1: none): when that segment
  // changed, the segment now in its place is the likeliest blocker and is tried first.
  std::vector<int> lastBlocker;
  int recentBlocker = -1; // the blocker found last
  // Corners waiting for a test, one bit per vertex; none below `lowest`.
  std::vector<unsigned long long> pending;
  int lowest = 0;
  int count = 0;
  // An open chain: its segment from the last vertex back to the first does not exist (-1 for
  // a closed chain, else the last vertex), and both ends stay. Each corner cut off is then
  // recorded in `cutOff` (its vertices a, v, b at the time).
  int openEnd = -1;
  std::vector<std::array<int, 3>> cutOff;
  double tol = 0.0;
  double scale = 0.0; // the largest coordinate magnitude

  // Grid of segment references (stale entries are skipped by version).
  Vec3 origin{0, 0, 0};
  double cell = 1.0;
  int dims[3] = {1, 1, 1};
  std::vector<std::vector<SegmentRef>> cells; // the first cellCount are in use
  size_t cellCount = 0;
  std::vector<SegmentRef> wide; // segments too long for the grid
  // How nearby segments are found: every box compared, or the grid.
  enum class Search { kBoxes, kGrid } search = Search::kBoxes;
  int gridBuiltAt = 0;
  // The box list: per slot the box of one segment (empty once it is gone), as six coordinate
  // arrays padded with empty boxes to a multiple of 4 * kGroup; the segment starting at s has
  // slot slotOf[s], the slot's segment starts at slotStart[slot]. Slots follow the chain, so a
  // group of kGroup consecutive slots lies close together: each group has a box holding all of
  // its slots' boxes (it only grows until the list is rebuilt), and a query looks into the
  // groups whose box it meets.
  static constexpr int kGroup = 8;
  std::vector<double> boxLo[3], boxHi[3], groupLo[3], groupHi[3];
  std::vector<int> slotOf, slotStart;
  std::vector<int> overlapping; // the box scan's finds
  std::vector<unsigned> seen;
  unsigned stamp = 0;
  std::vector<double> lengths; // scratch of BuildGrid

  void Reset(const std::vector<ChainAtom>& chain) {
    int n = static_cast<int>(chain.size());
    count = n;
    pts.clear();
    scale = 0.0;
    for (const ChainAtom& a : chain) {
      pts.push_back(PositionOf(a));
      scale = std::max({scale, std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
    }
    tol = kRelativeTolerance * std::max(scale, 1e-300);
    prev.resize(n);
    next.resize(n);
    for (int i = 0; i < n; ++i) {
      prev[i] = (i + n - 1) % n;
      next[i] = (i + 1) % n;
    }
    alive.assign(n, 1);
    pending.assign((size_t(n) + 63) / 64, 0);
    lowest = n;
    version.assign(n, 0);
    lastBlocker.assign(n, -1);
    recentBlocker = -1;
    if (blockedBy.size() < size_t(n))
      blockedBy.resize(n);
    for (int i = 0; i < n; ++i)
      blockedBy[i].clear();
    seen.assign(n, 0);
    stamp = 0;
    ClearCells();
    wide.clear();
    search = Search::kBoxes;
    gridBuiltAt = 0;
    slotOf.resize(n);
    openEnd = -1;
    cutOff.clear();
  }

  void ClearCells() {
    for (size_t c = 0; c < cellCount; ++c)
      cells[c].clear();
    cellCount = 0;
  }

  void Enqueue(int v) {
    if (alive[v] && (openEnd < 0 || (v != 0 && v != openEnd))) {
      pending[size_t(v) >> 6] |= 1ull << (v & 63);
      lowest = std::min(lowest, v);
    }
  }

  // The waiting corner first in chain order (removed from the list), or -1.
  int Dequeue() {
    for (size_t w = size_t(lowest) >> 6; w < pending.size(); ++w)
      if (pending[w] != 0) {
        const int v = static_cast<int>(w * 64) + __builtin_ctzll(pending[w]);
        pending[w] &= pending[w] - 1;
        lowest = v + 1;
        return v;
      }
    lowest = static_cast<int>(pts.size());
    return -1;
  }

  void CellRange(const Box& b, int lo[3], int hi[3]) const {
    const double l[3] = {b.lo.x - origin.x, b.lo.y - origin.y, b.lo.z - origin.z};
    const double h[3] = {b.hi.x - origin.x, b.hi.y - origin.y, b.hi.z - origin.z};
    for (int k = 0; k < 3; ++k) {
      lo[k] = static_cast<int>(std::clamp(std::floor(l[k] / cell), 0.0, dims[k] - 1.0));
      hi[k] = static_cast<int>(std::clamp(std::floor(h[k] / cell), 0.0, dims[k] - 1.0));
    }
  }

  // A slot's new box, added to its group's box (std::min and std::max keep the group's bound
  // when the new one is NaN: such a box meets nothing anyway).
  void SetSlotBox(int slot, const Box& b) {
    WriteSlotBox(slot, b);
    const int group = slot / kGroup;
    const double lo[3] = {b.lo.x, b.lo.y, b.lo.z}, hi[3] = {b.hi.x, b.hi.y, b.hi.z};
    for (int k = 0; k < 3; ++k) {
      groupLo[k][group] = std::min(groupLo[k][group], lo[k]);
      groupHi[k][group] = std::max(groupHi[k][group], hi[k]);
    }
  }

  void WriteSlotBox(int slot, const Box& b) {
    boxLo[0][slot] = b.lo.x, boxLo[1][slot] = b.lo.y, boxLo[2][slot] = b.lo.z;
    boxHi[0][slot] = b.hi.x, boxHi[1][slot] = b.hi.y, boxHi[2][slot] = b.hi.z;
  }

  void ClearSlotBox(int slot) {
    const double inf = std::numeric_limits<double>::infinity();
    for (int k = 0; k < 3; ++k) {
      boxLo[k][slot] = inf;
      boxHi[k][slot] = -inf;
    }
  }

  void Insert(int s) {
    if (s == openEnd)
      return;
    if (search == Search::kBoxes) {
      SetSlotBox(slotOf[s], BoxOf(pts[s], pts[next[s]]));
      return;
    }
    SegmentRef ref{s, version[s], BoxOf(pts[s], pts[next[s]])};
    int lo[3], hi[3];
    CellRange(ref.box, lo, hi);
    long span = long(hi[0] - lo[0] + 1) * (hi[1] - lo[1] + 1) * (hi[2] - lo[2] + 1);
    if (span > kMaxCellsPerSegment) {
      wide.push_back(ref);
      return;
    }
    for (int i = lo[0]; i <= hi[0]; ++i)
      for (int j = lo[1]; j <= hi[1]; ++j)
        for (int k = lo[2]; k <= hi[2]; ++k)
          cells[(size_t(i) * dims[1] + j) * dims[2] + k].push_back(ref);
  }

  // Cell size: the median segment length, but no more cells than about four per vertex.
  void BuildGrid() {
    ClearCells();
    wide.clear();
    search = count <= kFlatSize ? Search::kBoxes : Search::kGrid;
    gridBuiltAt = count;
    if (search == Search::kBoxes) {
      BuildBoxes();
      return;
    }
    lengths.clear();
    Vec3 lo = pts[FirstAlive()], hi = lo;
    ForEachAlive([&](int s) {
      lengths.push_back(Norm(pts[next[s]] - pts[s]));
      Vec3 p = pts[s];
      lo = {std::min(lo.x, p.x), std::min(lo.y, p.y), std::min(lo.z, p.z)};
      hi = {std::max(hi.x, p.x), std::max(hi.y, p.y), std::max(hi.z, p.z)};
    });
    std::nth_element(lengths.begin(), lengths.begin() + lengths.size() / 2, lengths.end());
    Vec3 ext = hi - lo;
    double volumeCell = std::cbrt((ext.x + tol) * (ext.y + tol) * (ext.z + tol) / (4.0 * count));
    cell = std::max({lengths[lengths.size() / 2], volumeCell, tol});
    origin = lo;
    dims[0] = std::min(1024, 1 + static_cast<int>(ext.x / cell));
    dims[1] = std::min(1024, 1 + static_cast<int>(ext.y / cell));
    dims[2] = std::min(1024, 1 + static_cast<int>(ext.z / cell));
    while (double(dims[0]) * dims[1] * dims[2] > 8.0 * count + 64) {
      cell *= 1.25;
      for (int k = 0; k < 3; ++k) {
        double e = k == 0 ? ext.x : k == 1 ? ext.y : ext.z;
        dims[k] = 1 + static_cast<int>(e / cell);
      }
    }
    cellCount = size_t(dims[0]) * dims[1] * dims[2];
    if (cells.size() < cellCount)
      cells.resize(cellCount);
    ForEachAlive([&](int s) { Insert(s); });
  }

  void BuildBoxes() {
    const size_t padded = (size_t(count) + 4 * kGroup - 1) / (4 * kGroup) * (4 * kGroup);
    for (int k = 0; k < 3; ++k) {
      boxLo[k].resize(padded);
      boxHi[k].resize(padded);
      groupLo[k].resize(padded / kGroup);
      groupHi[k].resize(padded / kGroup);
    }
    slotStart.resize(padded);
    overlapping.resize(padded + 3);
    int slots = 0;
    ForEachAlive([&](int s) {
      if (s == openEnd)
        return;
      slotOf[s] = slots;
      slotStart[slots] = s;
      WriteSlotBox(slots++, BoxOf(pts[s], pts[next[s]]));
    });
    std::fill(slotStart.begin() + slots, slotStart.end(), -1);
    for (size_t slot = slots; slot < padded; ++slot)
      ClearSlotBox(static_cast<int>(slot));
    const double inf = std::numeric_limits<double>::infinity();
    for (int k = 0; k < 3; ++k)
      for (size_t g = 0; g < padded / kGroup; ++g) {
        double lo = inf, hi = -inf;
        for (size_t slot = g * kGroup; slot < (g + 1) * kGroup; ++slot) {
          lo = std::min(lo, boxLo[k][slot]);
          hi = std::max(hi, boxHi[k][slot]);
        }
        groupLo[k][g] = lo;
        groupHi[k][g] = hi;
      }
  }

  int FirstAlive() const {
    for (int i = 0; i < static_cast<int>(alive.size()); ++i)
      if (alive[i])
        return i;
    return -1;
  }

  template <class F> void ForEachAlive(F f) const {
    int start = FirstAlive();
    if (start < 0)
      return;
    int s = start;
    do {
      f(s);
      s = next[s];
    } while (s != start);
  }

  // A triangle swept by the moving edges of a corner: its three points, the chain vertex at
  // each point (-1 for a point that is not a vertex yet), and the two moving segments (named
  // by their first vertex), which are never tested against it.
  struct Sweep {
    Vec3 p[3];
    int vertex[3];
    int skip1, skip2;
  };

  // `probe` tests segments against the triangle of t.
  bool Blocks(int s, const Sweep& t, TriangleProbe& probe) const {
    int e = next[s];
    for (int k = 0; k < 3; ++k) {
      if (t.vertex[k] == s || t.vertex[k] == e) {
        int other = t.vertex[k] == s ? e : s;
        for (int m = 0; m < 3; ++m)
          if (m != k && t.vertex[m] == other)
            return true; // spans two corners: keep
        return SharedVertexSegmentEnters(t.p[k], pts[other], t.p[(k + 1) % 3], t.p[(k + 2) % 3],
                                         kAngleTolerance);
      }
    }
    return probe.Near(pts[s], pts[e]);
  }

  // The first segment found that meets the swept triangle, or -1 when it is empty.
  int FindBlocker(const Sweep& t, int likely = -1) {
    const Box box = BoxOf(t.p[0], t.p[1], t.p[2], tol);
    TriangleProbe probe(t.p[0], t.p[1], t.p[2], tol, scale);
    // A segment whose box misses the triangle's cannot come within tol of it.
    auto meets = [&](int s, const Box& segmentBox) {
      return Overlap(box, segmentBox) && Blocks(s, t, probe);
    };
    // The likeliest blocker goes first.
    if (likely >= 0 && likely != t.skip1 && likely != t.skip2 && likely != openEnd &&
        meets(likely, BoxOf(pts[likely], pts[next[likely]])))
      return likely;
    // Segments next to the corner share a vertex with it and often decide; the search below
    // passes over them (they were just found not to block).
    int near[2] = {-1, -1}, nearCount = 0;
    for (int k = 0; k < 3; ++k) {
      int v = t.vertex[k];
      if (v < 0)
        continue;
      for (int s : {prev[v], v}) {
        if (s == t.skip1 || s == t.skip2 || s == openEnd)
          continue;
        if (Blocks(s, t, probe))
          return s;
        near[nearCount++] = s;
      }
    }
    // `segmentBox` is the box of the segment starting at s.
    auto test = [&](int s, const Box& segmentBox) {
      if (s == t.skip1 || s == t.skip2 || s == openEnd)
        return false;
      for (int k = 0; k < nearCount; ++k)
        if (near[k] == s)
          return false;
      return meets(s, segmentBox);
    };
    if (search == Search::kBoxes) {
      // Every segment that shares a vertex with the corner is one of its two edges or was
      // tested above; any other meets the triangle by the full test or not at all.
#ifdef TRESK_PREP_AVX
      const bool useAvx = HasAvx() && tresk::SimdLimit() >= tresk::kSimdAvx;
      const int found = useAvx ? OverlapsAvx(box) : Overlaps(box);
#else
      const int found = Overlaps(box);
#endif
      for (int k = 0; k < found; ++k) {
        const int s = slotStart[overlapping[k]];
        if (s == t.skip1 || s == t.skip2 || s == near[0] || s == near[1])
          continue;
        if (probe.Near(pts[s], pts[next[s]]))
          return s;
      }
      return -1;
    }
    ++stamp;
    // Stale entries are dropped from every list looked at, up to the blocker found (the current
    // ones keep their order, so the blocker found does not depend on when a list was cleaned).
    auto scan = [&](std::vector<SegmentRef>& list) {
      const size_t size = list.size();
      size_t kept = 0, r = 0;
      int found = -1;
      for (; r < size && found < 0; ++r) {
        const SegmentRef& ref = list[r];
        if (version[ref.start] != ref.version)
          continue;
        if (kept != r)
          list[kept] = ref;
        ++kept;
        if (seen[ref.start] != stamp) {
          seen[ref.start] = stamp;
          if (test(ref.start, ref.box))
            found = ref.start;
        }
      }
      if (kept != r) { // close the gap left by stale entries
        std::copy(list.begin() + static_cast<long>(r), list.end(),
                  list.begin() + static_cast<long>(kept));
        list.resize(kept + (size - r));
      }
      return found;
    };
    int found = scan(wide);
    if (found >= 0)
      return found;
    int lo[3], hi[3];
    CellRange(box, lo, hi);
    // A large triangle covers hundreds of cells, most of them empty.
    for (int i = lo[0]; i <= hi[0]; ++i)
      for (int j = lo[1]; j <= hi[1]; ++j) {
        std::vector<SegmentRef>* row = cells.data() + (size_t(i) * dims[1] + j) * dims[2];
        for (int k = lo[2]; k <= hi[2]; ++k)
          if (!row[k].empty() && (found = scan(row[k])) >= 0)
            return found;
      }
    return -1;
  }

  // The slots whose boxes overlap `box` (the comparisons of Overlap), in order, into
  // `overlapping`; returns how many.
  int Overlaps(const Box& box) {
    const int slots = static_cast<int>(slotStart.size());
    int found = 0;
    for (int i = 0; i < slots; ++i)
      if (boxLo[0][i] <= box.hi.x && box.lo.x <= boxHi[0][i] && boxLo[1][i] <= box.hi.y &&
          box.lo.y <= boxHi[1][i] && boxLo[2][i] <= box.hi.z && box.lo.z <= boxHi[2][i])
        overlapping[found++] = i;
    return found;
  }

#ifdef TRESK_PREP_AVX
  static bool HasAvx() {
    static const bool avx = __builtin_cpu_supports("avx") != 0;
    return avx;
  }

  // Bits k of the result: whether box k of the four at lo[.] + i, hi[.] + i overlaps the box
  // given by its broadcast bounds (ordered quiet comparisons: NaN compares false as above).
  __attribute__((target("avx"))) static unsigned Overlap4(const double* const lo[3],
                                                          const double* const hi[3], int i,
                                                          const __m256d blo[3],
                                                          const __m256d bhi[3]) {
    __m256d in = _mm256_cmp_pd(_mm256_loadu_pd(lo[0] + i), bhi[0], _CMP_LE_OQ);
    in = _mm256_and_pd(in, _mm256_cmp_pd(blo[0], _mm256_loadu_pd(hi[0] + i), _CMP_LE_OQ));
    for (int k = 1; k < 3; ++k) {
      in = _mm256_and_pd(in, _mm256_cmp_pd(_mm256_loadu_pd(lo[k] + i), bhi[k], _CMP_LE_OQ));
      in = _mm256_and_pd(in, _mm256_cmp_pd(blo[k], _mm256_loadu_pd(hi[k] + i), _CMP_LE_OQ));
    }
    return static_cast<unsigned>(_mm256_movemask_pd(in));
  }

  // The same as Overlaps, four boxes at a time, looking only into the groups whose box
  // overlaps `box` (a slot's box lies in its group's).
  __attribute__((target("avx"))) int OverlapsAvx(const Box& box) {
    const int slots = static_cast<int>(slotStart.size());
    const __m256d blo[3] = {_mm256_set1_pd(box.lo.x), _mm256_set1_pd(box.lo.y),
                            _mm256_set1_pd(box.lo.z)};
    const __m256d bhi[3] = {_mm256_set1_pd(box.hi.x), _mm256_set1_pd(box.hi.y),
                            _mm256_set1_pd(box.hi.z)};
    const double* const lo[3] = {boxLo[0].data(), boxLo[1].data(), boxLo[2].data()};
    const double* const hi[3] = {boxHi[0].data(), boxHi[1].data(), boxHi[2].data()};
    const double* const glo[3] = {groupLo[0].data(), groupLo[1].data(), groupLo[2].data()};
    const double* const ghi[3] = {groupHi[0].data(), groupHi[1].data(), groupHi[2].data()};
    // The slots found are appended without branching: four lane numbers are stored, as many
    // as the mask has bits are kept (`overlapping` has room for three more).
    int* const out = overlapping.data();
    int found = 0;
    for (int g = 0; g < slots / kGroup; g += 4)
      for (unsigned groups = Overlap4(glo, ghi, g, blo, bhi); groups != 0; groups &= groups - 1) {
        const int first = (g + __builtin_ctz(groups)) * kGroup;
        for (int base = first; base < first + kGroup; base += 4) {
          const unsigned mask = Overlap4(lo, hi, base, blo, bhi);
          const __m128i lanes =
              _mm_loadu_si128(reinterpret_cast<const __m128i*>(kLaneTable.lanes[mask]));
          _mm_storeu_si128(reinterpret_cast<__m128i*>(out + found),
                           _mm_add_epi32(_mm_set1_epi32(base), lanes));
          found += kLaneTable.count[mask];
        }
      }
    return found;
  }
#endif

  // Cutting the corner at v sweeps the triangle (a, v, b).
  int CornerBlocker(int v) {
    int a = prev[v], b = next[v];
    // The segment that took the place of the last blocker: the blocker itself when it changed,
    // the one before it when its start was erased.
    int likely = lastBlocker[v];
    if (likely >= 0 && !alive[likely])
      likely = prev[likely];
    if (likely < 0 || !alive[likely])
      likely = recentBlocker; // a corner never blocked: its neighbour's blocker is near
    return FindBlocker({{pts[a], pts[v], pts[b]}, {a, v, b}, a, v},
                       likely >= 0 && alive[likely] ? likely : -1);
  }

  // The segment starting at s has changed: it gets a new version and its blocked corners
  // are tested again.
  void Renew(int s) {
    ++version[s];
    for (int w : blockedBy[s])
      Enqueue(w);
    blockedBy[s].clear();
    Insert(s);
  }

  void Erase(int v) {
    int a = prev[v], b = next[v];
    if (openEnd >= 0)
      cutOff.push_back({a, v, b});
    next[a] = b;
    prev[b] = a;
    alive[v] = 0;
    ++version[v]; // its segment is gone
    if (search == Search::kBoxes)
      ClearSlotBox(slotOf[v]);
    --count;
    for (int w : blockedBy[v])
      Enqueue(w);
    blockedBy[v].clear();
    Renew(a);
    Enqueue(a);
    Enqueue(b);
  }

  // Cuts empty corners until every remaining corner is blocked (or three vertices are left).
  // A blocked corner is tried again only when its blocker or its own triangle has changed;
  // every other corner stays blocked. The waiting corner first in chain order goes first, so
  // each cut is of the first empty corner in chain order: the plain loop's cut, whichever
  // blocker each corner happened to record.
  void Run() {
    for (int v = 0; v < static_cast<int>(pts.size()); ++v)
      Enqueue(v);
    BuildGrid();
    for (int v; count > 3 && (v = Dequeue()) >= 0;)
      if (alive[v])
        Settle(v);
  }

  // Erases corner v when nothing blocks it (rebuilding the grid once the chain has shrunk to a
  // quarter), else files it under the segment that blocks it.
  void Settle(int v) {
    int blocker = CornerBlocker(v);
    if (blocker < 0) {
      Erase(v);
      if ((search == Search::kGrid && 4 * count < gridBuiltAt) ||
          (search == Search::kBoxes && gridBuiltAt > 4 * kGroup && 3 * count < 2 * gridBuiltAt))
        BuildGrid();
    } else {
      blockedBy[blocker].push_back(v);
      lastBlocker[v] = blocker;
      recentBlocker = blocker;
    }
  }

  // The open chain's cutting in phases: a corner with an edge longer than `span` waits for a
  // later phase with twice the span, so that small corners go first and the corners a closing
  // path may meet (the larger ones) come late.
  void RunOpen() {
    double span = 0.0;
    for (size_t i = 0; i + 1 < pts.size(); ++i)
      span = std::max(span, 2.0 * Norm(pts[i + 1] - pts[i]));
    for (int v = 0; v < static_cast<int>(pts.size()); ++v)
      Enqueue(v);
    BuildGrid();
    std::vector<int> waiting;
    while (count > 3) {
      const int v = Dequeue();
      if (v < 0) {
        if (waiting.empty())
          break;
        span *= 2.0;
        for (int w : waiting)
          Enqueue(w);
        waiting.clear();
        continue;
      }
      if (!alive[v])
        continue;
      const Vec3 a = pts[prev[v]], p = pts[v], b = pts[next[v]];
      if (std::max({Dot(p - a, p - a), Dot(b - p, b - p), Dot(b - a, b - a)}) > span * span) {
        waiting.push_back(v);
        continue;
      }
      Settle(v);
    }
  }

  // Keeps the surviving atoms of `chain` in place.
  void Result(std::vector<ChainAtom>& chain) const {
    size_t kept = 0;
    for (size_t i = 0; i < chain.size(); ++i)
      if (alive[i])
        chain[kept++] = AtomAt(pts[i], chain[i].id);
    chain.resize(kept);
  }
};

// Corner cutting alone; the surviving vertices keep their coordinates and ids.
void CutCorners(std::vector<ChainAtom>& chain) {
  // A vertex repeating its predecessor adds nothing to the curve but would block the corners
  // around it (its zero-length segments touch them): drop such vertices first, unless fewer
  // than three distinct points would be left.
  auto same = [](const ChainAtom& a, const ChainAtom& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
  };
  std::vector<ChainAtom> distinct = chain;
  distinct.erase(std::unique(distinct.begin(), distinct.end(), same), distinct.end());
  while (distinct.size() > 1 && same(distinct.front(), distinct.back()))
    distinct.pop_back();
  if (distinct.size() >= 3)
    chain.swap(distinct);
  if (chain.size() < 4)
    return;
  // Reached through a pointer: a method bound to the thread-local object itself would look its
  // address up again at every member access.
  thread_local std::unique_ptr<Reducer> workspace;
  if (!workspace)
    workspace = std::make_unique<Reducer>();
  Reducer& r = *workspace;
  r.Reset(chain);
  r.Run();
  r.Result(chain);
}

// The chains whose fewest crossings were counted in this run of the shortcut rounds. A count
// capped at `below` gives r = min(below, true minimum); asked again with a cap at or under the
// old one the answer is min(cap, r) without counting: the same chain often comes back from
// several planes' shortcuts.
class CrossingMemo {
public:
  void Clear() { entries_.clear(); }

  // `pairs`, when given, holds the pairs of the chain the one counted was made from.
  int Fewest(const std::vector<ChainAtom>& chain, int below, const std::array<int, 30>& order,
             tresk::DiagramPairs* pairs = nullptr) {
    for (const Entry& e : entries_)
      if (tresk::SamePoints(e.chain, chain) && (e.result < e.below || below <= e.below))
        return std::min(below, e.result);
    int result =
        pairs ? pairs->Fewest(chain, below, order) : tresk::FewestCrossings(chain, below, &order);
    entries_.push_back({chain, below, result});
    return result;
  }

private:
  struct Entry {
    std::vector<ChainAtom> chain;
    int below, result;
  };
  std::vector<Entry> entries_;
};

// Over/under-pass shortcuts, each followed by corner cutting, tried in every projection plane
// (the four best planes for larger chains); the variant with the fewest crossings in its best
// plane is kept, round after round, while that number still falls.
void ShortcutPasses(std::vector<ChainAtom>& chain) {
  std::vector<ChainAtom> best, trial, cut;
  CrossingMemo memo;
  // Every pair of segments of the round's chain in every plane: the trials keep most of them.
  tresk::DiagramPairs pairs;
  std::array<int, 30> identity;
  std::iota(identity.begin(), identity.end(), 0);
  // The first round's pairs also give the starting chain's own fewest crossings (every pair is
  // known: no diagram is counted again).
  const bool pairedAtStart = static_cast<int>(chain.size()) <= kAllPlanesSize && pairs.Build(chain);
  int current = memo.Fewest(chain, INT_MAX, identity, pairedAtStart ? &pairs : nullptr);
  for (int round = 0; round < kMaxShortcutRounds && current > 0; ++round) {
    int m = static_cast<int>(chain.size());
    int planes = m <= kAllPlanesSize ? 30 : 4;
    const bool paired = planes == 30 && ((round == 0 && pairedAtStart) || pairs.Build(chain));
    std::array<int, 30> rank = paired ? pairs.Rank() : RankPlanesTop(chain, planes);
    tresk::DiagramPairs* known = paired ? &pairs : nullptr;
    bool minimal = false;
    // A best diagram that is reduced and alternating has the knot's least crossing number:
    // no shortcut can win a round any more.
    if (tresk::MinimalDiagram(chain, ProjectionFrames()[rank[0]], current))
      return;
    best.clear();
    int bestCrossings = current;
    for (int k = 0; k < planes; ++k) {
      trial = chain;
      int moves = 0;
      while (moves < 4 * m && ShortcutBestPass(trial, ProjectionFrames()[rank[k]]))
        ++moves;
      if (moves == 0)
        continue;
      cut = trial;
      CutCorners(cut);
      // The planes are counted starting with the one the shortcuts were made in, then in the
      // chain's ranking.
      std::array<int, 30> order = rank;
      std::rotate(order.begin(), order.begin() + k, order.begin() + k + 1);
      // The cut variant wins ties; either must beat the best so far. Counts at or above what
      // they must beat are not needed exactly. When corner cutting removed nothing the two
      // variants are the same chain and the cut one is the one kept.
      int cutCrossings = memo.Fewest(cut, bestCrossings, order, known);
      int bar = std::min(cutCrossings, bestCrossings);
      int crossings = cut.size() == trial.size() ? bar : memo.Fewest(trial, bar, order, known);
      bool improved = true;
      if (crossings < bar) {
        bestCrossings = crossings;
        best.swap(trial);
      } else if (cutCrossings < bestCrossings) {
        bestCrossings = cutCrossings;
        best.swap(cut);
      } else {
        improved = false;
      }
      // The new best's diagram in the plane of its shortcuts, when reduced and alternating,
      // cannot be beaten by the planes left nor by another round.
      if (improved && tresk::MinimalDiagram(best, ProjectionFrames()[rank[k]], bestCrossings)) {
        minimal = true;
        break;
      }
    }
    if (best.empty())
      return;
    chain.swap(best);
    current = bestCrossings;
    if (minimal)
      return;
  }
}

} // namespace

// flag = true: corner cutting, then over/under-pass shortcuts that lower the number of crossings
// of the best diagram (new vertices with id 0 may appear). flag = false: corner cutting only,
// the result is a subset of the input atoms.
int ChainReduce(std::vector<ChainAtom>& chain, bool flag) {
  if (chain.size() < 4)
    return static_cast<int>(chain.size());
  size_t original = chain.size();
  CutCorners(chain);
  if (flag && chain.size() > 3 && chain.size() <= kMaxShortcutSize) {
    std::vector<ChainAtom> shortened = chain;
    ShortcutPasses(shortened);
    if (shortened.size() <= original)
      chain.swap(shortened);
  }
  return static_cast<int>(chain.size());
}

namespace tresk {

OpenChainCut::OpenChainCut(const std::vector<ChainAtom>& chain) : size_(chain.size()) {
  // Repeated points would be dropped by the closed chain's cutting first; such chains, and
  // very short ones, are left to it.
  if (chain.size() < 6)
    return;
  auto same = [](const ChainAtom& a, const ChainAtom& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
  };
  for (size_t i = 0; i + 1 < chain.size(); ++i)
    if (same(chain[i], chain[i + 1]))
      return;
  if (same(chain.front(), chain.back()))
    return;
  Reducer r;
  r.Reset(chain);
  r.openEnd = static_cast<int>(chain.size()) - 1;
  r.RunOpen();
  for (const std::array<int, 3>& c : r.cutOff) {
    Swept t;
    t.vertex = c;
    t.p = {r.pts[c[0]], r.pts[c[1]], r.pts[c[2]]};
    Box box = BoxOf(t.p[0], t.p[1], t.p[2], 0.0);
    t.lo = box.lo;
    t.hi = box.hi;
    swept_.push_back(t);
  }
  scale_ = r.scale;
  usable_ = true;
}

// Whether the segment p-q meets the triangle cut off, with the corner cutting's rules: a segment
// sharing a vertex with it is judged by angle, one spanning two of its vertices always meets it.
// `atP` and `atQ` are the chain positions of the ends (-1 for a point of the closing path).
bool OpenChainCut::Meets(const Swept& t, Vec3 p, Vec3 q, int atP, int atQ, double tol) {
  if (!Overlap(BoxOf(p, q), {{t.lo.x - tol, t.lo.y - tol, t.lo.z - tol},
                             {t.hi.x + tol, t.hi.y + tol, t.hi.z + tol}}))
    return false;
  int sharedP = -1, sharedQ = -1;
  for (int m = 0; m < 3; ++m) {
    if (atP >= 0 && t.vertex[m] == atP)
      sharedP = m;
    if (atQ >= 0 && t.vertex[m] == atQ)
      sharedQ = m;
  }
  if (sharedP >= 0 && sharedQ >= 0)
    return true;
  if (sharedP >= 0 || sharedQ >= 0) {
    const int m = sharedP >= 0 ? sharedP : sharedQ;
    return SharedVertexSegmentEnters(t.p[m], sharedP >= 0 ? q : p, t.p[(m + 1) % 3],
                                     t.p[(m + 2) % 3], kAngleTolerance);
  }
  return SegmentNearTriangle(p, q, t.p[0], t.p[1], t.p[2], tol);
}

bool OpenChainCut::Apply(std::vector<ChainAtom>& closed) const {
  if (!usable_ || closed.size() <= size_)
    return false;
  double scale = scale_;
  for (size_t i = size_; i < closed.size(); ++i)
    scale =
        std::max({scale, std::fabs(closed[i].x), std::fabs(closed[i].y), std::fabs(closed[i].z)});
  const double tol = kRelativeTolerance * std::max(scale, 1e-300);
  const int n = static_cast<int>(size_);
  // The closing path from the last atom through the appended points to the first atom, with
  // the chain position of each point that is an atom (-1 for the others).
  std::vector<Vec3> path;
  std::vector<int> at;
  path.push_back(PositionOf(closed[n - 1]));
  at.push_back(n - 1);
  for (size_t i = size_; i < closed.size(); ++i) {
    path.push_back(PositionOf(closed[i]));
    at.push_back(-1);
  }
  path.push_back(PositionOf(closed[0]));
  at.push_back(0);
  // The path's segment boxes: most triangles are told apart from a segment by them (the first
  // test of Meets).
  std::vector<Box> pathBox;
  for (size_t k = 0; k + 1 < path.size(); ++k)
    pathBox.push_back(BoxOf(path[k], path[k + 1]));
  // The cuts are replayed in order. A cut is made when its corner is still the same (the same
  // neighbours) and its triangle meets neither the closing path nor a segment at a vertex whose
  // cut was passed over: every other segment is one the open chain had when the cut was made,
  // and the triangle met none of those.
  std::vector<int> prev(n), next(n);
  for (int i = 0; i < n; ++i) {
    prev[i] = i - 1;
    next[i] = i + 1;
  }
  std::vector<int> passed;
  int made = 0;
  std::vector<char> erased(n, 0);
  for (const Swept& t : swept_) {
    const int a = t.vertex[0], v = t.vertex[1], b = t.vertex[2];
    bool free = prev[v] == a && next[v] == b;
    const Box wide = {{t.lo.x - tol, t.lo.y - tol, t.lo.z - tol},
                      {t.hi.x + tol, t.hi.y + tol, t.hi.z + tol}};
    for (size_t k = 0; free && k + 1 < path.size(); ++k)
      free = !Overlap(pathBox[k], wide) || !Meets(t, path[k], path[k + 1], at[k], at[k + 1], tol);
    for (size_t w = 0; free && w < passed.size(); ++w) {
      const int x = passed[w];
      free = !Meets(t, PositionOf(closed[prev[x]]), PositionOf(closed[x]), prev[x], x, tol) &&
             !Meets(t, PositionOf(closed[x]), PositionOf(closed[next[x]]), x, next[x], tol);
    }
    if (!free) {
      passed.push_back(v);
      continue;
    }
    next[a] = b;
    prev[b] = a;
    erased[v] = 1;
    ++made;
  }
  if (made == 0)
    return false;
  std::vector<ChainAtom> out;
  out.reserve(closed.size() - made);
  for (int i = 0; i < n; ++i)
    if (!erased[i])
      out.push_back(closed[i]);
  out.insert(out.end(), closed.begin() + static_cast<long>(size_), closed.end());
  closed.swap(out);
  return true;
}

} // namespace tresk
