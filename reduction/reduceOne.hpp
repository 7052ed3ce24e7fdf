// The single-precision reduction of one closed chain by empty corners: the segment-triangle test
// and the reduction built on it, written once for the host batch and the GPU kernel (TRESK_HD)
// so that both run the same code. Compile without floating-point contraction on both sides.
#pragma once

#include <math.h>   // for fabsf (host and device)
#include <string.h> // for memmove (host)

#if defined(__SSE2__) && !defined(__CUDA_ARCH__)
#include <emmintrin.h> // the host scans four segments at a time
#define TRESK_REDUCE_SSE 1
#include "preprocessing/simd.hpp" // for tresk::SimdLimit
#if defined(__GNUC__) && defined(__x86_64__)
#include <immintrin.h> // and eight at a time where the CPU has AVX2 (chosen at run time)
#define TRESK_REDUCE_AVX2 1
#endif
#endif

#include "core/points.hpp" // for fPointR3

#if defined(__CUDACC__)
#define TRESK_HD __host__ __device__
#else
#define TRESK_HD
#endif

// The segment-triangle test is inlined into the reduction's scan (a call through the shared
// library's table costs as much as the test's early exits save).
#if defined(__CUDACC__)
#define TRESK_REDUCE_INLINE __forceinline__
#elif defined(__GNUC__)
#define TRESK_REDUCE_INLINE inline __attribute__((always_inline))
#else
#define TRESK_REDUCE_INLINE inline
#endif

namespace tresk {

// det[a b c] of the columns a, b, c, always expanded in this order and grouping so that the
// host and the device round identically.
TRESK_HD inline float ReduceDet3(const fPointR3& a, const fPointR3& b, const fPointR3& c) {
  return a.x * b.y * c.z + a.y * b.z * c.x + b.x * a.z * c.y -
         (c.x * b.y * a.z + c.y * b.z * a.x + b.x * c.z * a.y);
}

TRESK_HD inline fPointR3 ReduceSub(const fPointR3& p, const fPointR3& q) {
  return fPointR3{p.x - q.x, p.y - q.y, p.z - q.z};
}

// Segment PQ = segment[0..1] against triangle ABC = triangle[0..2]: 0 miss, 1 clear hit or
// degenerate system (D exactly 0), 2 contact within the tolerance bands. With d = P - Q,
// e1 = B - A, e2 = C - A, w = P - A it solves d*s + e1*u + e2*v = w by Cramer's rule: s runs
// from 0 at P to 1 at Q, (u, v) are the coordinates of the meeting point along e1 and e2.
// Every non-zero answer needs M < s < H, u > M and v > M, so the test leaves early when one
// of them fails (NaN included); the answer is the same as evaluating all conditions.
TRESK_HD TRESK_REDUCE_INLINE int SegmentTriangleTest(const fPointR3* triangle,
                                                     const fPointR3* segment) {
  // Tolerances, all single precision: a clear hit needs s, u, v and u + v within [E, L];
  // the contact bands run from M to H.
  const float E = 1e-5f, L = 0.99999f, M = -1e-5f, H = 1.00001f;
  const fPointR3 d = ReduceSub(segment[0], segment[1]);
  const fPointR3 e1 = ReduceSub(triangle[1], triangle[0]);
  const fPointR3 e2 = ReduceSub(triangle[2], triangle[0]);
  const fPointR3 w = ReduceSub(segment[0], triangle[0]);
  const float D = ReduceDet3(d, e1, e2);
  if (D == 0.0f)
    return 1; // parallel to the plane or a degenerate triangle: always blocks
  const float s = ReduceDet3(w, e1, e2) / D;
  if (!(M < s && s < H))
    return 0;
  const float u = ReduceDet3(d, w, e2) / D;
  if (!(u > M))
    return 0;
  const float v = ReduceDet3(d, e1, w) / D;
  if (!(v > M))
    return 0;
  const float uv = u + v;
  if (E <= s && s <= L && E <= u && u <= L && E <= v && v <= L && uv <= L)
    return 1;
  const bool nearAC = M < u && u < E && M < v && v < H;
  const bool nearAB = M < v && v < E && M < u && u < H;
  const bool nearBC = L < uv && uv < H && M < u && u < H && M < v && v < H;
  if (M < s && s < H && (nearAC || nearAB || nearBC))
    return 2;
  const bool endInside = (M < s && s < E) || (L < s && s < H);
  if (endInside && u > M && v > M && uv < H)
    return 2;
  return 0;
}

// Working memory of the reduction: per point kReduceIntsPerPoint ints and kReduceFloatsPerPoint
// floats. A batch lays both out parallel to its point buffer (the job starting at position b
// uses the entries from b times the count per point on), so one allocation serves every job.
// On the host each of the kReduceFloatsPerPoint coordinate arrays has kReduceHostPad more
// entries: a copy of point 0 after the last point (so the closing segment is an ordinary one)
// and room for the eight-wide scan to read past it; a chain of n points then takes
// kReduceFloatsPerPoint * (n + kReduceHostPad) floats.
constexpr int kReduceIntsPerPoint = 11;
constexpr int kReduceFloatsPerPoint = 3;
constexpr int kReduceHostPad = 17;
struct ReduceScratch {
  int* ints;
  float* floats;
};

TRESK_HD inline ReduceScratch ReduceScratchAt(ReduceScratch base, long long begin) {
  return ReduceScratch{base.ints + begin * kReduceIntsPerPoint,
                       base.floats + begin * kReduceFloatsPerPoint};
}

// The reduction removes the middle point of the first corner (in chain order) that no tested
// segment blocks, then looks again from the beginning; the result equals that plain scan's.
// Here the chain is a cyclic linked list over the original positions (point 0 is never
// removed, and removal keeps the order, so "chain order" is the order of original positions),
// and each corner m (triangle prev(m), m, next(m)) remembers one segment that blocked it. That
// memory stays true as long as the segment still exists, the corner still has the same
// neighbours and the segment is still one that the corner is tested against; all three are
// checked before the memory is trusted, otherwise the corner is tested again against every
// segment it is tested against.
//
// After removing x (neighbours a, b) the only corners before x whose memory can fail are a
// itself and the corners blocked by the two vanished segments (a, x) and (x, b): the corner
// lists per segment start find those, and the next search starts at the first of them. All
// corners before that point are still blocked, exactly as a restart of the plain scan would
// find them.
//
// A corner that must be tested again first skips every segment whose ends lie clearly on one
// side of the corner's plane: a conservative rounding-error bound proves that the test would
// answer 0 for it (see MissesBySide).
namespace reduce_detail {

// The working state of one reduction; every array has one entry per original position.
struct Cycle {
  fPointR3* points;
  int n;
  // Cyclic neighbours of the points still present; next is -1 once a point is removed (its
  // prev keeps the neighbour it had then).
  int* prev;
  int* next;
  // Corner m is blocked by the segment (witStart, witEnd), found while its neighbours were
  // (cornerPrev, cornerNext); witStart -1: not known. lastStart keeps the latest blocker's
  // start after it is forgotten, as the first segment to try next time.
  int* witStart;
  int* witEnd;
  int* cornerPrev;
  int* cornerNext;
  int* lastStart;
  // Per segment start, the corners that it blocks, as a doubly linked list.
  int* head;
  int* linkNext;
  int* linkPrev;
  // The points still present, in chain order: coordinates and original positions, as separate
  // arrays (the host loads four or eight points' x, y or z at once, and keeps a copy of point 0
  // at index size).
  int size;
  float* xs;
  float* ys;
  float* zs;
  int* positions;
  const bool* blocks; // blocks[r]: whether a test result r blocks a corner
  bool sideTest;      // every coordinate finite and within kSideRange: the side proof is sound
  fPointR3 lo, hi;    // the bounding box of all points (with sideTest)
};

TRESK_HD inline int Min(int a, int b) {
  return a < b ? a : b;
}

// Whether corner m is tested against the segment (s, next(s)): every segment that touches the
// corner's points is left out, except that the last corner (whose third point is point 0) is
// still tested against the segment starting at point 0.
TRESK_HD inline bool Tested(const Cycle& c, int m, int s) {
  const int p = c.prev[m];
  if (s == m || s == p || s == c.prev[p])
    return false;
  return c.next[m] == 0 || s != c.next[m];
}

// A removed witness has next -1, never equal to the remembered end.
TRESK_HD inline bool StillBlocked(const Cycle& c, int m) {
  const int s = c.witStart[m];
  return s >= 0 && c.next[s] == c.witEnd[m] && c.prev[m] == c.cornerPrev[m] &&
         c.next[m] == c.cornerNext[m] && Tested(c, m, s);
}

TRESK_HD inline bool Blocks(const Cycle& c, const fPointR3* triangle, int s) {
  const fPointR3 segment[2] = {c.points[s], c.points[c.next[s]]};
  return c.blocks[SegmentTriangleTest(triangle, segment)];
}

// The same for the segment from compact point k to the next (to point 0 after the last): the
// compact list holds copies of the same coordinates.
TRESK_HD inline bool BlocksAt(const Cycle& c, const fPointR3* triangle, int k) {
  const int q = k + 1 < c.size ? k + 1 : 0;
  const fPointR3 segment[2] = {{c.xs[k], c.ys[k], c.zs[k]}, {c.xs[q], c.ys[q], c.zs[q]}};
  return c.blocks[SegmentTriangleTest(triangle, segment)];
}

TRESK_HD inline void Unlink(Cycle& c, int m) {
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

TRESK_HD inline bool Remember(Cycle& c, int m, int s) {
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
//  - hX and gX evaluated in float (n_i, k_i with two roundings, X - A with one, the dot
//    products with three) give a computed hX within 6.1u gX of the exact one and a computed gX
//    of at least (1 - 7u) times the exact one;
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
// Every gX is replaced by one bound G per corner, k.W with W_i = max(hi_i - A_i, A_i - lo_i)
// over the chain's bounding box [lo, hi]: computed with the same float operations, G is at
// least every computed gX (rounding is monotone), and the check only gets stricter as eN and
// eD grow. So each point costs only its hX; the box is a few times the chain's spacing, far
// below the heights the check needs to fail, so few proofs are lost.
constexpr float kSideRange = 1e12f;
constexpr float kSideRel = 64.0f / 16777216.0f;
constexpr float kSideAbs = 1e-30f;

// Whether every coordinate is finite and within kSideRange; then also the bounding box.
TRESK_HD inline bool InSideRange(const fPointR3* points, int n, fPointR3& lo, fPointR3& hi) {
  lo = hi = points[0];
  for (int i = 0; i < n; ++i) {
    const fPointR3& p = points[i];
    if (!(fabsf(p.x) <= kSideRange && fabsf(p.y) <= kSideRange && fabsf(p.z) <= kSideRange))
      return false;
    lo.x = p.x < lo.x ? p.x : lo.x, hi.x = p.x > hi.x ? p.x : hi.x;
    lo.y = p.y < lo.y ? p.y : lo.y, hi.y = p.y > hi.y ? p.y : hi.y;
    lo.z = p.z < lo.z ? p.z : lo.z, hi.z = p.z > hi.z ? p.z : hi.z;
  }
  return true;
}

// The plane data of one corner: its first point A, n = e1 x e2, and eN, eD from the bound G.
struct Plane {
  fPointR3 a, n;
  float eN, eD;
};

TRESK_HD inline float Larger(float a, float b) {
  return a > b ? a : b;
}

TRESK_HD inline Plane PlaneOf(const Cycle& c, const fPointR3* triangle) {
  const fPointR3 a = triangle[0];
  const fPointR3 e1 = ReduceSub(triangle[1], a);
  const fPointR3 e2 = ReduceSub(triangle[2], a);
  const float yz = e1.y * e2.z, zy = e1.z * e2.y;
  const float zx = e1.z * e2.x, xz = e1.x * e2.z;
  const float xy = e1.x * e2.y, yx = e1.y * e2.x;
  const fPointR3 k{fabsf(yz) + fabsf(zy), fabsf(zx) + fabsf(xz), fabsf(xy) + fabsf(yx)};
  const fPointR3 w{Larger(c.hi.x - a.x, a.x - c.lo.x), Larger(c.hi.y - a.y, a.y - c.lo.y),
                   Larger(c.hi.z - a.z, a.z - c.lo.z)};
  const float g = k.x * w.x + k.y * w.y + k.z * w.z;
  return Plane{a, fPointR3{yz - zy, zx - xz, xy - yx}, kSideRel * g + kSideAbs,
               kSideRel * (g + g) + kSideAbs};
}

// hX of compact point k.
TRESK_HD inline float HeightOf(const Cycle& c, const Plane& f, int k) {
  return f.n.x * (c.xs[k] - f.a.x) + f.n.y * (c.ys[k] - f.a.y) + f.n.z * (c.zs[k] - f.a.z);
}

// Whether the segment (P, Q) is proved to miss, given hP and hQ. The sign test is a product
// (an underflow to 0 only loses a proof).
TRESK_HD inline bool MissesBySide(const Plane& f, float hp, float hq) {
  const float a = fabsf(hp), b = fabsf(hq);
  const float gap = fabsf(a - b);
  const float least = a < b ? a : b;
  return hp * hq > 0.0f && gap > f.eD && least >= f.eN + f.eD + 1e-4f * (gap + f.eD);
}

#ifdef TRESK_REDUCE_SSE
// The heights of compact points k .. k+3, with the operations of HeightOf in the same order
// (each lane rounds exactly as the scalar code does).
inline __m128 Heights4(const Cycle& c, const Plane& f, int k) {
  const __m128 x = _mm_loadu_ps(c.xs + k), y = _mm_loadu_ps(c.ys + k), z = _mm_loadu_ps(c.zs + k);
  const __m128 hx = _mm_mul_ps(_mm_set1_ps(f.n.x), _mm_sub_ps(x, _mm_set1_ps(f.a.x)));
  const __m128 hy = _mm_mul_ps(_mm_set1_ps(f.n.y), _mm_sub_ps(y, _mm_set1_ps(f.a.y)));
  const __m128 hz = _mm_mul_ps(_mm_set1_ps(f.n.z), _mm_sub_ps(z, _mm_set1_ps(f.a.z)));
  return _mm_add_ps(_mm_add_ps(hx, hy), hz);
}

// Which of the segments k .. k+3 MissesBySide cannot prove to miss, as bits 0 .. 3 (bit j for
// segment k+j), with the same operations lane by lane, from the heights of points k .. k+3 and
// k+4 .. k+7.
inline int SideCandidates(const Plane& f, __m128 hp, __m128 ahead) {
  // hq = heights k+1 .. k+4: hp shifted down one lane, the first of `ahead` on top.
  const __m128 t = _mm_move_ss(hp, ahead); // ahead0, hp1, hp2, hp3
  const __m128 hq = _mm_shuffle_ps(t, t, _MM_SHUFFLE(0, 3, 2, 1));
  const __m128 sign = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
  const __m128 a = _mm_and_ps(hp, sign), b = _mm_and_ps(hq, sign);
  const __m128 gap = _mm_and_ps(_mm_sub_ps(a, b), sign);
  const __m128 least = _mm_min_ps(a, b); // a < b ? a : b
  const __m128 eD = _mm_set1_ps(f.eD);
  const __m128 bound =
      _mm_add_ps(_mm_set1_ps(f.eN + f.eD), _mm_mul_ps(_mm_set1_ps(1e-4f), _mm_add_ps(gap, eD)));
  const __m128 proved = _mm_and_ps(
      _mm_and_ps(_mm_cmpgt_ps(_mm_mul_ps(hp, hq), _mm_setzero_ps()), _mm_cmpgt_ps(gap, eD)),
      _mm_cmpge_ps(least, bound));
  return ~_mm_movemask_ps(proved) & 15;
}

inline int LowestBit(int bits) {
  return __builtin_ctz(static_cast<unsigned>(bits));
}

// The first segment among the scan's candidates (bit b = segment k + b, in chain order) that
// blocks the corner, -1 when none: the hint was tested before and is skipped.
inline int FirstBlockingCandidate(const Cycle& c, int m, int hint, const fPointR3* triangle, int k,
                                  int candidates) {
  for (int rest = candidates; rest != 0; rest &= rest - 1) {
    const int j = k + LowestBit(rest);
    const int s = c.positions[j];
    if (s != hint && Tested(c, m, s) && BlocksAt(c, triangle, j))
      return s;
  }
  return -1;
}
#endif

#ifdef TRESK_REDUCE_AVX2
// Whether this CPU (and the OS) runs AVX2 code; asked once.
inline bool HasAvx2() {
  static const bool has = [] {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;
  }();
  return has;
}

// Heights4 for compact points k .. k+7.
__attribute__((target("avx2"))) inline __m256 Heights8(const Cycle& c, const Plane& f, int k) {
  const __m256 x = _mm256_loadu_ps(c.xs + k), y = _mm256_loadu_ps(c.ys + k);
  const __m256 z = _mm256_loadu_ps(c.zs + k);
  const __m256 hx = _mm256_mul_ps(_mm256_set1_ps(f.n.x), _mm256_sub_ps(x, _mm256_set1_ps(f.a.x)));
  const __m256 hy = _mm256_mul_ps(_mm256_set1_ps(f.n.y), _mm256_sub_ps(y, _mm256_set1_ps(f.a.y)));
  const __m256 hz = _mm256_mul_ps(_mm256_set1_ps(f.n.z), _mm256_sub_ps(z, _mm256_set1_ps(f.a.z)));
  return _mm256_add_ps(_mm256_add_ps(hx, hy), hz);
}

// SideCandidates for segments k .. k+7, as bits 0 .. 7, from the heights of points k .. k+7
// and k+8 .. k+15. The target enables AVX2 only (no FMA), and the build does not contract.
__attribute__((target("avx2"))) inline int SideCandidates8(const Plane& f, __m256 hp,
                                                           __m256 ahead) {
  // hq = heights k+1 .. k+8: hp rotated down one lane, the first of `ahead` on top.
  const __m256 rotated = _mm256_permutevar8x32_ps(hp, _mm256_setr_epi32(1, 2, 3, 4, 5, 6, 7, 0));
  const __m256 next = _mm256_broadcastss_ps(_mm256_castps256_ps128(ahead));
  const __m256 hq = _mm256_blend_ps(rotated, next, 0x80);
  const __m256 sign = _mm256_castsi256_ps(_mm256_set1_epi32(0x7fffffff));
  const __m256 a = _mm256_and_ps(hp, sign), b = _mm256_and_ps(hq, sign);
  const __m256 gap = _mm256_and_ps(_mm256_sub_ps(a, b), sign);
  const __m256 least = _mm256_min_ps(a, b); // a < b ? a : b
  const __m256 eD = _mm256_set1_ps(f.eD);
  const __m256 bound = _mm256_add_ps(_mm256_set1_ps(f.eN + f.eD),
                                     _mm256_mul_ps(_mm256_set1_ps(1e-4f), _mm256_add_ps(gap, eD)));
  const __m256 proved = _mm256_and_ps(
      _mm256_and_ps(_mm256_cmp_ps(_mm256_mul_ps(hp, hq), _mm256_setzero_ps(), _CMP_GT_OQ),
                    _mm256_cmp_ps(gap, eD, _CMP_GT_OQ)),
      _mm256_cmp_ps(least, bound, _CMP_GE_OQ));
  return ~_mm256_movemask_ps(proved) & 255;
}

// ReduceDet3 of eight column triples at once, with the same products and sums in the same order.
struct Vec8 {
  __m256 x, y, z;
};

__attribute__((target("avx2"))) inline __m256 Det8(const Vec8& a, const Vec8& b, const Vec8& c) {
  const __m256 plus = _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(_mm256_mul_ps(a.x, b.y), c.z),
                                                  _mm256_mul_ps(_mm256_mul_ps(a.y, b.z), c.x)),
                                    _mm256_mul_ps(_mm256_mul_ps(b.x, a.z), c.y));
  const __m256 minus = _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(_mm256_mul_ps(c.x, b.y), a.z),
                                                   _mm256_mul_ps(_mm256_mul_ps(c.y, b.z), a.x)),
                                     _mm256_mul_ps(_mm256_mul_ps(b.x, c.z), a.y));
  return _mm256_sub_ps(plus, minus);
}

__attribute__((target("avx2"))) inline Vec8 Broadcast8(const fPointR3& p) {
  return Vec8{_mm256_set1_ps(p.x), _mm256_set1_ps(p.y), _mm256_set1_ps(p.z)};
}

__attribute__((target("avx2"))) inline Vec8 Sub8(const Vec8& p, const Vec8& q) {
  return Vec8{_mm256_sub_ps(p.x, q.x), _mm256_sub_ps(p.y, q.y), _mm256_sub_ps(p.z, q.z)};
}

// Lane masks: x < y, x <= y (false with NaN, as the scalar comparisons), and, or.
__attribute__((target("avx2"))) inline __m256 lt(__m256 x, __m256 y) {
  return _mm256_cmp_ps(x, y, _CMP_LT_OQ);
}
__attribute__((target("avx2"))) inline __m256 le(__m256 x, __m256 y) {
  return _mm256_cmp_ps(x, y, _CMP_LE_OQ);
}
__attribute__((target("avx2"))) inline __m256 both(__m256 x, __m256 y) {
  return _mm256_and_ps(x, y);
}
__attribute__((target("avx2"))) inline __m256 either(__m256 x, __m256 y) {
  return _mm256_or_ps(x, y);
}

// SegmentTriangleTest for the compact segments k .. k+7 (points k .. k+8 must exist), as bits
// 0 .. 7 set where the answer is not 0. Each lane runs the scalar test's operations in the same
// order (IEEE division included), so it rounds exactly as the scalar test does; every
// condition is evaluated, which gives the scalar answer (its early exits only skip conditions
// that could no longer make it non-zero). Eight tests at once cost about two scalar ones.
__attribute__((target("avx2"))) inline int NonZeroTests8(const Cycle& c, const fPointR3* triangle,
                                                         int k) {
  const __m256 E = _mm256_set1_ps(1e-5f), L = _mm256_set1_ps(0.99999f);
  const __m256 M = _mm256_set1_ps(-1e-5f), H = _mm256_set1_ps(1.00001f);
  const Vec8 p{_mm256_loadu_ps(c.xs + k), _mm256_loadu_ps(c.ys + k), _mm256_loadu_ps(c.zs + k)};
  const Vec8 q{_mm256_loadu_ps(c.xs + k + 1), _mm256_loadu_ps(c.ys + k + 1),
               _mm256_loadu_ps(c.zs + k + 1)};
  const Vec8 a = Broadcast8(triangle[0]);
  const Vec8 e1 = Broadcast8(ReduceSub(triangle[1], triangle[0]));
  const Vec8 e2 = Broadcast8(ReduceSub(triangle[2], triangle[0]));
  const Vec8 d = Sub8(p, q), w = Sub8(p, a);
  const __m256 D = Det8(d, e1, e2);
  const __m256 s = _mm256_div_ps(Det8(w, e1, e2), D);
  const __m256 u = _mm256_div_ps(Det8(d, w, e2), D);
  const __m256 v = _mm256_div_ps(Det8(d, e1, w), D);
  const __m256 uv = _mm256_add_ps(u, v);
  const __m256 sIn = both(lt(M, s), lt(s, H));
  const __m256 uIn = both(lt(M, u), lt(u, H)), vIn = both(lt(M, v), lt(v, H));
  const __m256 reach = both(sIn, both(lt(M, u), lt(M, v))); // every non-zero answer needs it
  const __m256 clear = both(both(both(le(E, s), le(s, L)), both(le(E, u), le(u, L))),
                            both(both(le(E, v), le(v, L)), le(uv, L)));
  const __m256 nearAC = both(lt(u, E), vIn);
  const __m256 nearAB = both(lt(v, E), uIn);
  const __m256 nearBC = both(both(lt(L, uv), lt(uv, H)), both(uIn, vIn));
  const __m256 endInside =
      both(either(lt(s, E), lt(L, s)), lt(uv, H)); // with sIn: s in (M, E) or (L, H)
  const __m256 answer =
      either(_mm256_cmp_ps(D, _mm256_setzero_ps(), _CMP_EQ_OQ),
             both(reach, either(either(clear, either(nearAC, nearAB)), either(nearBC, endInside))));
  return _mm256_movemask_ps(answer);
}

// FindBlocker's whole scan, eight segments at a time: the start of the first blocking segment,
// or -1. The last segment runs to the copy of point 0 at index size, and lanes past it are
// dropped (they read the host padding). With the usual blocking table (every non-zero answer
// blocks) a block with a candidate is tested eight at a time.
__attribute__((target("avx2"))) inline int ScanAvx2(const Cycle& c, int m, int hint,
                                                    const fPointR3* triangle, const Plane& f) {
  const bool usual = !c.blocks[0] && c.blocks[1] && c.blocks[2];
  __m256 heights = Heights8(c, f, 0);
  for (int k = 0; k < c.size; k += 8) {
    const __m256 ahead = Heights8(c, f, k + 8);
    int candidates = SideCandidates8(f, heights, ahead);
    if (c.size - k < 8)
      candidates &= (1 << (c.size - k)) - 1;
    if (usual && candidates != 0) {
      for (int rest = candidates & NonZeroTests8(c, triangle, k); rest != 0; rest &= rest - 1) {
        const int s = c.positions[k + LowestBit(rest)];
        if (s != hint && Tested(c, m, s))
          return s;
      }
    } else if (candidates != 0) {
      const int s = FirstBlockingCandidate(c, m, hint, triangle, k, candidates);
      if (s >= 0)
        return s;
    }
    heights = ahead;
  }
  return -1;
}
#endif

// Takes point x out of the compact list; it holds positions in increasing order.
TRESK_HD inline void Uncompact(Cycle& c, int x) {
  int lo = 0, hi = c.size; // the first k with position >= x
  while (lo < hi) {
    const int mid = lo + (hi - lo) / 2;
    if (c.positions[mid] < x) {
      lo = mid + 1;
    } else {
      hi = mid;
    }
  }
  const int size = --c.size;
  float* floats[3] = {c.xs, c.ys, c.zs};
#ifdef __CUDA_ARCH__
  for (float* f : floats) {
    for (int k = lo; k < size; ++k)
      f[k] = f[k + 1];
  }
  for (int k = lo; k < size; ++k)
    c.positions[k] = c.positions[k + 1];
#else
  const size_t count = static_cast<size_t>(size - lo);
  for (float* f : floats)
    memmove(f + lo, f + lo + 1, sizeof(float) * (count + 1)); // the copy of point 0 too
  memmove(c.positions + lo, c.positions + lo + 1, sizeof(int) * count);
#endif
}

// Tests corner m afresh; remembers a blocker and returns true, or returns false when the corner
// is free. The segment that replaced the last blocker is tried first: it lies where the old one
// did and is the likeliest to block again. The rest follow in chain order, except those proved
// to miss (they would not block, so whether the corner is blocked does not change). Compact
// segment k runs from compact point k to k + 1, the last one back to point 0.
TRESK_HD inline bool FindBlocker(Cycle& c, int m) {
  const fPointR3 triangle[3] = {c.points[c.prev[m]], c.points[m], c.points[c.next[m]]};
  int hint = c.lastStart[m];
  if (hint >= 0) {
    while (c.next[hint] < 0)
      hint = c.prev[hint]; // positions only fall, and point 0 stays
    if (Tested(c, m, hint) && Blocks(c, triangle, hint))
      return Remember(c, m, hint);
  }
  if (!c.sideTest) {
    for (int k = 0; k < c.size; ++k) {
      const int s = c.positions[k];
      if (s != hint && Tested(c, m, s) && Blocks(c, triangle, s))
        return Remember(c, m, s);
    }
    return false;
  }
  const Plane plane = PlaneOf(c, triangle);
  const float first = HeightOf(c, plane, 0);
#ifdef TRESK_REDUCE_SSE
  const tresk::SimdLevel simd = tresk::SimdLimit();
#endif
#ifdef TRESK_REDUCE_AVX2
  if (simd >= tresk::kSimdAvx && HasAvx2()) {
    const int s = ScanAvx2(c, m, hint, triangle, plane);
    return s >= 0 && Remember(c, m, s);
  }
#endif
  int k = 0;
#ifdef TRESK_REDUCE_SSE
  // Four segments at a time while points k .. k+7 exist; the scalar loop below takes the rest.
  const bool sse = simd >= tresk::kSimdSse;
  __m128 heights = sse && k + 8 <= c.size ? Heights4(c, plane, k) : _mm_setzero_ps();
  for (; sse && k + 8 <= c.size; k += 4) {
    const __m128 ahead = Heights4(c, plane, k + 4);
    const int s =
        FirstBlockingCandidate(c, m, hint, triangle, k, SideCandidates(plane, heights, ahead));
    if (s >= 0)
      return Remember(c, m, s);
    heights = ahead;
  }
#endif
  float hp = k == 0 ? first : HeightOf(c, plane, k);
  for (; k < c.size; ++k) {
    const float hq = k + 1 < c.size ? HeightOf(c, plane, k + 1) : first;
    if (!MissesBySide(plane, hp, hq)) {
      const int s = c.positions[k];
      if (s != hint && Tested(c, m, s) && BlocksAt(c, triangle, k))
        return Remember(c, m, s);
    }
    hp = hq;
  }
  return false;
}

// Forgets every corner blocked by the segment starting at s; returns the first of them.
TRESK_HD inline int Forget(Cycle& c, int s) {
  int first = c.n;
  for (int m = c.head[s]; m >= 0; m = c.linkNext[m]) {
    first = Min(first, m);
    c.witStart[m] = -1;
  }
  c.head[s] = -1;
  return first;
}

// Removes point x and returns the corner where the search for the next free corner starts.
TRESK_HD inline int Remove(Cycle& c, int x) {
  const int a = c.prev[x];
  const int b = c.next[x];
  Unlink(c, x);
  int cursor = a != 0 ? a : b; // corner a changed; point 0 heads no corner
  cursor = Min(cursor, Forget(c, a));
  cursor = Min(cursor, Forget(c, x));
  c.next[a] = b;
  c.prev[b] = a;
  c.next[x] = -1;
  Uncompact(c, x);
  return cursor;
}

} // namespace reduce_detail

// Reduces the closed chain points[0..n-1] in place and returns the new size: the first corner
// (triangle P[i], P[i+1], P[i+2 mod n], in chain order) that no tested segment blocks loses its
// middle point, until every corner is blocked or 3 points are left. Corner i is tested against
// the segments before it (0 .. i-2), after it (i+3 .. n-2) and the closing segment when
// 0 < i < n-3. `blocks[r]` says whether a test result r (0, 1, 2) blocks a corner; it must be
// {false, true, true}. `scratch` holds n points' worth of words (on the host the floats of
// n + kReduceHostPad points). Only points[0..result-1] are written. Chains of fewer than 4
// points (and negative sizes) are returned unchanged.
TRESK_HD inline int ReduceChain(fPointR3* points, int n, ReduceScratch scratch,
                                const bool* blocks) {
  if (n < 4)
    return n;
  reduce_detail::Cycle c;
  c.points = points;
  c.n = n;
  int** ints[] = {&c.prev,      &c.next, &c.witStart, &c.witEnd,   &c.cornerPrev, &c.cornerNext,
                  &c.lastStart, &c.head, &c.linkNext, &c.linkPrev, &c.positions};
  for (int i = 0; i < kReduceIntsPerPoint; ++i)
    *ints[i] = scratch.ints + i * n;
  float** floats[] = {&c.xs, &c.ys, &c.zs};
#ifdef __CUDA_ARCH__
  const int stride = n;
#else
  const int stride = n + kReduceHostPad;
#endif
  for (int i = 0; i < kReduceFloatsPerPoint; ++i)
    *floats[i] = scratch.floats + i * stride;
  c.size = n;
  c.blocks = blocks;
  c.sideTest = reduce_detail::InSideRange(points, n, c.lo, c.hi);
  for (int i = 0; i < n; ++i) {
    c.prev[i] = i == 0 ? n - 1 : i - 1;
    c.next[i] = i == n - 1 ? 0 : i + 1;
    c.witStart[i] = -1;
    c.lastStart[i] = -1;
    c.head[i] = -1;
    c.xs[i] = points[i].x;
    c.ys[i] = points[i].y;
    c.zs[i] = points[i].z;
    c.positions[i] = i;
  }
#ifndef __CUDA_ARCH__
  c.xs[n] = points[0].x, c.ys[n] = points[0].y, c.zs[n] = points[0].z;
#endif
  int count = n;
  int cursor = c.next[0];
  while (count >= 4) {
    int m = cursor;
    while (m != 0 && (reduce_detail::StillBlocked(c, m) || reduce_detail::FindBlocker(c, m)))
      m = c.next[m];
    if (m == 0)
      break; // every corner up to the last point is blocked
    cursor = reduce_detail::Remove(c, m);
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

} // namespace tresk
