// Segment-triangle proximity in double precision: the geometric core of the reduction.
// The tests decide "keep the corner" whenever rounding could hide a contact.
#include "preprocessing/triangle_tests.hpp"

#include <algorithm>
#include <cmath>

namespace tresk {

namespace {

double PointSegmentDistance2(Vec3 p, Vec3 a, Vec3 b) {
  Vec3 ab = b - a;
  double len2 = Dot(ab, ab);
  double t = len2 > 0.0 ? std::clamp(Dot(p - a, ab) / len2, 0.0, 1.0) : 0.0;
  Vec3 d = p - (a + t * ab);
  return Dot(d, d);
}

// Squared distance between the segments p1-q1 and p2-q2 (closest points by clamped
// parameters; degenerate segments handled as points).
double SegmentSegmentDistance2(Vec3 p1, Vec3 q1, Vec3 p2, Vec3 q2) {
  Vec3 d1 = q1 - p1, d2 = q2 - p2, r = p1 - p2;
  double a = Dot(d1, d1), e = Dot(d2, d2), f = Dot(d2, r);
  if (a <= 0.0 && e <= 0.0)
    return Dot(r, r);
  if (a <= 0.0)
    return PointSegmentDistance2(p1, p2, q2);
  if (e <= 0.0)
    return PointSegmentDistance2(p2, p1, q1);
  double c = Dot(d1, r), b = Dot(d1, d2);
  double denom = a * e - b * b;
  double s = denom > 0.0 ? std::clamp((b * f - c * e) / denom, 0.0, 1.0) : 0.0;
  double t = (b * s + f) / e;
  if (t < 0.0) {
    t = 0.0;
    s = std::clamp(-c / a, 0.0, 1.0);
  } else if (t > 1.0) {
    t = 1.0;
    s = std::clamp((b - c) / a, 0.0, 1.0);
  }
  Vec3 d = (p1 + s * d1) - (p2 + t * d2);
  // The clamped solution is exact up to rounding for non-parallel segments; for (nearly)
  // parallel ones the end-point distances bound the answer from above, take the least.
  double best = Dot(d, d);
  best = std::min(best, PointSegmentDistance2(p1, p2, q2));
  best = std::min(best, PointSegmentDistance2(q1, p2, q2));
  best = std::min(best, PointSegmentDistance2(p2, p1, q1));
  best = std::min(best, PointSegmentDistance2(q2, p1, q1));
  return best;
}

// Inside test for a point of the triangle's plane (n = (b - a) x (c - a)).
bool InsideTriangle(Vec3 x, Vec3 a, Vec3 b, Vec3 c, Vec3 n) {
  return Dot(n, Cross(b - a, x - a)) >= 0.0 && Dot(n, Cross(c - b, x - b)) >= 0.0 &&
         Dot(n, Cross(a - c, x - c)) >= 0.0;
}

// Squared distance from p to the closed triangle; a degenerate triangle is its three edges.
double PointTriangleDistance2(Vec3 p, Vec3 a, Vec3 b, Vec3 c, Vec3 n, double nn) {
  if (nn > 0.0) {
    double h = Dot(n, p - a) / nn;
    Vec3 foot = p - (h / nn) * n;
    if (InsideTriangle(foot, a, b, c, n))
      return h * h;
  }
  return std::min({PointSegmentDistance2(p, a, b), PointSegmentDistance2(p, b, c),
                   PointSegmentDistance2(p, c, a)});
}

// SegmentWithinByDistances with the triangle's normal n = (b - a) x (c - a) and nn = |n|.
bool WithinByDistances(Vec3 p, Vec3 q, Vec3 a, Vec3 b, Vec3 c, Vec3 n, double nn, double tol) {
  double tol2 = tol * tol;
  return PointTriangleDistance2(p, a, b, c, n, nn) <= tol2 ||
         PointTriangleDistance2(q, a, b, c, n, nn) <= tol2 ||
         SegmentSegmentDistance2(p, q, a, b) <= tol2 ||
         SegmentSegmentDistance2(p, q, b, c) <= tol2 || SegmentSegmentDistance2(p, q, c, a) <= tol2;
}

// Both ends farther than tol from the plane, on the same side.
bool BeyondPlane(double dp, double dq, double tol) {
  return (dp > tol && dq > tol) || (dp < -tol && dq < -tol);
}

} // namespace

bool SegmentNearTriangle(Vec3 p, Vec3 q, Vec3 a, Vec3 b, Vec3 c, double tol) {
  const Vec3 n = Cross(b - a, c - a);
  const double nn = Norm(n);
  if (nn > 0.0) {
    const double dp = Dot(n, p - a) / nn, dq = Dot(n, q - a) / nn;
    if (BeyondPlane(dp, dq, tol))
      return false;
    // A segment that crosses the plane inside the triangle touches it; near misses of the
    // boundary are left to the distance tests below.
    if ((dp > 0.0 && dq < 0.0) || (dp < 0.0 && dq > 0.0)) {
      const Vec3 x = p + (dp / (dp - dq)) * (q - p);
      if (InsideTriangle(x, a, b, c, n))
        return true;
      if (CrossesFarOutside(p, q, a, b, c, n, nn, dp - dq, x, tol))
        return false;
    }
  }
  return WithinByDistances(p, q, a, b, c, n, nn, tol); // n and nn as computed above
}

bool CrossesFarOutside(Vec3 p, Vec3 q, Vec3 a, Vec3 b, Vec3 c, Vec3 n, double nn, double rise,
                       Vec3 x, double tol) {
  if (!(tol >= 1e-100 && tol <= 1e41))
    return false;
  const Vec3 corner[3] = {a, b, c};
  Vec3 edge[3];
  double length[3];
  for (int k = 0; k < 3; ++k) {
    edge[k] = corner[(k + 1) % 3] - corner[k];
    length[k] = Norm(edge[k]);
  }
  if (!(nn > 1e-3 * length[0] * length[2]))
    return false; // a sliver at a: its normal is not accurate enough for the argument
  const double reach = 8.0 * tol * (1.0 + Norm(q - p) / std::fabs(rise));
  for (int k = 0; k < 3; ++k)
    if (-Dot(n, Cross(edge[k], x - corner[k])) > reach * nn * length[k])
      return true;
  return false;
}

bool SegmentWithinByDistances(Vec3 p, Vec3 q, Vec3 a, Vec3 b, Vec3 c, double tol) {
  const Vec3 n = Cross(b - a, c - a);
  return WithinByDistances(p, q, a, b, c, n, Norm(n), tol);
}

TriangleProbe::TriangleProbe(Vec3 a, Vec3 b, Vec3 c, double tol, double scale)
    : a_(a), b_(b), c_(c), n_(Cross(b - a, c - a)), nn_(Norm(n_)), tol_(tol),
      axesWanted_(tol >= 1e-100 && scale <= 1e50) {}

void TriangleProbe::AddAxis(Vec3 axis, Vec3 ab, Vec3 ac) {
  // Any axis separates: projections apart by more than tol |axis| mean a distance above tol.
  // The margin takes |x| + |y| + |z| >= |axis| for the length (no square root; a wider margin
  // only rejects less).
  const double length = std::fabs(axis.x) + std::fabs(axis.y) + std::fabs(axis.z);
  if (!(length >= 1e-150))
    return;
  const double margin = 8.0 * tol_ * length;
  const double db = Dot(axis, ab), dc = Dot(axis, ac);
  axis_[axes_] = axis;
  lo_[axes_] = std::min(0.0, std::min(db, dc)) - margin;
  hi_[axes_] = std::max(0.0, std::max(db, dc)) + margin;
  ++axes_;
}

void TriangleProbe::BuildAxes() {
  axesBuilt_ = true;
  if (!axesWanted_)
    return;
  // In the plane, across each edge (the projections are taken from a).
  const Vec3 ab = b_ - a_, ac = c_ - a_;
  AddAxis(Cross(ab, n_), ab, ac);
  AddAxis(Cross(c_ - b_, n_), ab, ac);
  AddAxis(Cross(ac, n_), ab, ac);
}

bool TriangleProbe::Separated(Vec3 p, Vec3 q) {
  if (!axesBuilt_)
    BuildAxes();
  const Vec3 pa = p - a_, qa = q - a_;
  for (int k = 0; k < axes_; ++k) {
    double dp = Dot(axis_[k], pa), dq = Dot(axis_[k], qa);
    if ((dp > hi_[k] && dq > hi_[k]) || (dp < lo_[k] && dq < lo_[k]))
      return true;
  }
  return false;
}

bool TriangleProbe::Near(Vec3 p, Vec3 q) {
  // SegmentNearTriangle's steps, with the edge-line rejection before each of its costly ones:
  // a crossing inside the triangle is a contact, whatever the rejection would say.
  if (nn_ > 0.0) {
    const double dp = Dot(n_, p - a_) / nn_, dq = Dot(n_, q - a_) / nn_;
    if (BeyondPlane(dp, dq, tol_))
      return false;
    if ((dp > 0.0 && dq < 0.0) || (dp < 0.0 && dq > 0.0)) {
      const Vec3 x = p + (dp / (dp - dq)) * (q - p);
      if (InsideTriangle(x, a_, b_, c_, n_))
        return true;
      if (Separated(p, q) || CrossesFarOutside(p, q, a_, b_, c_, n_, nn_, dp - dq, x, tol_))
        return false;
      return WithinByDistances(p, q, a_, b_, c_, n_, nn_, tol_);
    }
  }
  return !Separated(p, q) && WithinByDistances(p, q, a_, b_, c_, n_, nn_, tol_);
}

bool SharedVertexSegmentEnters(Vec3 s, Vec3 x, Vec3 o1, Vec3 o2, double angleTol) {
  Vec3 w = x - s, e1 = o1 - s, e2 = o2 - s;
  double lw = Norm(w), l1 = Norm(e1), l2 = Norm(e2);
  if (lw == 0.0)
    return false;
  if (l1 == 0.0 || l2 == 0.0) {
    // The triangle is a segment from s: blocked only when w runs along it.
    Vec3 e = l1 == 0.0 ? e2 : e1;
    double le = std::max(l1, l2);
    return le > 0.0 && Norm(Cross(w, e)) <= angleTol * lw * le && Dot(w, e) > 0.0;
  }
  Vec3 n = Cross(e1, e2);
  double nn = Norm(n);
  if (nn <= angleTol * l1 * l2) {
    // Flat triangle: a line through s. Only a segment along that line can meet it.
    return Norm(Cross(w, e1)) <= angleTol * lw * l1;
  }
  // Leaving the plane at once: the segment meets the triangle only at s.
  if (std::fabs(Dot(n, w)) > angleTol * nn * lw)
    return false;
  // In the plane (or too close to call): it enters the triangle when its direction lies in
  // the angle at s between e1 and e2, counting directions along either edge.
  double slack = angleTol * nn * lw;
  return Dot(n, Cross(e1, w)) >= -slack * l1 && Dot(n, Cross(w, e2)) >= -slack * l2;
}

} // namespace tresk
