// Small 3-D vector arithmetic shared by the closures, the reduction and the projection of the
// chain-preprocessing library. Plain value type and free inline functions, internal.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace tresk {

struct Vec3 {
  double x;
  double y;
  double z;
};

inline Vec3 operator+(Vec3 a, Vec3 b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(Vec3 a, Vec3 b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(double s, Vec3 a) {
  return {s * a.x, s * a.y, s * a.z};
}
inline double Dot(Vec3 a, Vec3 b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 Cross(Vec3 a, Vec3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Norm(Vec3 a) {
  return std::sqrt(Dot(a, a));
}
inline Vec3 PositionOf(const ChainAtom& a) {
  return {a.x, a.y, a.z};
}
inline ChainAtom AtomAt(Vec3 p, int id) {
  return {p.x, p.y, p.z, id};
}
// Whether two chains have the same points in the same order (ids aside).
inline bool SamePoints(const std::vector<ChainAtom>& a, const std::vector<ChainAtom>& b) {
  if (a.size() != b.size())
    return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i].x != b[i].x || a[i].y != b[i].y || a[i].z != b[i].z)
      return false;
  return true;
}

} // namespace tresk
