// Over/under-pass shortcuts in one projection (see overpass.hpp for why they keep the knot).
#include "preprocessing/overpass.hpp"
#include "preprocessing/plane2d.hpp" // for P2, Orient, kRelativeHair

#include <algorithm>
#include <cmath>

namespace tresk {

namespace {

using plane2d::kRelativeHair;
using plane2d::Orient;
using plane2d::P2;

// The offset from p to the closest point of the segment a-b.
inline P2 OffsetToSegment(P2 p, P2 a, P2 b) {
  double dx = b.x - a.x, dy = b.y - a.y;
  double len2 = dx * dx + dy * dy;
  double t = len2 > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / len2, 0.0, 1.0) : 0.0;
  return {p.x - a.x - t * dx, p.y - a.y - t * dy};
}

double PointSegmentDistance(P2 p, P2 a, P2 b) {
  const P2 o = OffsetToSegment(p, a, b);
  return std::hypot(o.x, o.y);
}

// A projected segment's box, with its squared length q and that length's square root r
// (computed once per edge rather than once per pair that Meet looks at).
struct Box2 {
  double xlo, xhi, ylo, yhi;
  double q, r;
};

Box2 BoxOf(P2 a, P2 b) {
  const double dx = b.x - a.x, dy = b.y - a.y, q = dx * dx + dy * dy;
  return {std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y), q,
          std::sqrt(q)};
}

// Meet's first test: boxes more than a hair apart.
inline bool BoxesApart(const Box2& a, const Box2& b, double hair) {
  return a.xhi + hair < b.xlo || b.xhi + hair < a.xlo || a.yhi + hair < b.ylo ||
         b.yhi + hair < a.ylo;
}

// How two projected segments meet: 0 apart, 1 properly crossing (with parameters from each
// segment's first point), -1 too close to call. A and B are their boxes; the callers have
// already found them within a hair of each other (the first test, otherwise the answer is 0).
int Meet(P2 a1, P2 a2, P2 b1, P2 b2, const Box2& A, const Box2& B, double hair, double& ta,
         double& tb) {
  double o1 = Orient(a1, a2, b1), o2 = Orient(a1, a2, b2);
  double o3 = Orient(b1, b2, a1), o4 = Orient(b1, b2, a2);
  // The lengths decide only near-degenerate cases. Their square roots bound them within a few
  // units in the last place (sums of squares well inside the normal range), so hypot is called
  // only when a bound with a wide margin cannot settle every test the way it would.
  double ax = a2.x - a1.x, ay = a2.y - a1.y, bx = b2.x - b1.x, by = b2.y - b1.y;
  const double qa = A.q, qb = B.q; // ax * ax + ay * ay and bx * bx + by * by
  if (qa >= 1e-250 && qa <= 1e250 && qb >= 1e-250 && qb <= 1e250) {
    double laLo = A.r * (1.0 - 1e-12), lbLo = B.r * (1.0 - 1e-12);
    double laHi = A.r * (1.0 + 1e-12), lbHi = B.r * (1.0 + 1e-12);
    if (laLo > hair && lbLo > hair && std::fabs(o1) > hair * laHi && std::fabs(o2) > hair * laHi &&
        std::fabs(o3) > hair * lbHi && std::fabs(o4) > hair * lbHi) {
      if ((o1 > 0.0) == (o2 > 0.0) || (o3 > 0.0) == (o4 > 0.0))
        return 0;
      ta = o3 / (o3 - o4);
      tb = o1 / (o1 - o2);
      return 1;
    }
  }
  double la = std::hypot(ax, ay), lb = std::hypot(bx, by);
  if (la <= hair || lb <= hair)
    return -1;
  if ((std::fabs(o1) <= hair * la && PointSegmentDistance(b1, a1, a2) <= hair) ||
      (std::fabs(o2) <= hair * la && PointSegmentDistance(b2, a1, a2) <= hair) ||
      (std::fabs(o3) <= hair * lb && PointSegmentDistance(a1, b1, b2) <= hair) ||
      (std::fabs(o4) <= hair * lb && PointSegmentDistance(a2, b1, b2) <= hair))
    return -1;
  if ((o1 > 0.0) == (o2 > 0.0) || (o3 > 0.0) == (o4 > 0.0))
    return 0;
  ta = o3 / (o3 - o4);
  tb = o1 / (o1 - o2);
  return 1;
}

// True when the edges b-a and b-c leave b in (nearly) the same direction in the diagram.
bool FoldsBack(P2 a, P2 b, P2 c) {
  double ux = a.x - b.x, uy = a.y - b.y, vx = c.x - b.x, vy = c.y - b.y;
  double cross = ux * vy - uy * vx, dot = ux * vx + uy * vy;
  return dot > 0.0 && std::fabs(cross) <= kRelativeHair * std::hypot(ux, uy) * std::hypot(vx, vy);
}

// A crossing as met along one edge: its parameter from the edge's first point and whether this
// edge passes over (+1) or under (-1) there.
struct Event {
  int edge;
  double t;
  int state;
};

// ShortcutBestPass's buffers, one set per thread.
struct ShortcutBuffers {
  std::vector<P2> p;
  std::vector<double> h;
  std::vector<std::vector<Event>> onEdge;
  std::vector<Event> events;
  std::vector<Box2> box;
};

// Out of line on purpose: a reference bound to a thread_local is folded into the variable, and
// every use of it then looks the thread's copy up again (hundreds of lookups per call); the
// pointer returned here is looked up once.
[[gnu::noinline]] ShortcutBuffers* ThreadShortcutBuffers() {
  thread_local ShortcutBuffers buffers;
  return &buffers;
}

struct Candidate {
  int gain = 0;
  int from = -1, to = -1; // the stretch runs from vertex `from` to vertex `to`
  int state = 0;
  double epsFrom = 0.0, epsTo = 0.0;
};

// Every crossing of non-adjacent edges of the closed polygon p (heights h along the viewing
// direction), in order of the pair (i, j), i < j: visit(i, j, ta, tb, hi, hj) with the
// parameters on both edges and both heights there; it returns false to stop. Pairs whose boxes
// are apart are skipped (Meet's own first test). False when the diagram is degenerate: a pair
// meets within `hair` of a vertex or an overlap, or the two heights at a crossing are that close.
template <typename Visit>
bool ForEachCrossing(const std::vector<P2>& p, const std::vector<double>& h,
                     const std::vector<Box2>& box, double hair, Visit visit) {
  const int m = static_cast<int>(p.size());
  for (int i = 0; i + 2 < m; ++i) {
    for (int j = i + 2; j < (i == 0 ? m - 1 : m); ++j) {
      if (BoxesApart(box[i], box[j], hair))
        continue;
      double ta, tb;
      int r = Meet(p[i], p[i + 1], p[j], p[j + 1 < m ? j + 1 : 0], box[i], box[j], hair, ta, tb);
      if (r < 0)
        return false;
      if (r == 0)
        continue;
      double hi = h[i] + ta * (h[(i + 1) % m] - h[i]);
      double hj = h[j] + tb * (h[(j + 1) % m] - h[j]);
      if (std::fabs(hi - hj) <= hair)
        return false;
      if (!visit(i, j, ta, tb, hi, hj))
        return false;
    }
  }
  return true;
}

} // namespace

// hypot is taken only for the edges whose squared offset is within a factor 1 + 1e-12 of the
// least one: hypot and the square root of the rounded sum of squares are both within a few units
// in the last place of the true length, so the edge with the least hypot is among them and the
// minimum is the same (outside the range where squares stay normal, every edge is taken).
double LeastDistance(P2 c, const std::vector<P2>& p, int first, int stop, int skip) {
  const int m = static_cast<int>(p.size());
  double least2 = INFINITY;
  for (int e = first; e != stop; e = e + 1 < m ? e + 1 : 0) {
    if (e == skip)
      continue;
    const P2 o = OffsetToSegment(c, p[e], p[e + 1 < m ? e + 1 : 0]);
    least2 = std::min(least2, o.x * o.x + o.y * o.y);
  }
  const bool normal = least2 >= 1e-280 && least2 <= 1e280;
  const double bound = least2 * (1.0 + 1e-12);
  double least = INFINITY;
  for (int e = first; e != stop; e = e + 1 < m ? e + 1 : 0) {
    if (e == skip)
      continue;
    const P2 o = OffsetToSegment(c, p[e], p[e + 1 < m ? e + 1 : 0]);
    if (!normal || o.x * o.x + o.y * o.y <= bound)
      least = std::min(least, std::hypot(o.x, o.y));
  }
  return least;
}

bool ShortcutBestPass(std::vector<ChainAtom>& chain, const ProjectionFrame& frame) {
  int m = static_cast<int>(chain.size());
  if (m < 5)
    return false;
  // Called many times per closure: the buffers live on the thread and keep their capacity.
  ShortcutBuffers& mine = *ThreadShortcutBuffers();
  std::vector<P2>& p = mine.p;
  std::vector<Box2>& box = mine.box;
  std::vector<double>& h = mine.h;
  std::vector<std::vector<Event>>& onEdge = mine.onEdge;
  std::vector<Event>& events = mine.events;
  p.resize(m);
  h.resize(m);
  double scale = 0.0, hLo = 0.0, hHi = 0.0;
  for (int i = 0; i < m; ++i) {
    Vec3 a = PositionOf(chain[i]);
    p[i] = {Dot(a, frame.u), Dot(a, frame.v)};
    h[i] = Dot(a, frame.dir);
    scale = std::max({scale, std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
    hLo = i == 0 ? h[i] : std::min(hLo, h[i]);
    hHi = i == 0 ? h[i] : std::max(hHi, h[i]);
  }
  double hair = kRelativeHair * std::max(scale, 1e-300);
  auto P = [&](int i) { return p[((i % m) + m) % m]; };
  // The edges' boxes: most pairs are told apart by them before Meet is called.
  box.resize(m);
  for (int i = 0; i < m; ++i)
    box[i] = BoxOf(p[i], p[i + 1 < m ? i + 1 : 0]);

  // All crossings of non-adjacent edges, as events on both edges.
  if (onEdge.size() < size_t(m))
    onEdge.resize(m);
  for (int i = 0; i < m; ++i)
    onEdge[i].clear();
  const bool clean = ForEachCrossing(
      p, h, box, hair, [&onEdge](int i, int j, double ta, double tb, double hi, double hj) {
        onEdge[i].push_back({i, ta, hi > hj ? 1 : -1});
        onEdge[j].push_back({j, tb, hj > hi ? 1 : -1});
        return true;
      });
  if (!clean)
    return false;
  events.clear();
  for (int i = 0; i < m; ++i) {
    std::vector<Event>& list = onEdge[i];
    std::sort(list.begin(), list.end(), [](const Event& a, const Event& b) { return a.t < b.t; });
    events.insert(events.end(), list.begin(), list.end());
  }
  int k = static_cast<int>(events.size());
  if (k == 0)
    return false;

  Candidate best;
  // Each maximal run of equal state, bounded by events of the other state.
  for (int start = 0; start < k; ++start) {
    int before = (start + k - 1) % k;
    if (events[before].state == events[start].state)
      continue; // not the start of a run
    int end = start;
    while (events[(end + 1) % k].state == events[start].state)
      end = (end + 1) % k;
    int after = (end + 1) % k;
    int from = (events[before].edge + 1) % m, to = events[after].edge;
    int length = (to - from + m) % m; // edges of the stretch
    if (length < 2 || length > m - 3)
      continue;
    // Every crossing on the stretch must belong to the run.
    int inside = 0;
    bool clean = true;
    for (int e = from; e != to && clean; e = (e + 1) % m)
      for (const Event& ev : onEdge[e]) {
        clean = clean && ev.state == events[start].state;
        ++inside;
      }
    if (!clean || inside == 0 || inside <= best.gain)
      continue; // (a stretch removing no more crossings than the best cannot beat it)
    // The stretch is lifted along its vertical curtain; an outside edge folding back along the
    // stretch's end edge in the diagram would lie in that curtain.
    if (FoldsBack(P(from - 1), P(from), P(from + 1)) || FoldsBack(P(to - 1), P(to), P(to + 1)))
      continue;
    // The chord from `from` to `to` against the edges that stay.
    P2 a = P(from), b = P(to);
    const Box2 chordBox = BoxOf(a, b);
    double chord = std::hypot(b.x - a.x, b.y - a.y);
    if (chord <= hair)
      continue;
    // Crossings of the chord with the edges that stay; the count stops once the stretch could
    // no longer beat the best gain so far.
    const int most = inside - best.gain - 1;
    int crossings = 0;
    bool sure = true;
    for (int e = to; e != from && sure && crossings <= most; e = e + 1 < m ? e + 1 : 0) {
      const int f = e + 1 < m ? e + 1 : 0;
      if (e == to || f == from || BoxesApart(chordBox, box[e], hair))
        continue;
      double ta, tb;
      int r = Meet(a, b, p[e], p[f], chordBox, box[e], hair, ta, tb);
      if (r < 0)
        sure = false;
      crossings += r > 0;
    }
    if (!sure || crossings > most)
      continue;
    // Only a stretch that would become the best needs the chord ends' clearance from the
    // edges that stay.
    const double nearTo = LeastDistance(b, p, to, from, to);
    const double nearFrom = LeastDistance(a, p, to, from, (from + m - 1) % m);
    if (nearFrom <= 1e3 * hair || nearTo <= 1e3 * hair)
      continue;
    int gain = inside - crossings;
    best.gain = gain;
    best.from = from;
    best.to = to;
    best.state = events[start].state;
    best.epsFrom = std::min(0.25, 0.5 * nearFrom / chord);
    best.epsTo = std::min(0.25, 0.5 * nearTo / chord);
  }
  if (best.gain <= 0)
    return false;

  // The lifted path: two points above (or below) the chord's ends, just inside the chord so that
  // the steep connectors cross nothing in the diagram.
  double margin = 0.05 * (hHi - hLo) + 1e3 * hair;
  double height = best.state > 0 ? hHi + margin : hLo - margin;
  auto lifted = [&](P2 q) { return AtomAt(q.x * frame.u + q.y * frame.v + height * frame.dir, 0); };
  P2 a = P(best.from), b = P(best.to);
  P2 nearA = {a.x + best.epsFrom * (b.x - a.x), a.y + best.epsFrom * (b.y - a.y)};
  P2 nearB = {b.x + best.epsTo * (a.x - b.x), b.y + best.epsTo * (a.y - b.y)};
  int length = (best.to - best.from + m) % m;
  std::vector<ChainAtom> out;
  out.reserve(m + 2);
  for (int i = 0; i < m; ++i) {
    int offset = (i - best.from + m) % m;
    if (offset >= 1 && offset < length)
      continue; // strictly inside the stretch
    out.push_back(chain[i]);
    if (i == best.from) {
      out.push_back(lifted(nearA));
      out.push_back(lifted(nearB));
    }
  }
  chain.swap(out);
  return true;
}

bool MinimalDiagram(const std::vector<ChainAtom>& chain, const ProjectionFrame& frame,
                    int crossings) {
  const int m = static_cast<int>(chain.size());
  // m segments cross in at most m(m-3)/2 pairs (INT_MAX stands for "every plane degenerate").
  if (m < 4 || crossings < 1 || crossings > static_cast<long long>(m) * (m - 3) / 2)
    return false;
  std::vector<P2> p(m);
  std::vector<double> h(m);
  double scale = 0.0;
  for (int i = 0; i < m; ++i) {
    Vec3 a = PositionOf(chain[i]);
    p[i] = {Dot(a, frame.u), Dot(a, frame.v)};
    h[i] = Dot(a, frame.dir);
    scale = std::max({scale, std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
  }
  const double hair = kRelativeHair * std::max(scale, 1e-300);
  // A crossing as passed along the chain: edge, parameter on it, crossing number, over or not.
  struct Pass {
    int edge;
    double t;
    int crossing;
    bool over;
  };
  std::vector<Box2> box(m);
  for (int i = 0; i < m; ++i)
    box[i] = BoxOf(p[i], p[i + 1 < m ? i + 1 : 0]);
  std::vector<Pass> passes;
  const bool clean = ForEachCrossing(
      p, h, box, hair,
      [&passes, crossings](int i, int j, double ta, double tb, double hi, double hj) {
        const int id = static_cast<int>(passes.size()) / 2;
        if (id >= crossings)
          return false; // more crossings than claimed
        passes.push_back({i, ta, id, hi > hj});
        passes.push_back({j, tb, id, hj > hi});
        return true;
      });
  if (!clean)
    return false;
  const int k = static_cast<int>(passes.size());
  if (k != 2 * crossings)
    return false;
  std::sort(passes.begin(), passes.end(), [](const Pass& a, const Pass& b) {
    return a.edge != b.edge ? a.edge < b.edge : a.t < b.t;
  });
  for (int q = 0; q < k; ++q) {
    const Pass &a = passes[q], &b = passes[(q + 1) % k];
    if (a.over == b.over || (a.edge == b.edge && a.t == b.t))
      return false; // not alternating, or two crossings at one point of an edge
  }
  std::vector<int> first(crossings, -1), second(crossings, -1);
  for (int q = 0; q < k; ++q)
    (first[passes[q].crossing] < 0 ? first : second)[passes[q].crossing] = q;
  for (int c = 0; c < crossings; ++c) {
    // Crossings met an odd number of times between the two passes of c.
    std::vector<int> seen(crossings, 0);
    for (int q = first[c] + 1; q < second[c]; ++q)
      seen[passes[q].crossing] ^= 1;
    if (std::find(seen.begin(), seen.end(), 1) == seen.end())
      return false; // nugatory
  }
  return true;
}

} // namespace tresk
