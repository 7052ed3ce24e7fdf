// The segment-triangle test and the plain empty-triangle reduction of one closed
// single-precision chain, written once for the host and the GPU (TRESK_HD) so that both paths
// run the same code. Compile without floating-point contraction on both sides.
#pragma once

#include "core/points.hpp" // for fPointR3

#if defined(__CUDACC__)
#define TRESK_HD __host__ __device__
#else
#define TRESK_HD
#endif

// det[a b c] of the columns a, b, c, always expanded in this order and grouping so that the
// host and the device round identically. `V` is fPointR3, or a point of several lanes for the
// host's vectorised test.
template <class V>
TRESK_HD inline auto ReduceDet3(const V& a, const V& b, const V& c) -> decltype(a.x * b.y) {
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
TRESK_HD inline int SegmentTriangleTest(const fPointR3* triangle, const fPointR3* segment) {
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

// The plain reduction of the closed chain points[0..n-1], in place; returns the new size.
// Scans the corners i = 0, 1, ... : the triangle (P[i], P[i+1], P[i+2 mod n]) is tested
// against the chain before it (segments 0 .. i-2), then after it (segments i+3 .. n-2), then
// the closing segment (P[n-1], P[0]) when 0 < i < n-3; the first corner that no segment blocks
// loses its middle point (later points move down one place) and the scan starts again at 0.
// `blocks[r]` says whether a test result r (0, 1, 2) blocks a corner: {false, true, true}.
// The corner i = n-1 is not tested: its middle point would be P[0], which is never removed, so
// the scan ends there whatever the test says. Chains of fewer than 4 points are left alone.
TRESK_HD inline int ReduceClosedChain(fPointR3* points, int n, const bool* blocks) {
  for (;;) {
    if (n < 4)
      return n;
    int erase = -1;
    for (int i = 0; i < n - 1 && erase < 0; ++i) {
      const fPointR3 triangle[3] = {points[i], points[i + 1], points[(i + 2) % n]};
      bool blocked = false;
      if (i >= 2) {
        for (int k = 0; k <= i - 2 && !blocked; ++k)
          blocked = blocks[SegmentTriangleTest(triangle, points + k)];
      }
      if (!blocked && i <= n - 5) {
        for (int k = i + 3; k <= n - 2 && !blocked; ++k)
          blocked = blocks[SegmentTriangleTest(triangle, points + k)];
      }
      if (!blocked && 0 < i && i < n - 3) {
        const fPointR3 closing[2] = {points[n - 1], points[0]};
        blocked = blocks[SegmentTriangleTest(triangle, closing)];
      }
      if (!blocked)
        erase = i + 1;
    }
    if (erase < 0)
      return n;
    for (int k = erase; k < n - 1; ++k)
      points[k] = points[k + 1];
    --n;
  }
}
