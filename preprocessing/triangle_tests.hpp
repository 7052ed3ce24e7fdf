// Conservative segment-against-triangle tests in double precision, used by the reduction to
// decide whether a corner of a closed chain may be cut off without changing its knot type.
// "Conservative" means: every configuration within `tol` of touching counts as touching.
#pragma once

#include "preprocessing/vec3.hpp" // for Vec3

namespace tresk {

// True when the segment p-q comes within `tol` of the closed triangle a-b-c (the segment shares
// no vertex with the triangle).
bool SegmentNearTriangle(Vec3 p, Vec3 q, Vec3 a, Vec3 b, Vec3 c, double tol);

// SegmentNearTriangle's last resort: whether the ends, or the closest points of the segment and
// the triangle's edges, lie within tol of the triangle.
bool SegmentWithinByDistances(Vec3 p, Vec3 q, Vec3 a, Vec3 b, Vec3 c, double tol);

// A quick exact rejection before those distances, for a segment p-q that crosses the triangle's
// plane (normal n = (b - a) x (c - a), nn = |n|, heights of p and q above it differing by
// `rise`) at x outside the triangle. Every point of the segment within tol of the plane lies
// within tol |q - p| / |rise| of x, so when x lies beyond one edge's line by 8 times
// tol (1 + |q - p| / |rise|), no point of the segment comes within tol of the triangle and the
// distances would all exceed tol (the factor 8 dwarfs every rounding error for tol between
// 1e-100 and 1e41; slivers whose normal is inaccurate are left alone).
bool CrossesFarOutside(Vec3 p, Vec3 q, Vec3 a, Vec3 b, Vec3 c, Vec3 n, double nn, double rise,
                       Vec3 x, double tol);

// The segment s-x shares the vertex s with the triangle s-o1-o2. True when the segment meets
// the triangle anywhere but at s, or runs so close to its plane (angle below `angleTol`) that
// the answer is in doubt.
bool SharedVertexSegmentEnters(Vec3 s, Vec3 x, Vec3 o1, Vec3 o2, double angleTol);

// One triangle a-b-c tested against many segments: Near(p, q) answers exactly as
// SegmentNearTriangle(p, q, a, b, c, tol), computing the triangle's normal once. Before the
// full test it applies the test's own plane rejection, then one of its own (Separated): the
// three lines of the triangle's edges, as axes in its plane. A segment whose projection on one
// of them lies beyond the triangle's by a wide margin (8 x tol, about a million times any
// rounding error, for coordinates between 1e-91 and 1e50 in size, given by `scale`) is
// farther than tol from the triangle, so the full test would report a miss. The axes are set
// up when first needed.
class TriangleProbe {
public:
  TriangleProbe(Vec3 a, Vec3 b, Vec3 c, double tol, double scale);
  bool Near(Vec3 p, Vec3 q);
  // The edge-line rejection alone: true only where Near is false.
  bool Separated(Vec3 p, Vec3 q);

private:
  void BuildAxes();
  void AddAxis(Vec3 axis, Vec3 ab, Vec3 ac);

  Vec3 a_, b_, c_, n_;
  double nn_, tol_;
  bool axesWanted_, axesBuilt_ = false;
  Vec3 axis_[3];
  double lo_[3], hi_[3];
  int axes_ = 0;
};

} // namespace tresk
