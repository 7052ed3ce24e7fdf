// Crossing count and knot determinant of a projected closed diagram, written plainly and
// separately from the library so that tests can check the reduction and the projection.
#include "tests/support/invariants.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zoo {
namespace {

double Orient(double ax, double ay, double bx, double by, double cx, double cy) {
  return (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
}

struct Hit {
  int other;    // the other edge
  double t;     // parameter along this edge from its first point
  bool over;    // this edge passes over
  int crossing; // index of the crossing
};

// Fills per-edge crossing lists; false for a degenerate diagram.
bool FindHits(const std::vector<Edge>& e, std::vector<std::vector<Hit>>& hits, int& count) {
  int n = static_cast<int>(e.size());
  hits.assign(n, {});
  count = 0;
  for (int i = 0; i < n; ++i) {
    for (int j = i + 2; j < n; ++j) {
      if (i == 0 && j == n - 1)
        continue;
      const Edge &a = e[i], &b = e[j];
      const double o1 = Orient(a.x1, a.y1, a.x2, a.y2, b.x1, b.y1),
                   o2 = Orient(a.x1, a.y1, a.x2, a.y2, b.x2, b.y2),
                   o3 = Orient(b.x1, b.y1, b.x2, b.y2, a.x1, a.y1),
                   o4 = Orient(b.x1, b.y1, b.x2, b.y2, a.x2, a.y2);
      const bool touchA = o1 == 0.0 || o2 == 0.0, touchB = o3 == 0.0 || o4 == 0.0;
      if (((o1 > 0) == (o2 > 0) && !touchA) || ((o3 > 0) == (o4 > 0) && !touchB))
        continue;
      if (touchA || touchB)
        return false;
      double ta = o3 / (o3 - o4), tb = o1 / (o1 - o2);
      double ha = a.z1 + ta * (a.z2 - a.z1), hb = b.z1 + tb * (b.z2 - b.z1);
      if (ha == hb)
        return false;
      hits[i].push_back({j, ta, ha > hb, count});
      hits[j].push_back({i, tb, hb > ha, count});
      ++count;
    }
  }
  for (auto& h : hits)
    std::sort(h.begin(), h.end(), [](const Hit& x, const Hit& y) { return x.t < y.t; });
  return true;
}

} // namespace

int CountCrossings(const std::vector<Edge>& edges) {
  std::vector<std::vector<Hit>> hits;
  int count = 0;
  FindHits(edges, hits, count);
  return count;
}

long KnotDeterminant(const std::vector<Edge>& edges) {
  std::vector<std::vector<Hit>> hits;
  int m = 0;
  if (!FindHits(edges, hits, m))
    return -1;
  if (m < 3)
    return 1; // a diagram of fewer than three crossings is a trivial knot
  // Walk the diagram: the arc number advances at each under-passing; the arc after the last
  // under-passing is arc 0 again (the loop is closed).
  std::vector<int> overArc(m, -1), inArc(m, -1), outArc(m, -1);
  int arc = 0;
  for (const auto& list : hits)
    for (const Hit& h : list)
      if (h.over)
        overArc[h.crossing] = arc;
      else
        inArc[h.crossing] = arc, arc = (arc + 1) % m, outArc[h.crossing] = arc;
  // Colouring matrix: row c is 2 x_over - x_in - x_out; drop the last row and column.
  int k = m - 1;
  std::vector<std::vector<double>> a(k, std::vector<double>(k, 0.0));
  for (int c = 0; c < k; ++c)
    for (auto [col, v] :
         {std::pair<int, double>{overArc[c], 2.0}, {inArc[c], -1.0}, {outArc[c], -1.0}})
      if (col < k)
        a[c][col] += v;
  double det = 1.0;
  for (int col = 0; col < k; ++col) {
    int pivot = col;
    for (int r = col + 1; r < k; ++r)
      if (std::fabs(a[r][col]) > std::fabs(a[pivot][col]))
        pivot = r;
    if (a[pivot][col] == 0.0)
      return 0;
    if (pivot != col)
      std::swap(a[pivot], a[col]), det = -det;
    det *= a[col][col];
    for (int r = col + 1; r < k; ++r) {
      double f = a[r][col] / a[col][col];
      for (int cc = col; cc < k; ++cc)
        a[r][cc] -= f * a[col][cc];
    }
  }
  return std::lround(std::fabs(det));
}

} // namespace zoo
