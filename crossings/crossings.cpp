// Crossings of a projected closed chain: the pair test, over/under, handedness, the order of
// the crossings along each edge and the arc numbering. Every comparison is exact on doubles;
// a projection is rejected only when a degeneracy is exact.
#include "crossings/crossings.hpp"

#include <algorithm>
#include <cmath>

#include "core/log.hpp" // for tresk::Log

namespace {

// The pair functions below take edges by reference: FindAllCrossings calls them for every pair
// of every projection, and the public by-value entry points would copy each edge's crossing
// list per call.

// Strict y-disjointness of two segments on one line: both y of one strictly above both y of
// the other. Only y is looked at, even for non-vertical lines.
bool YDisjoint(double ay1, double ay2, double by1, double by2) {
  return (ay1 > by1 && ay1 > by2 && ay2 > by1 && ay2 > by2) ||
         (by1 > ay1 && by1 > ay2 && by2 > ay1 && by2 > ay2);
}

// A degenerate pair: the message on the log stream, result -1 and no parameters.
std::pair<double, double> Degenerate(int& result, const char* what) {
  tresk::Log() << "PROBLEM with one projection. " << what << "\n";
  result = -1;
  return {0.0, 0.0};
}

// Parameters (t on a, s on b) of the crossing of the plane images of a and b. Parameter 1 is
// an edge's first point, 0 its second. result: 1 crossing, 0 none, -1 degenerate (message
// written to the log stream). The pair is (0, 0) unless result is 1.
std::pair<double, double> Intersect(const Edge& a, const Edge& b, int& result) {
  result = 0;
  const double ax1 = a.x1, ay1 = a.y1, ax2 = a.x2, ay2 = a.y2;
  const double bx1 = b.x1, by1 = b.y1, bx2 = b.x2, by2 = b.y2;
  double t;
  double s;
  if (ax1 == ax2) {
    if (bx1 == bx2) {
      if (ax1 != bx1 || YDisjoint(ay1, ay2, by1, by2))
        return {0.0, 0.0};
      return Degenerate(
          result, "Two segments are parallel and partially colaps, or one segment is degenerated.");
    }
    if (ay1 == ay2)
      return Degenerate(result, "One segment is degenerated.");
    // b meets the vertical line x = ax2 at s; t is a's parameter at the same height.
    s = (ax2 - bx2) / (bx1 - bx2);
    t = (by2 - ay2) / (ay1 - ay2) + (by1 - by2) * (ax2 - bx2) / ((ay1 - ay2) * (bx1 - bx2));
  } else {
    const double d = (bx1 - bx2) * (ay1 - ay2) - (by1 - by2) * (ax1 - ax2);
    if (d == 0) {
      // Parallel lines: compare the y-intercepts; a NaN intercept (b a single point) never
      // compares equal, so such a pair does not cross.
      const double ia = (ax2 * ay1 - ax1 * ay2) / (ax2 - ax1);
      const double ib = (bx2 * by1 - bx1 * by2) / (bx2 - bx1);
      if (ia != ib || YDisjoint(ay1, ay2, by1, by2))
        return {0.0, 0.0};
      return Degenerate(result, "Two segments are parallel and partially colaps.");
    }
    s = ((by2 - ay2) * (ax1 - ax2) - (bx2 - ax2) * (ay1 - ay2)) / d;
    t = ((bx1 - bx2) * s + bx2 - ax2) / (ax1 - ax2);
  }
  if (t < 0 || t > 1 || s < 0 || s > 1)
    return {0.0, 0.0};
  if (t == 0 || t == 1 || s == 0 || s == 1)
    return Degenerate(result, "Two segments cross exactly at the end of one of them.");
  result = 1;
  return {t, s};
}

bool AOver(const Edge& a, const Edge& b, double ta, double tb) {
  const double ha = a.z1 * ta + a.z2 * (1 - ta);
  const double hb = b.z1 * tb + b.z2 * (1 - tb);
  return ha > hb;
}

// Sign convention. Directions run from an edge's first point to its second (against growing
// parameter); the over strand is drawn unbroken:
//
//            sign 1                          sign 0
//              ^ under                         ^ over
//              |                               |
//     -----------------> over       -------    |    ------> under
//              |                               |
//
// sign is 1 when the under strand points counter-clockwise from the over strand, that is
// atan2(cross, dot) > 0 with cross = over x under (cross > 0 up to atan2's signed zeros).
bool Handedness(const Edge& over, const Edge& under) {
  const double ox = over.x2 - over.x1;
  const double oy = over.y2 - over.y1;
  const double ux = under.x2 - under.x1;
  const double uy = under.y2 - under.y1;
  const double cross = ox * uy - oy * ux;
  const double dot = ox * ux + oy * uy;
  return std::atan2(cross, dot) > 0;
}

} // namespace

std::pair<double, double> TwoEdgesCrossed(Edge a, Edge b, int& result) {
  return Intersect(a, b, result);
}

bool FirstEdgeOver(Edge a, Edge b, double ta, double tb) {
  return AOver(a, b, ta, tb);
}

bool TypeOfCrossing(Edge over, Edge under) {
  return Handedness(over, under);
}

int FindAllCrossings(std::vector<Edge>& edges, std::vector<Crossing>& crossings, bool closed) {
  if (crossings.capacity() < 20)
    crossings.reserve(20);
  const int n = static_cast<int>(edges.size());
  if (n < 3)
    return 0;
  // Neighbours (j = i + 1) are never tested; on a closed polygon neither are the last edge
  // and the first. Crossings are numbered by lower edge index, then higher.
  for (int i = 0; i + 2 < n; ++i) {
    const int limit = (i == 0 && closed) ? n - 1 : n;
    for (int j = i + 2; j < limit; ++j) {
      int result;
      const std::pair<double, double> ts = Intersect(edges[i], edges[j], result);
      if (result == -1)
        return 1;
      if (result == 0)
        continue;
      const bool iOver = AOver(edges[i], edges[j], ts.first, ts.second);
      const int over = iOver ? i : j;
      const int under = iOver ? j : i;
      const int sign = Handedness(edges[over], edges[under]) ? 1 : 0;
      // The 16-bit index wraps past 32767 crossings (modular conversion).
      const auto index = static_cast<int16_t>(static_cast<uint16_t>(crossings.size()));
      crossings.push_back({over, under, 0, 0, 0, sign});
      edges[i].crossings.push_back({index, ts.first});
      edges[j].crossings.push_back({index, ts.second});
    }
  }
  // Descending parameter = chain direction; same order as WayToSortCrossings.
  for (Edge& e : edges) {
    if (e.crossings.size() > 1) {
      std::sort(e.crossings.begin(), e.crossings.end(),
                [](const CrossingShort& a, const CrossingShort& b) { return a.t > b.t; });
    }
  }
  return 0;
}

int FillCrossings(std::vector<Edge>& edges, std::vector<Crossing>& crossings) {
  // Arcs run from one under-passing to the next and are numbered 0 .. m-1 in walk order; the
  // arc after the last under-passing is arc 0 again (the chain is closed).
  const int m = static_cast<int>(crossings.size());
  int counter = 0;
  for (int e = 0; e < static_cast<int>(edges.size()); ++e) {
    for (const CrossingShort& cs : edges[e].crossings) {
      // A wrapped (negative) index of an oversized diagram points at no crossing: skipped.
      if (cs.index < 0 || cs.index >= m)
        continue;
      Crossing& c = crossings[cs.index];
      if (c.over == e) {
        c.arcOver = counter;
      } else {
        c.arcIn = counter;
        counter = counter < m - 1 ? counter + 1 : 0;
        c.arcOut = counter;
      }
    }
  }
  return 0;
}
