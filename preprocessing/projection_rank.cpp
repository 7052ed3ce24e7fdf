// Crossing counts of a closed chain's diagrams and the ranking of projection planes by them.
#include "preprocessing/projection_rank.hpp"
#include "preprocessing/plane2d.hpp" // for P2, Orient, kRelativeHair

#include <algorithm>
#include <climits>
#include <cmath>
#include <numeric>

namespace tresk {

namespace {

using plane2d::kRelativeHair;
using plane2d::Orient;
using plane2d::P2;

// Is c within `hair` of the segment a-b, given |Orient(a, b, c)| is already that small?
bool OnSegment(P2 a, P2 b, P2 c, double len, double hair) {
  double t = ((c.x - a.x) * (b.x - a.x) + (c.y - a.y) * (b.y - a.y)) / (len * len);
  return t >= -hair / len && t <= 1.0 + hair / len;
}

// A projected segment with its box widened by the hair.
struct Seg {
  P2 a, b;
  double len, xlo, xhi, ylo, yhi;
};

} // namespace

int CountDiagramCrossings(const std::vector<ChainAtom>& chain, const ProjectionFrame& frame,
                          bool& nearDegenerate) {
  return CountDiagramCrossingsUpTo(chain, frame, INT_MAX, nearDegenerate);
}

int CountDiagramCrossingsUpTo(const std::vector<ChainAtom>& chain, const ProjectionFrame& frame,
                              int limit, bool& nearDegenerate) {
  return CountCrossings(chain, frame, limit, false, nearDegenerate);
}

int CountCrossings(const std::vector<ChainAtom>& chain, const ProjectionFrame& frame, int limit,
                   bool stopWhenDegenerate, bool& nearDegenerate) {
  nearDegenerate = false;
  int n = static_cast<int>(chain.size());
  if (n < 4)
    return 0;
  // Called for 30 planes of every chain the fingerprint scan analyses and dozens of times per
  // closure by the over/under-pass rounds: small chains use the stack (a thread-local costs a
  // lookup per call), larger ones a per-thread buffer; boxes first, orientation signs next, the
  // hair tests last.
  constexpr int kStackSegments = 64;
  Seg local[kStackSegments];
  Seg* s = local;
  if (n > kStackSegments) {
    thread_local std::vector<Seg> buffer;
    buffer.resize(n);
    s = buffer.data();
  }
  double scale = 0.0;
  for (int i = 0; i < n; ++i) {
    Vec3 a = PositionOf(chain[i]);
    s[i].a = {Dot(a, frame.u), Dot(a, frame.v)};
    scale = std::max({scale, std::fabs(s[i].a.x), std::fabs(s[i].a.y)});
  }
  double hair = kRelativeHair * std::max(scale, 1e-300);
  for (int i = 0; i < n; ++i) {
    Seg& g = s[i];
    g.b = s[i + 1 < n ? i + 1 : 0].a;
    double dx = g.b.x - g.a.x, dy = g.b.y - g.a.y;
    double len = std::sqrt(dx * dx + dy * dy);
    if (len <= hair) {
      nearDegenerate = true;
      if (stopWhenDegenerate)
        return 0;
    }
    g.len = std::max(len, hair);
    g.xlo = std::min(g.a.x, g.b.x) - hair;
    g.xhi = std::max(g.a.x, g.b.x) + hair;
    g.ylo = std::min(g.a.y, g.b.y) - hair;
    g.yhi = std::max(g.a.y, g.b.y) + hair;
  }
  int crossings = 0;
  for (int i = 0; i + 2 < n; ++i) {
    const Seg& A = s[i];
    int last = i == 0 ? n - 1 : n; // segments 0 and n-1 are neighbours
    double ha = hair * A.len;
    for (int j = i + 2; j < last; ++j) {
      const Seg& B = s[j];
      if (B.xlo > A.xhi || A.xlo > B.xhi || B.ylo > A.yhi || A.ylo > B.yhi)
        continue;
      double o1 = Orient(A.a, A.b, B.a), o2 = Orient(A.a, A.b, B.b);
      if ((o1 > ha && o2 > ha) || (o1 < -ha && o2 < -ha))
        continue; // B clearly on one side of A's line
      double hb = hair * B.len;
      double o3 = Orient(B.a, B.b, A.a), o4 = Orient(B.a, B.b, A.b);
      if ((o3 > hb && o4 > hb) || (o3 < -hb && o4 < -hb))
        continue;
      if ((std::fabs(o1) <= ha && OnSegment(A.a, A.b, B.a, A.len, hair)) ||
          (std::fabs(o2) <= ha && OnSegment(A.a, A.b, B.b, A.len, hair)) ||
          (std::fabs(o3) <= hb && OnSegment(B.a, B.b, A.a, B.len, hair)) ||
          (std::fabs(o4) <= hb && OnSegment(B.a, B.b, A.b, B.len, hair))) {
        nearDegenerate = true;
        if (stopWhenDegenerate)
          return 0;
        continue;
      }
      if ((o1 > 0.0) != (o2 > 0.0) && (o3 > 0.0) != (o4 > 0.0) && ++crossings >= limit)
        return crossings;
    }
  }
  return crossings;
}

std::array<int, 30> RankPlanes(const std::vector<ChainAtom>& chain) {
  return RankPlanesTop(chain, 30);
}

std::array<int, 30> RankPlanesTop(const std::vector<ChainAtom>& chain, int wanted) {
  const auto& frames = ProjectionFrames();
  constexpr long kDegenerate = 1L << 40, kBeyond = 1L << 41;
  std::array<long, 30> key;
  std::array<long, 30> sorted; // the keys so far, ascending
  for (int k = 0; k < 30; ++k) {
    // A plane counting as many crossings as the wanted-th best so far cannot rank among the
    // wanted (earlier planes win ties): its count stops there.
    int limit = INT_MAX;
    if (wanted >= 1 && k >= wanted && sorted[wanted - 1] < kDegenerate)
      limit = static_cast<int>(sorted[wanted - 1]);
    bool nearDegenerate = false;
    long c = CountDiagramCrossingsUpTo(chain, frames[k], limit, nearDegenerate);
    key[k] = c >= limit ? kBeyond : (nearDegenerate ? kDegenerate : 0L) + c;
    sorted[k] = key[k];
    std::inplace_merge(sorted.begin(), sorted.begin() + k, sorted.begin() + k + 1);
  }
  std::array<int, 30> order;
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return key[a] < key[b]; });
  return order;
}

} // namespace tresk
