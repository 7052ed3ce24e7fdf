// The one packer of closed subchains into a reduction batch: single-precision points laid end to
// end, each job followed by two copies of its last point (not counted in its length), as the
// batch reduction on the host and on the GPU expects. Used by the fingerprint's preparation and
// by the knot-core search.
#pragma once

#include <vector>

#include "core/records.hpp" // for ChainAtom, fPointR3

namespace tresk {

inline fPointR3 ToFloat(const ChainAtom& a) {
  return fPointR3{static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(a.z)};
}

// Appends the atoms [first, last) in single precision, then the last point twice more; an
// empty run appends nothing.
template <class Atoms>
void AppendPackedRun(std::vector<fPointR3>& points, Atoms first, Atoms last) {
  if (first == last)
    return;
  for (; first != last; ++first)
    points.push_back(ToFloat(*first));
  const fPointR3 tail = points.back();
  points.push_back(tail);
  points.push_back(tail);
}

} // namespace tresk
