// The 60 fixed projection directions of the chain-preprocessing library: the vertices of a
// truncated icosahedron (the C60 fullerene), turned so that none lies near a coordinate axis.
#pragma once

#include <array>

#include "preprocessing/vec3.hpp" // for Vec3

namespace tresk {

// A projection frame: unit direction `dir` (the height axis) and the plane axes u, v with
// u x v = dir.
struct ProjectionFrame {
  Vec3 u;
  Vec3 v;
  Vec3 dir;
};

// The frames by base index. Index k + 30 is the opposite direction of index k (the same plane
// seen from the other side, i.e. the mirror diagram), and the order of 0..29 spreads the planes
// greedily: each next plane is the one farthest (in angle) from all earlier ones.
// Built once, thread-safely, on first use.
const std::array<ProjectionFrame, 60>& ProjectionFrames();

} // namespace tresk
