// Fast host reduction of one closed chain with the same removals as the plain reduction.
//
// The plain reduction removes the middle point of the first corner (in chain order) that no
// tested segment blocks, then starts again from the beginning. Here the chain is a cyclic
// linked list over the original positions (point 0 is never removed, and removal keeps the
// order, so "chain order" is the order of original positions), and each corner m (triangle
// prev(m), m, next(m)) remembers one segment that blocked it. That memory stays true as long as
// the segment still exists, the corner still has the same neighbours and the segment is still
// one that the corner is tested against; all three are checked before the memory is trusted,
// otherwise the corner is tested again against every segment it is tested against.
//
// After removing x (neighbours a, b) the only corners before x whose memory can fail are a
// itself and the corners blocked by the two vanished segments (a, x) and (x, b): the corner
// lists per segment start find those, and the next search starts at the first of them. All
// corners before that point are still blocked, exactly as a restart of the plain scan would
// find them.
//
// A corner that must be tested again is tested against four segments at a time with the same
// IEEE operations as the scalar test, so every answer is the scalar one (the compiler may not
// contract them into fused multiply-adds: -ffp-contract=off).
#include "reduction/fastReduce.hpp"

#include <algorithm>

#include "reduction/reduceOne.hpp" // for SegmentTriangleTest

namespace {

// Test results that block a corner: a miss does not, a hit or a contact does.
constexpr bool kBlocks[3] = {false, true, true};

// The working state of one reduction: the points and the scratch arrays of ReduceScratch.
struct Cycle {
  fPointR3* points;
  int n;
  int* prev;
  int* next;
  char* alive;
  int* witStart;
  int* witEnd;
  int* cornerPrev;
  int* cornerNext;
  int* lastStart;
  int* head;
  int* linkNext;
  int* linkPrev;
};

template <class T> T* Fit(std::vector<T>& v, int n) {
  if (v.size() < static_cast<size_t>(n))
    v.resize(static_cast<size_t>(n));
  return v.data();
}

// Whether corner m is tested against the segment (s, next(s)): every segment that touches the
// corner's points is left out, except that the last corner (whose third point is point 0) is
// still tested against the segment starting at point 0.
bool Tested(const Cycle& c, int m, int s) {
  const int p = c.prev[m];
  if (s == m || s == p || s == c.prev[p])
    return false;
  return c.next[m] == 0 || s != c.next[m];
}

bool StillBlocked(const Cycle& c, int m) {
  const int s = c.witStart[m];
  return s >= 0 && c.alive[s] && c.next[s] == c.witEnd[m] && c.prev[m] == c.cornerPrev[m] &&
         c.next[m] == c.cornerNext[m] && Tested(c, m, s);
}

bool Blocks(const Cycle& c, const fPointR3* triangle, int s) {
  const fPointR3 segment[2] = {c.points[s], c.points[c.next[s]]};
  return kBlocks[SegmentTriangleTest(triangle, segment)];
}

// Four segments tested at once: the same IEEE operations in the same order as
// SegmentTriangleTest, lane by lane, so every lane gets exactly the scalar answer.
constexpr int kLanes = 4;
typedef float Lanes __attribute__((vector_size(16)));
typedef int LaneMask __attribute__((vector_size(16)));
struct LanePoint {
  Lanes x, y, z;
};

Lanes Splat(float f) {
  return Lanes{f, f, f, f};
}

LanePoint Broadcast(const fPointR3& p) {
  return LanePoint{Splat(p.x), Splat(p.y), Splat(p.z)};
}

LanePoint Sub(const LanePoint& p, const LanePoint& q) {
  return LanePoint{p.x - q.x, p.y - q.y, p.z - q.z};
}

// Bit k is set when SegmentTriangleTest(triangle, segment p[k] q[k]) is not 0.
int BlockingLanes(const fPointR3* triangle, const LanePoint& p, const LanePoint& q) {
  const Lanes E = Splat(1e-5f), L = Splat(0.99999f), M = Splat(-1e-5f), H = Splat(1.00001f);
  const LanePoint d = Sub(p, q);
  const LanePoint e1 = Broadcast(ReduceSub(triangle[1], triangle[0]));
  const LanePoint e2 = Broadcast(ReduceSub(triangle[2], triangle[0]));
  const LanePoint w = Sub(p, Broadcast(triangle[0]));
  const Lanes D = ReduceDet3(d, e1, e2);
  // Lanes with D = 0 divide by zero here; their answer is 1 whatever s, u, v become.
  const Lanes s = ReduceDet3(w, e1, e2) / D;
  const LaneMask degenerate = D == Splat(0.0f);
  const LaneMask inS = (M < s) & (s < H);
  const LaneMask candidates = degenerate | inS;
  if (!(candidates[0] | candidates[1] | candidates[2] | candidates[3]))
    return 0;
  const Lanes u = ReduceDet3(d, w, e2) / D;
  const Lanes v = ReduceDet3(d, e1, w) / D;
  const Lanes uv = u + v;
  const LaneMask clear =
      (E <= s) & (s <= L) & (E <= u) & (u <= L) & (E <= v) & (v <= L) & (uv <= L);
  const LaneMask nearAC = (M < u) & (u < E) & (M < v) & (v < H);
  const LaneMask nearAB = (M < v) & (v < E) & (M < u) & (u < H);
  const LaneMask nearBC = (L < uv) & (uv < H) & (M < u) & (u < H) & (M < v) & (v < H);
  const LaneMask endInside = ((M < s) & (s < E)) | ((L < s) & (s < H));
  const LaneMask contact = (inS & (nearAC | nearAB | nearBC)) | (endInside & (uv < H));
  const LaneMask blocks = degenerate | (inS & (u > M) & (v > M) & (clear | contact));
  int bits = 0;
  for (int k = 0; k < kLanes; ++k)
    bits |= blocks[k] ? 1 << k : 0;
  return bits;
}

void Unlink(Cycle& c, int m) {
  const int s = c.witStart[m];
  if (s < 0)
    return;
  if (c.linkPrev[m] >= 0) {
    c.linkNext[c.linkPrev[m]] = c.linkNext[m];
  } else {
    c.head[s] = c.linkNext[m];
  }
  if (c.linkNext[m] >= 0)
    c.linkPrev[c.linkNext[m]] = c.linkPrev[m];
  c.witStart[m] = -1;
}

bool Remember(Cycle& c, int m, int s) {
  Unlink(c, m);
  c.witStart[m] = s;
  c.witEnd[m] = c.next[s];
  c.cornerPrev[m] = c.prev[m];
  c.cornerNext[m] = c.next[m];
  c.lastStart[m] = s;
  c.linkPrev[m] = -1;
  c.linkNext[m] = c.head[s];
  if (c.head[s] >= 0)
    c.linkPrev[c.head[s]] = m;
  c.head[s] = m;
  return true;
}

// Tests corner m afresh; remembers a blocker and returns true, or returns false when the corner
// is free. The segment that replaced the last blocker is tried first: it lies where the old one
// did and is the likeliest to block again.
bool FindBlocker(Cycle& c, int m) {
  const fPointR3 triangle[3] = {c.points[c.prev[m]], c.points[m], c.points[c.next[m]]};
  int hint = c.lastStart[m];
  if (hint >= 0) {
    while (!c.alive[hint])
      hint = c.prev[hint]; // positions only fall, and point 0 stays
    if (Tested(c, m, hint) && Blocks(c, triangle, hint))
      return Remember(c, m, hint);
  }
  // The rest four segments at a time, in chain order.
  int starts[kLanes];
  LanePoint p, q;
  int filled = 0;
  int s = 0;
  do {
    if (s != hint && Tested(c, m, s)) {
      const fPointR3& a = c.points[s];
      const fPointR3& b = c.points[c.next[s]];
      p.x[filled] = a.x, p.y[filled] = a.y, p.z[filled] = a.z;
      q.x[filled] = b.x, q.y[filled] = b.y, q.z[filled] = b.z;
      starts[filled++] = s;
    }
    s = c.next[s];
    if (filled == kLanes || (s == 0 && filled > 0)) {
      for (int k = filled; k < kLanes; ++k) { // unused lanes repeat the first segment
        p.x[k] = p.x[0], p.y[k] = p.y[0], p.z[k] = p.z[0];
        q.x[k] = q.x[0], q.y[k] = q.y[0], q.z[k] = q.z[0];
      }
      const int bits = BlockingLanes(triangle, p, q);
      if (bits != 0)
        return Remember(c, m, starts[__builtin_ctz(static_cast<unsigned>(bits))]);
      filled = 0;
    }
  } while (s != 0);
  return false;
}

// Forgets every corner blocked by the segment starting at s; returns the first of them.
int Forget(Cycle& c, int s) {
  int first = c.n;
  for (int m = c.head[s]; m >= 0; m = c.linkNext[m]) {
    first = std::min(first, m);
    c.witStart[m] = -1;
  }
  c.head[s] = -1;
  return first;
}

// Removes point x and returns the corner where the search for the next free corner starts.
int Remove(Cycle& c, int x) {
  const int a = c.prev[x];
  const int b = c.next[x];
  Unlink(c, x);
  int cursor = a != 0 ? a : b; // corner a changed; point 0 heads no corner
  cursor = std::min(cursor, Forget(c, a));
  cursor = std::min(cursor, Forget(c, x));
  c.next[a] = b;
  c.prev[b] = a;
  c.alive[x] = 0;
  return cursor;
}

} // namespace

int BlockingSegments4(const fPointR3* triangle, const fPointR3* segments) {
  LanePoint p, q;
  for (int k = 0; k < kLanes; ++k) {
    p.x[k] = segments[2 * k].x, p.y[k] = segments[2 * k].y, p.z[k] = segments[2 * k].z;
    q.x[k] = segments[2 * k + 1].x, q.y[k] = segments[2 * k + 1].y, q.z[k] = segments[2 * k + 1].z;
  }
  return BlockingLanes(triangle, p, q);
}

int ChainReduceFast(fPointR3* points, int n, ReduceScratch& scratch) {
  if (n < 4)
    return n;
  Cycle c{points,
          n,
          Fit(scratch.prev, n),
          Fit(scratch.next, n),
          Fit(scratch.alive, n),
          Fit(scratch.witStart, n),
          Fit(scratch.witEnd, n),
          Fit(scratch.cornerPrev, n),
          Fit(scratch.cornerNext, n),
          Fit(scratch.lastStart, n),
          Fit(scratch.blockedHead, n),
          Fit(scratch.blockedNext, n),
          Fit(scratch.blockedPrev, n)};
  for (int i = 0; i < n; ++i) {
    c.prev[i] = i == 0 ? n - 1 : i - 1;
    c.next[i] = i == n - 1 ? 0 : i + 1;
    c.alive[i] = 1;
    c.witStart[i] = -1;
    c.lastStart[i] = -1;
    c.head[i] = -1;
  }
  int count = n;
  int cursor = c.next[0];
  while (count >= 4) {
    int m = cursor;
    while (m != 0 && (StillBlocked(c, m) || FindBlocker(c, m)))
      m = c.next[m];
    if (m == 0)
      break; // every corner up to the last point is blocked
    cursor = Remove(c, m);
    --count;
  }
  int k = 0;
  int v = 0;
  do { // compact towards the front; v >= k, so nothing is overwritten before it is read
    points[k++] = points[v];
    v = c.next[v];
  } while (v != 0);
  return count;
}

int ChainReduceFast(std::vector<fPointR3>& chain) {
  ReduceScratch scratch;
  const int n = ChainReduceFast(chain.data(), static_cast<int>(chain.size()), scratch);
  if (n >= 0)
    chain.resize(static_cast<size_t>(n));
  return n;
}
