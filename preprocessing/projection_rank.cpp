// Crossing counts of a closed chain's diagrams, the ranking of projection planes by them, and
// the fewest crossings over the planes (directly, or from the classified pairs of a related chain).
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

// The segment from a to b of length len (LengthOf) in a diagram with the given hair; false when
// it is too short to be trusted (a near-degenerate diagram).
inline bool MakeSegOfLength(P2 a, P2 b, double len, double hair, Seg& g) {
  g.a = a;
  g.b = b;
  g.len = std::max(len, hair);
  g.xlo = std::min(a.x, b.x) - hair;
  g.xhi = std::max(a.x, b.x) + hair;
  g.ylo = std::min(a.y, b.y) - hair;
  g.yhi = std::max(a.y, b.y) + hair;
  return len > hair;
}

inline double LengthOf(P2 a, P2 b) {
  double dx = b.x - a.x, dy = b.y - a.y;
  return std::sqrt(dx * dx + dy * dy);
}

inline bool MakeSeg(P2 a, P2 b, double hair, Seg& g) {
  return MakeSegOfLength(a, b, LengthOf(a, b), hair, g);
}

enum class PairMeet { apart, crossing, degenerate };

// How two non-adjacent segments meet in the diagram. The answer does not depend on which of
// the two comes first: every test is made from both sides.
[[gnu::always_inline]] inline PairMeet Classify(const Seg& A, const Seg& B, double hair) {
  if (B.xlo > A.xhi || A.xlo > B.xhi || B.ylo > A.yhi || A.ylo > B.yhi)
    return PairMeet::apart;
  double ha = hair * A.len;
  double o1 = Orient(A.a, A.b, B.a), o2 = Orient(A.a, A.b, B.b);
  if ((o1 > ha && o2 > ha) || (o1 < -ha && o2 < -ha))
    return PairMeet::apart; // B clearly on one side of A's line
  double hb = hair * B.len;
  double o3 = Orient(B.a, B.b, A.a), o4 = Orient(B.a, B.b, A.b);
  if ((o3 > hb && o4 > hb) || (o3 < -hb && o4 < -hb))
    return PairMeet::apart;
  if ((std::fabs(o1) <= ha && OnSegment(A.a, A.b, B.a, A.len, hair)) ||
      (std::fabs(o2) <= ha && OnSegment(A.a, A.b, B.b, A.len, hair)) ||
      (std::fabs(o3) <= hb && OnSegment(B.a, B.b, A.a, B.len, hair)) ||
      (std::fabs(o4) <= hb && OnSegment(B.a, B.b, A.b, B.len, hair)))
    return PairMeet::degenerate;
  return (o1 > 0.0) != (o2 > 0.0) && (o3 > 0.0) != (o4 > 0.0) ? PairMeet::crossing
                                                              : PairMeet::apart;
}

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
    if (!MakeSeg(s[i].a, s[i + 1 < n ? i + 1 : 0].a, hair, s[i])) {
      nearDegenerate = true;
      if (stopWhenDegenerate)
        return 0;
    }
  }
  int crossings = 0;
  for (int i = 0; i + 2 < n; ++i) {
    const Seg& A = s[i];
    int last = i == 0 ? n - 1 : n; // segments 0 and n-1 are neighbours
    for (int j = i + 2; j < last; ++j) {
      PairMeet meet = Classify(A, s[j], hair);
      if (meet == PairMeet::degenerate) {
        nearDegenerate = true;
        if (stopWhenDegenerate)
          return 0;
      } else if (meet == PairMeet::crossing && ++crossings >= limit) {
        return crossings;
      }
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

int BestPlane(const std::vector<ChainAtom>& chain, int hint) {
  const auto& frames = ProjectionFrames();
  constexpr long kDegenerate = 1L << 40;
  // RankPlanes' key: near-degenerate planes after clean ones, then fewer crossings, then the
  // lower index. Once the best so far is clean, a plane can only win with fewer crossings (one
  // more allowed below the best's index, where it wins the tie), so its count stops there.
  int best = -1;
  long bestKey = 0;
  for (int step = 0; step < 30; ++step) {
    const int k = step == 0 ? hint : (step <= hint ? step - 1 : step);
    int limit = INT_MAX;
    if (best >= 0 && bestKey < kDegenerate)
      limit = static_cast<int>(bestKey) + (k < best ? 1 : 0);
    bool nearDegenerate = false;
    const int c = CountDiagramCrossingsUpTo(chain, frames[k], limit, nearDegenerate);
    if (c >= limit)
      continue;
    const long key = (nearDegenerate ? kDegenerate : 0L) + c;
    if (best < 0 || key < bestKey || (key == bestKey && k < best)) {
      best = k;
      bestKey = key;
    }
  }
  return best;
}

} // namespace tresk

namespace tresk {

int FewestCrossings(const std::vector<ChainAtom>& chain, int below,
                    const std::array<int, 30>* order) {
  int fewest = below;
  for (int k = 0; k < 30 && fewest > 0; ++k) {
    // A plane cannot lower the minimum once it has as many crossings: its count stops there.
    bool nearDegenerate = false;
    const int plane = order ? (*order)[k] : k;
    int c = CountCrossings(chain, ProjectionFrames()[plane], fewest, true, nearDegenerate);
    if (!nearDegenerate && c < fewest)
      fewest = c;
  }
  return fewest;
}

bool DiagramPairs::Build(const std::vector<ChainAtom>& chain) {
  const int n = static_cast<int>(chain.size());
  chain_.clear();
  if (n < 4 || n > kMaxVertices)
    return false;
  chain_ = chain;
  points_.resize(30 * size_t(n));
  lengths_.resize(30 * size_t(n));
  Seg s[kMaxVertices], narrow[kMaxVertices], wide[kMaxVertices];
  for (int p = 0; p < 30; ++p) {
    const ProjectionFrame& frame = ProjectionFrames()[p];
    Plane& pl = planes_[p];
    // Exactly CountCrossings' diagram: its points, scale, hair and segments.
    double scale = 0.0;
    pl.widest = 0;
    for (int i = 0; i < n; ++i) {
      Vec3 a = PositionOf(chain[i]);
      s[i].a = {Dot(a, frame.u), Dot(a, frame.v)};
      points_[size_t(p) * n + i] = {s[i].a.x, s[i].a.y};
      scale = std::max({scale, std::fabs(s[i].a.x), std::fabs(s[i].a.y)});
      if (std::max(std::fabs(s[i].a.x), std::fabs(s[i].a.y)) == scale)
        pl.widest = i;
    }
    pl.scale = scale;
    pl.hair = kRelativeHair * std::max(scale, 1e-300);
    pl.narrowHair = pl.hair / kHairRange;
    pl.wideHair = pl.hair * kHairRange;
    pl.shortSegments = 0;
    pl.crossings = pl.degeneratePairs = 0;
    uint64_t shortWide = 0;
    for (int i = 0; i < n; ++i) {
      const P2 b = s[i + 1 < n ? i + 1 : 0].a;
      const double len = LengthOf(s[i].a, b);
      lengths_[size_t(p) * n + i] = len;
      MakeSegOfLength(s[i].a, b, len, pl.narrowHair, narrow[i]);
      if (!MakeSegOfLength(s[i].a, b, len, pl.wideHair, wide[i]))
        shortWide |= uint64_t(1) << i;
      if (!MakeSegOfLength(s[i].a, b, len, pl.hair, s[i]))
        pl.shortSegments |= uint64_t(1) << i;
      pl.cross[i] = pl.degenerate[i] = pl.unsteady[i] = 0;
      pl.crossCount[i] = pl.degenerateCount[i] = 0;
    }
    for (int i = 0; i + 2 < n; ++i) {
      int last = i == 0 ? n - 1 : n;
      for (int j = i + 2; j < last; ++j) {
        const Seg &A = wide[i], &B = wide[j];
        if (B.xlo > A.xhi || A.xlo > B.xhi || B.ylo > A.yhi || A.ylo > B.yhi)
          continue; // apart at every hair up to the widest (Classify's first test)
        PairMeet meet = Classify(s[i], s[j], pl.hair);
        // A segment too short at some hair of the range has a length that depends on it. A
        // pair crossing at the widest hair crosses at every narrower one (neither apart nor too
        // close to call there), so only other pairs need the narrowest hair's answer.
        const PairMeet atWide = Classify(wide[i], wide[j], pl.wideHair);
        if (((shortWide >> i) & 1) || ((shortWide >> j) & 1) ||
            (atWide != PairMeet::crossing &&
             Classify(narrow[i], narrow[j], pl.narrowHair) != atWide)) {
          pl.unsteady[i] |= uint64_t(1) << j;
          pl.unsteady[j] |= uint64_t(1) << i;
        }
        if (meet == PairMeet::apart)
          continue;
        const bool crossing = meet == PairMeet::crossing;
        std::array<uint64_t, kMaxVertices>& bits = crossing ? pl.cross : pl.degenerate;
        std::array<int, kMaxVertices>& count = crossing ? pl.crossCount : pl.degenerateCount;
        bits[i] |= uint64_t(1) << j;
        bits[j] |= uint64_t(1) << i;
        ++count[i];
        ++count[j];
        ++(crossing ? pl.crossings : pl.degeneratePairs);
      }
    }
  }
  return true;
}

std::array<int, 30> DiagramPairs::Rank() const {
  // RankPlanes' keys from the full counts.
  constexpr long kDegenerate = 1L << 40;
  std::array<long, 30> key;
  for (int k = 0; k < 30; ++k)
    key[k] = (planes_[k].shortSegments != 0 || planes_[k].degeneratePairs != 0 ? kDegenerate : 0L) +
             planes_[k].crossings;
  std::array<int, 30> order;
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return key[a] < key[b]; });
  return order;
}

int DiagramPairs::Fewest(const std::vector<ChainAtom>& other, int below,
                         const std::array<int, 30>& order) {
  const int n = static_cast<int>(chain_.size()), m = static_cast<int>(other.size());
  if (n == 0 || m < 4 || m > 2 * kMaxVertices)
    return FewestCrossings(other, below, &order);
  // Each vertex of `other` found among the chain's, in order (each at most once, later than the
  // one before): a segment between two vertices found at consecutive positions is one of the
  // chain's segments. Two such segments are neighbours in `other` exactly when they are in the
  // chain, so the chain's pairs say how they meet.
  std::vector<int>& from = from_;
  from.assign(m, -1);
  for (int t = 0, next = 0; t < m && next < n; ++t) {
    for (int k = next; k < n; ++k) {
      if (chain_[k].x == other[t].x && chain_[k].y == other[t].y && chain_[k].z == other[t].z) {
        from[t] = k;
        next = k + 1;
        break;
      }
    }
  }
  int segment[kMaxVertices * 2]; // the chain's segment for each of other's, or -1
  uint64_t kept = 0, keptVertices = 0;
  for (int t = 0; t < m; ++t) {
    const int a = from[t], b = from[t + 1 < m ? t + 1 : 0];
    segment[t] = a >= 0 && b >= 0 && b == (a + 1 < n ? a + 1 : 0) ? a : -1;
    if (segment[t] >= 0)
      kept |= uint64_t(1) << segment[t];
    if (a >= 0)
      keptVertices |= uint64_t(1) << a;
  }
  int fresh[kMaxVertices * 2], freshCount = 0; // other's vertices not found in the chain
  for (int t = 0; t < m; ++t)
    if (from[t] < 0)
      fresh[freshCount++] = t;
  const uint64_t all = n == 64 ? ~uint64_t(0) : (uint64_t(1) << n) - 1;
  const uint64_t gone = all & ~kept;
  int where[kMaxVertices]; // other's segment for each kept segment of the chain
  for (int t = 0; t < m; ++t)
    if (segment[t] >= 0)
      where[segment[t]] = t;
  Seg s[kMaxVertices * 2];
  int fewest = below;
  for (int k = 0; k < 30 && fewest > 0; ++k) {
    const int p = order[k];
    const Plane& pl = planes_[p];
    const ProjectionFrame& frame = ProjectionFrames()[p];
    const std::array<double, 2>* known = &points_[size_t(p) * n];
    // The diagram's scale: the largest coordinate of the kept vertices (the chain's own scale
    // while the vertex setting it is kept) and of the new ones. A maximum does not depend on
    // the order it is taken in.
    double scale = 0.0;
    if (keptVertices >> pl.widest & 1) {
      scale = pl.scale;
    } else {
      for (int t = 0; t < m; ++t)
        if (from[t] >= 0)
          scale = std::max({scale, std::fabs(known[from[t]][0]), std::fabs(known[from[t]][1])});
    }
    for (int f = 0; f < freshCount; ++f) {
      const int t = fresh[f];
      Vec3 a = PositionOf(other[t]);
      s[t].a = {Dot(a, frame.u), Dot(a, frame.v)};
      scale = std::max({scale, std::fabs(s[t].a.x), std::fabs(s[t].a.y)});
    }
    // The hair CountCrossings would use for `other` in this plane.
    const double hair = kRelativeHair * std::max(scale, 1e-300);
    const bool same = scale == pl.scale;
    const bool steady = !same && pl.narrowHair <= hair && hair <= pl.wideHair;
    // The pairs of kept segments as classified at the chain's hair. With a hair at least as
    // wide a pair crossing or too close to call stays crossing or too close to call (every
    // tolerance test widens, and a rounded operation is monotone), and a segment too short
    // stays too short: at least that many crossings, or a near-degenerate diagram.
    if (scale >= pl.scale && (pl.shortSegments & kept))
      continue;
    int crossings = pl.crossings, degenerate = pl.degeneratePairs;
    int twiceBoth = 0, twiceBothDegenerate = 0;
    for (uint64_t rest = gone; rest != 0; rest &= rest - 1) {
      const int i = __builtin_ctzll(rest);
      crossings -= pl.crossCount[i];
      degenerate -= pl.degenerateCount[i];
      for (uint64_t b = pl.cross[i] & gone; b != 0; b &= b - 1)
        ++twiceBoth;
      for (uint64_t b = pl.degenerate[i] & gone; b != 0; b &= b - 1)
        ++twiceBothDegenerate;
    }
    crossings += twiceBoth / 2;
    degenerate += twiceBothDegenerate / 2;
    if (scale >= pl.scale && (degenerate > 0 || crossings >= fewest))
      continue;
    if (same || steady) {
      // The same hair: the kept pairs are exactly as counted. A hair in the steady range: so
      // are they, except the unsteady ones, classified again here. Then the pairs with a new
      // segment.
      bool clean = true;
      for (int t = 0; t < m; ++t)
        if (from[t] >= 0)
          s[t].a = {known[from[t]][0], known[from[t]][1]};
      // A kept segment has the same ends, so the same length.
      const double* length = &lengths_[size_t(p) * n];
      for (int t = 0; t < m && clean; ++t) {
        const P2 b = s[t + 1 < m ? t + 1 : 0].a;
        const double len = segment[t] >= 0 ? length[segment[t]] : LengthOf(s[t].a, b);
        clean = MakeSegOfLength(s[t].a, b, len, hair, s[t]) || (same && segment[t] >= 0);
      }
      for (uint64_t rest = steady && clean ? kept : 0; rest != 0; rest &= rest - 1) {
        const int i = __builtin_ctzll(rest);
        const uint64_t later = ~((uint64_t(2) << i) - 1);
        for (uint64_t b = pl.unsteady[i] & kept & later; b != 0; b &= b - 1) {
          const int j = __builtin_ctzll(b);
          crossings -= static_cast<int>((pl.cross[i] >> j) & 1);
          degenerate -= static_cast<int>((pl.degenerate[i] >> j) & 1);
          const PairMeet meet = Classify(s[where[i]], s[where[j]], hair);
          crossings += meet == PairMeet::crossing;
          degenerate += meet == PairMeet::degenerate;
        }
      }
      if (!clean || degenerate > 0)
        continue; // a near-degenerate diagram
      for (int t = 0; t < m && clean && crossings < fewest; ++t) {
        if (segment[t] >= 0)
          continue;
        // Every other segment but the two neighbours; two new ones meet once (from the first).
        for (int u = 0; u < m; ++u) {
          const int gap = u > t ? u - t : t - u;
          if (gap <= 1 || gap == m - 1 || (segment[u] < 0 && u < t))
            continue;
          PairMeet meet = Classify(s[t], s[u], hair);
          if (meet == PairMeet::degenerate) {
            clean = false;
            break;
          }
          if (meet == PairMeet::crossing && ++crossings >= fewest)
            break;
        }
      }
      if (clean && crossings < fewest)
        fewest = crossings;
      continue;
    }
    // Another hair: every pair is counted again.
    bool nearDegenerate = false;
    int c = CountCrossings(other, frame, fewest, true, nearDegenerate);
    if (!nearDegenerate && c < fewest)
      fewest = c;
  }
  return fewest;
}

} // namespace tresk
