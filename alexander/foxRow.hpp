// The entries of one row of the Alexander (Fox) matrix, as integer linear polynomials a + b t:
// the one place that knows which arc of a crossing gets which entry. The exact matrix
// (polynomials) and the numeric one (values at an integer t) are both built from it.
#pragma once

#include "core/records.hpp" // for Crossing

namespace tresk {

// Crossing convention: a = over-arc, b = incoming and c = outgoing under-arc, both strands drawn
// in chain direction; s = `sign` is 1 when the under strand turns counter-clockwise from the
// over strand, 0 when it turns clockwise.
//
//            c                                 b
//            ^                                 |
//     a -----|----> a   s = 1           a -----|----> a   s = 0
//            |                                 v
//            b                                 c
//
//   row (1-t) x_a - x_b + t x_c          row (1-t) x_a + t x_b - x_c
//
// Terms of equal arcs are added together, so a kink (a = b or a = c) yields a two-entry row and
// a = b = c one zero entry (an all-zero row). Any non-zero `sign` is read as 1.
struct FoxTerm {
  int arc;
  int constant; // the entry is constant + linear * t
  int linear;
};

struct FoxRow {
  FoxTerm terms[3];
  int count;
};

inline FoxRow FoxRowOf(const Crossing& x) {
  const int a = x.arcOver;
  const int b = x.arcIn;
  const int c = x.arcOut;
  const bool s = x.sign != 0;
  const FoxTerm minusOneAt[2] = {{b, -1, 0}, {c, -1, 0}}; // s = 1: b; s = 0: c
  const FoxTerm tAt[2] = {{c, 0, 1}, {b, 0, 1}};          // s = 1: c; s = 0: b
  if (a != b && a != c)
    return FoxRow{{{a, 1, -1}, s ? minusOneAt[0] : minusOneAt[1], s ? tAt[0] : tAt[1]}, 3};
  if (a == b && a != c) // (1 - t) x_a - x_a  or  (1 - t) x_a + t x_a
    return FoxRow{
        {s ? FoxTerm{a, 0, -1} : FoxTerm{a, 1, 0}, s ? FoxTerm{c, 0, 1} : FoxTerm{c, -1, 0}}, 2};
  if (a == c && a != b) // (1 - t) x_a + t x_a  or  (1 - t) x_a - x_a
    return FoxRow{
        {s ? FoxTerm{a, 1, 0} : FoxTerm{a, 0, -1}, s ? FoxTerm{b, -1, 0} : FoxTerm{b, 0, 1}}, 2};
  return FoxRow{{{a, 0, 0}}, 1};
}

} // namespace tresk
