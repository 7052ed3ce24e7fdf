// The 60 projection frames (truncated-icosahedron vertices under a fixed generic rotation)
// and FillFulerenData, which merely makes sure they are built.
#include "preprocessing/directions.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "preprocessing/chainprep.hpp"

namespace tresk {

namespace {

// The 60 vertices: even permutations of (0, +-1, +-3f), (+-1, +-(2+f), +-2f), (+-f, +-2, +-(2f+1))
// with f the golden ratio; all lie on one sphere.
std::vector<Vec3> TruncatedIcosahedron() {
  const double f = (1.0 + std::sqrt(5.0)) / 2.0;
  const double base[3][3] = {{0.0, 1.0, 3.0 * f}, {1.0, 2.0 + f, 2.0 * f}, {f, 2.0, 2.0 * f + 1.0}};
  std::vector<Vec3> out;
  for (const auto& b : base) {
    for (int signs = 0; signs < 8; ++signs) {
      double c[3];
      bool duplicate = false;
      for (int k = 0; k < 3; ++k) {
        bool negative = (signs >> k) & 1;
        if (negative && b[k] == 0.0)
          duplicate = true; // -0 gives the same vertex
        c[k] = negative ? -b[k] : b[k];
      }
      if (duplicate)
        continue;
      for (int shift = 0; shift < 3; ++shift) // the cyclic (even) permutations
        out.push_back({c[shift % 3], c[(shift + 1) % 3], c[(shift + 2) % 3]});
    }
  }
  return out;
}

// A fixed rotation, chosen so that every direction stays more than 4 degrees away from each
// coordinate plane (every component above 0.076 in size): lattice and crystallographic coordinates
// would otherwise give exactly degenerate projections.
Vec3 Rotate(Vec3 p) {
  double w = 0.7127, x = 0.3776, y = -0.5383, z = 0.2442;
  double n = std::sqrt(w * w + x * x + y * y + z * z);
  w /= n, x /= n, y /= n, z /= n;
  return {(1 - 2 * (y * y + z * z)) * p.x + 2 * (x * y - w * z) * p.y + 2 * (x * z + w * y) * p.z,
          2 * (x * y + w * z) * p.x + (1 - 2 * (x * x + z * z)) * p.y + 2 * (y * z - w * x) * p.z,
          2 * (x * z - w * y) * p.x + 2 * (y * z + w * x) * p.y + (1 - 2 * (x * x + y * y)) * p.z};
}

Vec3 Unit(Vec3 a) {
  return (1.0 / Norm(a)) * a;
}

ProjectionFrame FrameFor(Vec3 dir) {
  // Any fixed vector far from dir gives the first plane axis.
  Vec3 g = {0.5773, -0.2113, 0.7887};
  if (Norm(Cross(dir, g)) < 0.3)
    g = {-0.6, 0.7, 0.3873};
  Vec3 u = Unit(Cross(g, dir));
  Vec3 v = Cross(dir, u);
  return {u, v, dir};
}

std::array<ProjectionFrame, 60> BuildFrames() {
  std::vector<Vec3> all = TruncatedIcosahedron();
  // One representative of each opposite pair: the first in generation order.
  std::vector<Vec3> reps;
  for (const Vec3& p : all) {
    bool paired = false;
    for (const Vec3& r : reps)
      if (r.x == -p.x && r.y == -p.y && r.z == -p.z)
        paired = true;
    if (!paired)
      reps.push_back(Unit(Rotate(p)));
  }
  // Greedy spread: each next plane maximises its least angle to the planes already taken.
  std::vector<Vec3> order = {reps[0]};
  std::vector<char> taken(reps.size(), 0);
  taken[0] = 1;
  while (order.size() < reps.size()) {
    int best = -1;
    double bestCos = 2.0;
    for (size_t i = 0; i < reps.size(); ++i) {
      if (taken[i])
        continue;
      double worst = 0.0; // largest |cos| to an earlier plane = smallest angle
      for (const Vec3& o : order)
        worst = std::max(worst, std::fabs(Dot(o, reps[i])));
      if (worst < bestCos - 1e-12) {
        bestCos = worst;
        best = static_cast<int>(i);
      }
    }
    taken[best] = 1;
    order.push_back(reps[best]);
  }
  std::array<ProjectionFrame, 60> frames;
  for (int k = 0; k < 30; ++k) {
    frames[k] = FrameFor(order[k]);
    // The opposite direction sees the same plane mirrored; (v, u, -dir) stays right-handed.
    frames[k + 30] = {frames[k].v, frames[k].u, -1.0 * frames[k].dir};
  }
  return frames;
}

} // namespace

const std::array<ProjectionFrame, 60>& ProjectionFrames() {
  static const std::array<ProjectionFrame, 60> frames = BuildFrames();
  return frames;
}

} // namespace tresk

void FillFulerenData() {
  (void)tresk::ProjectionFrames();
}
