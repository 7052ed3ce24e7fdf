// Small plane geometry shared by the crossing counts of the projection ranking and the
// over/under-pass shortcuts: a 2-D point, the orientation test and the touching tolerance.
#pragma once

namespace tresk::plane2d {

// Closer than this fraction of the coordinate scale counts as touching in the plane.
constexpr double kRelativeHair = 1e-9;

struct P2 {
  double x;
  double y;
};

// Twice the signed area of the triangle (a, b, c): positive when c lies left of a->b.
inline double Orient(P2 a, P2 b, P2 c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

} // namespace tresk::plane2d
