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
// A corner that must be tested again first skips every segment whose ends lie clearly on one
// side of the corner's plane (a conservative rounding-error bound proves that the test would
// answer 0 for it; see MissesBySide). The rest are tested four at a time with the same
// IEEE operations as the scalar test, so every answer is the scalar one (the compiler may not
// contract them into fused multiply-adds: -ffp-contract=off).
#include "reduction/fastReduce.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

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
  bool sideTest; // every coordinate finite and within kSideRange: the side proof is sound
  // The points still present in chain order (order[k] is the original position, coordinates
  // in xs, ys, zs), then point 0 again and padding.
  int size;
  int* order;
  float* xs;
  float* ys;
  float* zs;
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

// A cheap proof that a segment misses a corner's triangle, so that most segments skip the full
// test. With n = e1 x e2 (the test's own float e1, e2, taken as exact), the test's determinants
// are D = n.(P - Q) = hP - hQ and N = n.(P - A) = hP, where hX = n.(X - A), and s = N / D.
// When P and Q lie on the same side of the plane, s is < 0 (|hP| < |hQ|) or > 1 (|hP| > |hQ|).
// Error bounds (u = 2^-24, k_i = |e1_j e2_k| + |e1_k e2_j|, gX = k.|X - A|):
//  - the test rounds P - Q and P - A once and each term of a determinant's fixed expansion at
//    most five times, so |D_float - D| <= 6.01u k.|P - Q| <= 6.01u (gP + gQ) and
//    |N_float - N| <= 6.01u gP;
//  - hX and gX are evaluated here in float (n_i, k_i with two roundings, X - A with one, the
//    dot products with three), so the computed hX is within 6.1u gX of the exact one and the
//    computed gX is at least (1 - 7u) times the exact one;
//  - coordinates within kSideRange keep every product below 5e37 (no overflow), and float
//    underflow adds less than 1e-31 to any of these errors.
// The check below uses eD = 64u (gP + gQ) + 1e-30 >= eN = 64u gP + 1e-30, far above the sum
// of all of these and of its own roundings (a few u relative). With a = |hP|, b = |hQ| it asks
// for the same strict sign, |a - b| > eD and min(a, b) >= eN + eD + 1e-4 (|a - b| + eD); then
// for the exact quantities
//  - D_float is not 0 (no degenerate answer) and has the sign of D;
//  - a > b: N_float / D_float >= (a - eN) / (a - b + eD) > 1.00009, so s_float > 1.00001f;
//  - a < b: N_float / D_float <= -(a - eN) / (b - a + eD) < -0.9e-4, so s_float < -1e-5f;
// the division rounds by at most a factor 1 +- u (an overflow to infinity keeps the sign), so
// the test leaves with 0 at its band check on s. NaN fails every comparison: no skip.
constexpr float kSideRange = 1e12f;
constexpr float kSideRel = 64.0f / 16777216.0f;
constexpr float kSideAbs = 1e-30f;

bool InSideRange(const fPointR3* points, int n) {
  for (int i = 0; i < n; ++i) {
    const fPointR3& p = points[i];
    if (!(std::fabs(p.x) <= kSideRange && std::fabs(p.y) <= kSideRange &&
          std::fabs(p.z) <= kSideRange))
      return false;
  }
  return true;
}

// The plane data of one triangle, in every lane.
struct Plane {
  LanePoint a; // the corner's first point A
  LanePoint n; // e1 x e2
  LanePoint k; // |e1_j e2_k| + |e1_k e2_j|
};

Plane PlaneOf(const fPointR3* triangle) {
  const fPointR3 e1 = ReduceSub(triangle[1], triangle[0]);
  const fPointR3 e2 = ReduceSub(triangle[2], triangle[0]);
  const float yz = e1.y * e2.z, zy = e1.z * e2.y;
  const float zx = e1.z * e2.x, xz = e1.x * e2.z;
  const float xy = e1.x * e2.y, yx = e1.y * e2.x;
  return Plane{Broadcast(triangle[0]), Broadcast(fPointR3{yz - zy, zx - xz, xy - yx}),
               Broadcast(fPointR3{std::fabs(yz) + std::fabs(zy), std::fabs(zx) + std::fabs(xz),
                                  std::fabs(xy) + std::fabs(yx)})};
}

Lanes Abs(Lanes f) {
  return reinterpret_cast<Lanes>(reinterpret_cast<LaneMask>(f) & 0x7fffffff);
}

Lanes Load(const float* f) {
  Lanes out;
  std::memcpy(&out, f, sizeof out);
  return out;
}

// hX and gX of the four compact points from position k on.
void SidesOf(const Cycle& c, const Plane& f, int k, Lanes& h, Lanes& g) {
  const Lanes wx = Load(c.xs + k) - f.a.x, wy = Load(c.ys + k) - f.a.y, wz = Load(c.zs + k) - f.a.z;
  h = f.n.x * wx + f.n.y * wy + f.n.z * wz;
  g = f.k.x * Abs(wx) + f.k.y * Abs(wy) + f.k.z * Abs(wz);
}

// Lanes whose segment (P, Q) is proved to miss, given hP, gP and hQ, gQ.
LaneMask MissesBySide(Lanes hp, Lanes gp, Lanes hq, Lanes gq) {
  const Lanes zero = Splat(0.0f);
  const LaneMask sameSide = ((hp > zero) & (hq > zero)) | ((hp < zero) & (hq < zero));
  const Lanes a = Abs(hp), b = Abs(hq);
  const Lanes eN = Splat(kSideRel) * gp + Splat(kSideAbs);
  const Lanes eD = Splat(kSideRel) * (gp + gq) + Splat(kSideAbs);
  const Lanes gap = Abs(a - b);
  const Lanes least = a < b ? a : b;
  return sameSide & (gap > eD) & (least >= eN + eD + Splat(1e-4f) * (gap + eD));
}

// Fills the compact arrays for the whole chain: point k at position k, then 2 kLanes copies of
// point 0 (the closing segment's end, then padding for the four-lane reads past the end).
void Compact(Cycle& c) {
  for (int i = 0; i < c.n + 2 * kLanes; ++i) {
    const int v = i < c.n ? i : 0;
    c.order[i] = v;
    c.xs[i] = c.points[v].x, c.ys[i] = c.points[v].y, c.zs[i] = c.points[v].z;
  }
  c.size = c.n;
}

// Takes point x out of the compact arrays; they hold positions in increasing order.
void Uncompact(Cycle& c, int x) {
  const int k = static_cast<int>(std::lower_bound(c.order, c.order + c.size, x) - c.order);
  const size_t tail = static_cast<size_t>(c.size + 2 * kLanes - 1 - k);
  std::memmove(c.order + k, c.order + k + 1, tail * sizeof(int));
  std::memmove(c.xs + k, c.xs + k + 1, tail * sizeof(float));
  std::memmove(c.ys + k, c.ys + k + 1, tail * sizeof(float));
  std::memmove(c.zs + k, c.zs + k + 1, tail * sizeof(float));
  --c.size;
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
  // The rest four segments at a time, in chain order, except those proved to miss (they
  // would not block, so the first blocker found is the same). Compact segment j runs from
  // compact point j to j + 1; the side data of four points at a time is shifted by one lane
  // to give the segments' second points.
  int starts[kLanes];
  LanePoint p, q;
  int filled = 0;
  auto flush = [&]() {
    for (int k = filled; k < kLanes; ++k) { // unused lanes repeat the first segment
      p.x[k] = p.x[0], p.y[k] = p.y[0], p.z[k] = p.z[0];
      q.x[k] = q.x[0], q.y[k] = q.y[0], q.z[k] = q.z[0];
    }
    const int bits = BlockingLanes(triangle, p, q);
    filled = 0;
    return bits != 0 ? starts[__builtin_ctz(static_cast<unsigned>(bits))] : -1;
  };
  const Plane plane = PlaneOf(triangle);
  const LaneMask shift = {1, 2, 3, 4};
  Lanes h0, g0, h1, g1;
  SidesOf(c, plane, 0, h0, g0);
  for (int base = 0; base < c.size; base += kLanes) {
    SidesOf(c, plane, base + kLanes, h1, g1);
    const LaneMask missed =
        MissesBySide(h0, g0, __builtin_shuffle(h0, h1, shift), __builtin_shuffle(g0, g1, shift));
    unsigned open = 0;
    for (int k = 0; k < kLanes; ++k)
      open |= missed[k] ? 0u : 1u << k;
    if (!c.sideTest)
      open = 0xf;
    if (c.size - base < kLanes)
      open &= (1u << (c.size - base)) - 1;
    for (; open != 0; open &= open - 1) {
      const int s = c.order[base + __builtin_ctz(open)];
      if (s == hint || !Tested(c, m, s))
        continue;
      const fPointR3& a = c.points[s];
      const fPointR3& b = c.points[c.next[s]];
      p.x[filled] = a.x, p.y[filled] = a.y, p.z[filled] = a.z;
      q.x[filled] = b.x, q.y[filled] = b.y, q.z[filled] = b.z;
      starts[filled++] = s;
      if (filled == kLanes) {
        const int blocker = flush();
        if (blocker >= 0)
          return Remember(c, m, blocker);
      }
    }
    h0 = h1, g0 = g1;
  }
  if (filled > 0) {
    const int blocker = flush();
    if (blocker >= 0)
      return Remember(c, m, blocker);
  }
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
  Uncompact(c, x);
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
          Fit(scratch.blockedPrev, n),
          InSideRange(points, n),
          n,
          Fit(scratch.order, n + 2 * kLanes),
          Fit(scratch.xs, n + 2 * kLanes),
          Fit(scratch.ys, n + 2 * kLanes),
          Fit(scratch.zs, n + 2 * kLanes)};
  for (int i = 0; i < n; ++i) {
    c.prev[i] = i == 0 ? n - 1 : i - 1;
    c.next[i] = i == n - 1 ? 0 : i + 1;
    c.alive[i] = 1;
    c.witStart[i] = -1;
    c.lastStart[i] = -1;
    c.head[i] = -1;
  }
  Compact(c);
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
