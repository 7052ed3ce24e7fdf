// ProjectChain: a closed chain seen along one of 60 directions. With the flag set, the
// directions of a chain of modest size are ranked for that chain, fewest crossings first, so
// that index 0 gives the simplest diagram the 60 fixed directions offer.
#include "preprocessing/chainprep.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "preprocessing/directions.hpp" // for ProjectionFrames
#include "preprocessing/projection_rank.hpp"
#include "preprocessing/vec3.hpp" // for SamePoints

using tresk::BestPlane;
using tresk::PositionOf;
using tresk::ProjectionFrame;
using tresk::ProjectionFrames;
using tresk::RankPlanes;
using tresk::RankPlanesTop;
using tresk::Vec3;

namespace {

// Chains longer than this keep the fixed order (ranking costs 30 quadratic crossing counts).
constexpr size_t kMaxRankedSize = 256;

// The ranking of the last chain seen on this thread: callers project one chain in several
// directions in a row, most often only in the first. Only the first `valid` entries are known:
// BestPlane counts each plane only as far as it could still win, so the best plane costs far
// less than the whole order, which is computed when a later direction is asked.
struct RankCache {
  std::vector<ChainAtom> chain;
  std::array<int, 30> order{};
  int valid = 0;
};

// The plane of rank `rank` (0..29) for `chain`, as in RankPlanes.
int RankedPlane(const std::vector<ChainAtom>& chain, int rank) {
  thread_local RankCache cache;
  const bool same = !cache.chain.empty() && tresk::SamePoints(cache.chain, chain);
  if (!same || cache.valid <= rank) {
    // The best plane of the chain before is tried first: copies analysed in a row are often
    // closures of neighbouring subchains, whose best planes agree.
    // (The fingerprint analyses every copy in direction 1: the two best planes suffice there.)
    cache.valid = rank == 0 ? 1 : rank == 1 ? 2 : 30;
    if (cache.valid == 1)
      cache.order[0] =
          BestPlane(chain, cache.order[0] >= 0 && cache.order[0] < 30 ? cache.order[0] : 0);
    else
      cache.order = RankPlanesTop(chain, cache.valid);
    if (!same)
      cache.chain = chain;
  }
  return cache.order[rank];
}

} // namespace

std::vector<Edge> ProjectChain(const std::vector<ChainAtom>& chain, int direction, bool flag) {
  std::vector<Edge> edges;
  size_t n = chain.size();
  if (n < 2)
    return edges;
  int d = direction % 60;
  if (d < 0)
    d += 60;
  int plane = d % 30;
  if (flag && n <= kMaxRankedSize)
    plane = RankedPlane(chain, plane);
  const ProjectionFrame& f = ProjectionFrames()[d < 30 ? plane : plane + 30];
  edges.reserve(n);
  auto project = [&](const ChainAtom& a, double& x, double& y, double& z) {
    Vec3 p = PositionOf(a);
    x = Dot(p, f.u);
    y = Dot(p, f.v);
    z = Dot(p, f.dir);
  };
  Edge e{};
  project(chain[0], e.x1, e.y1, e.z1);
  double x0 = e.x1, y0 = e.y1, z0 = e.z1;
  for (size_t i = 0; i < n; ++i) {
    if (i + 1 < n) {
      project(chain[i + 1], e.x2, e.y2, e.z2);
    } else {
      e.x2 = x0, e.y2 = y0, e.z2 = z0;
    }
    e.tag = static_cast<int32_t>(i); // the chain position of the edge's first atom
    edges.push_back(e);
    e.x1 = e.x2, e.y1 = e.y2, e.z1 = e.z2;
  }
  return edges;
}
