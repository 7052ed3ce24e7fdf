// The plain restart loop behind ChainReduce's corner cutting, written for clarity: no grid, no
// memory of blockers, no quick rejections.
#include "tests/support/prep_reduce_reference.hpp"

#include <algorithm>
#include <cmath>

#include "preprocessing/triangle_tests.hpp" // for SegmentWithinByDistances, SharedVertexSegmentEnters
#include "preprocessing/vec3.hpp"           // for Vec3

namespace reference {
namespace {

using tresk::Vec3;

bool SamePoint(const ChainAtom& a, const ChainAtom& b) {
  return a.x == b.x && a.y == b.y && a.z == b.z;
}

// The contact test as a plain implementation writes it: a crossing inside the triangle, else
// the distances of the ends and edges.
bool PlainNearTriangle(Vec3 p, Vec3 q, Vec3 a, Vec3 b, Vec3 c, double tol) {
  const Vec3 n = tresk::Cross(b - a, c - a);
  const double nn = tresk::Norm(n);
  if (nn > 0.0) {
    const double dp = tresk::Dot(n, p - a) / nn, dq = tresk::Dot(n, q - a) / nn;
    if ((dp > tol && dq > tol) || (dp < -tol && dq < -tol))
      return false;
    if ((dp > 0.0 && dq < 0.0) || (dp < 0.0 && dq > 0.0)) {
      const Vec3 x = p + (dp / (dp - dq)) * (q - p);
      if (tresk::Dot(n, tresk::Cross(b - a, x - a)) >= 0.0 &&
          tresk::Dot(n, tresk::Cross(c - b, x - b)) >= 0.0 &&
          tresk::Dot(n, tresk::Cross(a - c, x - c)) >= 0.0)
        return true;
    }
  }
  return tresk::SegmentWithinByDistances(p, q, a, b, c, tol);
}

} // namespace

int CutCornersPlain(std::vector<ChainAtom>& chain) {
  // A point equal to the one before it (the last one counting as before the first) goes,
  // unless fewer than three points would be left.
  std::vector<ChainAtom> distinct;
  for (const ChainAtom& a : chain)
    if (distinct.empty() || !SamePoint(distinct.back(), a))
      distinct.push_back(a);
  while (distinct.size() > 1 && SamePoint(distinct.front(), distinct.back()))
    distinct.pop_back();
  if (distinct.size() >= 3)
    chain = distinct;
  std::vector<Vec3> p;
  double scale = 0.0;
  for (const ChainAtom& a : chain) {
    p.push_back({a.x, a.y, a.z});
    scale = std::max({scale, std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
  }
  const double tol = 1e-9 * std::max(scale, 1e-300), angleTol = 1e-9;
  for (bool erased = true; erased && p.size() > 3;) {
    erased = false;
    const int n = static_cast<int>(p.size());
    for (int v = 0; v < n && !erased; ++v) {
      const int corner[3] = {(v + n - 1) % n, v, (v + 1) % n};
      bool blocked = false;
      for (int s = 0; s < n && !blocked; ++s) {
        const int e = (s + 1) % n;
        if (s == corner[0] || s == corner[1])
          continue; // the corner's own edges
        int k = 0;
        while (k < 3 && corner[k] != s && corner[k] != e)
          ++k;
        if (k == 3) {
          blocked = PlainNearTriangle(p[s], p[e], p[corner[0]], p[corner[1]], p[corner[2]], tol);
          continue;
        }
        // A segment sharing a vertex with the corner: one spanning two of its vertices always
        // blocks, another by the angle it runs at.
        const int other = corner[k] == s ? e : s;
        blocked = other == corner[(k + 1) % 3] || other == corner[(k + 2) % 3] ||
                  tresk::SharedVertexSegmentEnters(p[corner[k]], p[other], p[corner[(k + 1) % 3]],
                                                   p[corner[(k + 2) % 3]], angleTol);
      }
      if (!blocked) {
        p.erase(p.begin() + v);
        chain.erase(chain.begin() + v);
        erased = true;
      }
    }
  }
  return static_cast<int>(chain.size());
}

} // namespace reference
