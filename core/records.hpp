// The shared records of libtresk and its preprocessing library, their two sort orders,
// the six status strings and the knot-table record. Every source unit includes this header.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/math/tools/polynomial.hpp> // for KnownKnot::poly

#include "core/points.hpp" // for fPointR3, Job

// One bead of an input chain. `id` is the atom's own number as read (residue number);
// points rebuilt from single-precision copies carry id 0.
struct ChainAtom {
  double x;
  double y;
  double z;
  int32_t id;
};

// One output row of a subchain scan.
struct RowFile {
  int32_t first;
  int32_t last;
  int32_t strength;
  std::string text;
};

// A crossing as an edge keeps it: the crossing's position in the crossing vector (deliberately
// 16 bits: a diagram of more than 32767 crossings wraps) and its parameter along this edge.
struct CrossingShort {
  int16_t index;
  double t;
};

// One segment of a projected closed chain: plane coordinates x, y and height z of both ends.
// Parameters along an edge run from 1 at (x1, y1) to 0 at (x2, y2).
struct Edge {
  double x1;
  double y1;
  double z1;
  double x2;
  double y2;
  double z2;
  std::vector<CrossingShort> crossings;
  int32_t tag;
};

// One crossing of the projected diagram: edges over/under, arcs, handedness (0 or 1).
struct Crossing {
  int32_t over;
  int32_t under;
  int32_t arcOver;
  int32_t arcIn;
  int32_t arcOut;
  int32_t sign;
};

// An (ordinal, count) pair of the verdict over closures; the result texts reuse it as
// (ordinal, percentage).
struct Knocik {
  int32_t ordinal;
  int32_t count;
};

// One row of the knot table: Alexander polynomial in normal form (constant term first,
// positive), its tabulated values at t = -2 and t = -3, and the knot's name or status code.
struct KnownKnot {
  boost::math::tools::polynomial<int> poly;
  int32_t valueAtMinus2;
  int32_t valueAtMinus3;
  std::string name;
};

// The 42-row knot table; rows 0..38 are knots, 39 UNKNOWN, 40 "Problem with projecting",
// 41 INSIDE. Empty until FillKnotsArray().
extern KnownKnot knots[42];

// Row order of a scan: ascending `first`, then descending `last`.
bool WayToSortRowsToFile(RowFile a, RowFile b);
// Crossings along an edge: descending parameter, i.e. in chain direction.
bool WayToSortCrossings(CrossingShort a, CrossingShort b);

// Status strings: file-local constants (internal linkage), one copy per unit, compared by value.
const std::string OK = "OK";
const std::string FILEOUT_DEFAULT = "KNOTS_out";
const std::string MIXTURE = "-1";
const std::string UNKNOT = "01";
const std::string INSIDE = "-2";
const std::string UNKNOWN = "-3";
