// Corner cutting of an open chain done once for all of its closures: the corners cut off are
// kept in order and replayed on each closed chain, each one only where it is still empty there.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "core/records.hpp"       // for ChainAtom
#include "preprocessing/vec3.hpp" // for Vec3

namespace tresk {

// The open chain's empty corners cut off with both ends kept (the segment that would join the
// last atom to the first does not exist). Every corner cut off swept a triangle that no segment
// of the chain met at that moment. In a closed chain made of the open one followed by a closing
// path that meets none of the first k of those triangles, the first k cuts are moves that keep
// the knot type, so the chain after them followed by the same closing path is the same knot.
class OpenChainCut {
public:
  explicit OpenChainCut(const std::vector<ChainAtom>& chain);
  // `closed` is the open chain followed by a closing path (points appended after its last
  // atom). The cuts are replayed in order; one is made when its corner has the same neighbours
  // and its triangle meets neither the closing path (counting the two segments that join it to
  // the chain's ends) nor a segment at an atom whose cut was passed over (the corner-cutting
  // contact tests, at the closed chain's tolerance). False when no cut could be made.
  bool Apply(std::vector<ChainAtom>& closed) const;
  // Corners the open chain's cutting removed.
  size_t Cuts() const { return swept_.size(); }

private:
  struct Swept {
    std::array<int, 3> vertex; // chain positions a, v, b
    std::array<Vec3, 3> p;
    Vec3 lo, hi; // the triangle's box
  };
  static bool Meets(const Swept& t, Vec3 p, Vec3 q, int atP, int atQ, double tol);
  size_t size_ = 0;
  bool usable_ = false;
  double scale_ = 0.0; // the largest coordinate magnitude of the open chain
  std::vector<Swept> swept_;
};

} // namespace tresk
