// The knot map: the fingerprint's coarse grid analysed under one set of closures, its knotted
// regions found as connected sets of one dominant type, each region's core searched exactly over
// the refinement windows, and a slipknot's loop walked atom by atom from its core.
#include "scan/knotMap.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <set>
#include <utility>

#include "core/outcomes.hpp"           // for the counts slots
#include "knots/whichKnot.hpp"         // for GiveTheNameOfKnot_allProj
#include "knots/knotTable.hpp"         // for EnsureKnotsFilled, knots
#include "preprocessing/readChain.hpp" // for tresk::CheckCoordinates
#include "scan/subchainVotes.hpp"      // for tresk::SubchainVotes, tresk::ShortestKept

namespace tresk {
namespace {

constexpr int kCountSlots = tresk::kOrdinals;
constexpr int kFirstStatusRow = tresk::kUnknown; // 39..41: not in the table, failed, inside
constexpr int kShortestSubchain = 6;
// Extensions of a core in a row that must lose the type before the loop ends there: a closure
// or two can untie one subchain that its neighbours keep.
constexpr int kPatience = 2;

bool IsKnot(int ordinal) {
  return ordinal > 0 && ordinal < kFirstStatusRow;
}

double Distance(const ChainAtom& a, const ChainAtom& b) {
  return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) +
                   (a.z - b.z) * (a.z - b.z));
}

// The first of first..limit (walking by `dir`, +1 or -1) at which `lost(k)` holds and keeps
// holding for kPatience more positions (within range); 0 when none. Positions are analysed a
// few at a time so that the closures of several share one batch.
template <typename Lost, typename Batch>
int FirstLost(int from, int limit, int dir, Lost lost, Batch batch) {
  constexpr int kAhead = 8;
  for (int k = from; dir > 0 ? k <= limit : k >= limit; k += dir) {
    if ((k - from) % kAhead == 0)
      batch(k, dir > 0 ? std::min(limit, k + dir * (kAhead - 1))
                       : std::max(limit, k + dir * (kAhead - 1)));
    if (!lost(k))
      continue;
    bool stays = true;
    for (int p = 1; p <= kPatience && stays; ++p) {
      const int q = k + dir * p;
      if (dir > 0 ? q > limit : q < limit)
        break;
      stays = lost(q);
    }
    if (stays)
      return k;
  }
  return 0;
}

class Mapper {
public:
  Mapper(const std::vector<ChainAtom>& chain, const MapOptions& options)
      : chain_(chain), n_(static_cast<int>(chain.size())),
        step_(options.step > 0 ? options.step : std::clamp(n_ / 10, 1, 10)),
        votes_(chain, options.closureMethod, options.closures, options.seed, options.naming,
               options.threads) {}

  KnotMap Run() {
    KnotMap map;
    map.atoms = n_;
    map.step = step_;
    const std::vector<Span> grid = CoarseGrid(n_, step_, kShortestSubchain);
    votes_.Analyse(grid);
    if (n_ >= 2) {
      std::vector<int> tally = votes_.Tally(1, n_);
      tally.resize(kCountSlots, 0);
      map.verdict = GiveTheNameOfKnot_allProj(tally.data());
      const auto [ordinal, count] = votes_.Dominant(1, n_);
      map.ordinal = ordinal;
      map.share = static_cast<double>(count) / votes_.Closures();
    }

    // Knotted grid subchains by (first, last), with their type.
    std::map<Span, int> typed;
    for (const Span& s : grid) {
      const auto [ordinal, count] = votes_.Dominant(s.first, s.second);
      if (IsKnot(ordinal) && 2 * count > votes_.Closures())
        typed[s] = ordinal;
    }
    std::vector<std::pair<int, std::set<Span>>> regions = Regions(typed);

    const bool knotted = IsKnot(map.ordinal);
    int whole = -1;
    if (knotted) {
      // The region of the whole chain's type holding its longest subchain.
      int longest = -1;
      for (std::size_t r = 0; r < regions.size(); ++r) {
        if (regions[r].first != map.ordinal)
          continue;
        for (const Span& s : regions[r].second)
          if (s.second - s.first > longest)
            longest = s.second - s.first, whole = static_cast<int>(r);
      }
      KnottedRegion knot =
          whole >= 0 ? Region(map.ordinal, &regions[static_cast<std::size_t>(whole)].second)
                     : Region(map.ordinal, nullptr);
      map.regions.push_back(knot);
    }
    std::vector<KnottedRegion> slipknots;
    for (std::size_t r = 0; r < regions.size(); ++r) {
      if (static_cast<int>(r) == whole)
        continue;
      KnottedRegion region = Region(regions[r].first, &regions[r].second);
      if (!region.found)
        continue;
      region.slipknot = true;
      // A slipknot: the core extended to one end of the chain loses its type.
      if (!votes_.Kept(region.first, n_, region.ordinal))
        region.cSide = Loop(region, +1);
      if (!votes_.Kept(1, region.last, region.ordinal))
        region.nSide = Loop(region, -1);
      if (region.cSide.loopLast == 0 && region.nSide.loopFirst == 0)
        continue; // the same knot seen again, not undone on either side
      slipknots.push_back(region);
    }
    std::sort(slipknots.begin(), slipknots.end(),
              [](const KnottedRegion& a, const KnottedRegion& b) {
                return std::make_pair(a.first, a.last) < std::make_pair(b.first, b.last);
              });
    map.regions.insert(map.regions.end(), slipknots.begin(), slipknots.end());
    map.chainClass = knotted ? 'K' : slipknots.empty() ? 'U' : 'S';
    for (const KnottedRegion& r : map.regions)
      map.types += (map.types.empty() ? "" : " ") + r.type;
    map.subchains = votes_.Analysed();
    return map;
  }

private:
  // Connected sets of grid subchains of one type, neighbours one grid step apart in either end.
  std::vector<std::pair<int, std::set<Span>>> Regions(const std::map<Span, int>& typed) const {
    std::vector<std::pair<int, std::set<Span>>> regions;
    std::set<Span> seen;
    for (const auto& [start, type] : typed) {
      if (seen.count(start))
        continue;
      std::set<Span> region;
      std::vector<Span> stack{start};
      seen.insert(start);
      while (!stack.empty()) {
        const Span s = stack.back();
        stack.pop_back();
        region.insert(s);
        const Span next[] = {{s.first - step_, s.second},
                             {s.first + step_, s.second},
                             {s.first, s.second - step_},
                             {s.first, s.second + step_}};
        for (const Span& t : next) {
          const auto found = typed.find(t);
          if (found != typed.end() && found->second == type && seen.insert(t).second)
            stack.push_back(t);
        }
      }
      regions.emplace_back(type, std::move(region));
    }
    return regions;
  }

  KnottedRegion Region(int ordinal, const std::set<Span>* cells) {
    KnottedRegion region;
    region.ordinal = ordinal;
    region.type = KnotTypeText(ordinal);
    region.cells = cells ? static_cast<int>(cells->size()) : 0;
    if (!cells)
      return region;
    GridWindows windows(votes_, ordinal, step_, kShortestSubchain, cells);
    const Kept kept = ShortestKept(votes_, ordinal, kShortestSubchain, n_,
                                   [&](int length) { return windows.AtLength(length); });
    if (!kept.found)
      return region;
    region.found = true;
    region.first = kept.first, region.last = kept.last;
    region.firstId = chain_[static_cast<std::size_t>(kept.first - 1)].id;
    region.lastId = chain_[static_cast<std::size_t>(kept.last - 1)].id;
    region.coreShare = static_cast<double>(kept.votes) / votes_.Closures();
    region.nTail = kept.first - 1;
    region.cTail = n_ - kept.last;
    return region;
  }

  // The loop on the C side (dir +1: the core's last atom moves towards the C end) or the N side
  // (dir -1).
  SlipknotLoop Loop(const KnottedRegion& r, int dir) {
    SlipknotLoop loop;
    const int a = r.first, b = r.last, t = r.ordinal;
    if (dir > 0) {
      const int end = FirstLost(
          b + 1, n_, +1, [&](int k) { return !votes_.Kept(a, k, t); },
          [&](int from, int to) {
            std::vector<Span> spans;
            for (int k = from; k <= to; ++k)
              spans.emplace_back(a, k);
            votes_.Analyse(spans);
          });
      if (end == 0)
        return loop;
      loop.loopFirst = b + 1, loop.loopLast = end;
      loop.segmentFirst = Farthest(b, b + 1, end), loop.segmentLast = end;
    } else {
      const int end = FirstLost(
          a - 1, 1, -1, [&](int k) { return !votes_.Kept(k, b, t); },
          [&](int from, int to) {
            std::vector<Span> spans;
            for (int k = to; k <= from; ++k)
              spans.emplace_back(k, b);
            votes_.Analyse(spans);
          });
      if (end == 0)
        return loop;
      loop.loopFirst = end, loop.loopLast = a - 1;
      loop.segmentFirst = end, loop.segmentLast = Farthest(a, end, a - 1);
    }
    return loop;
  }

  // The position of lo..hi farthest from atom `from` (the earliest on ties).
  int Farthest(int from, int lo, int hi) const {
    int best = lo;
    double far = -1.0;
    for (int k = lo; k <= hi; ++k) {
      const double d = Distance(chain_[static_cast<std::size_t>(from - 1)],
                                chain_[static_cast<std::size_t>(k - 1)]);
      if (d > far)
        far = d, best = k;
    }
    return best;
  }

  const std::vector<ChainAtom>& chain_;
  int n_, step_;
  SubchainVotes votes_;
};

} // namespace

std::string KnotTypeText(int ordinal) {
  EnsureKnotsFilled();
  return ordinal >= 0 && ordinal < kCountSlots ? knots[ordinal].name : std::string("?");
}

std::string MapProblem(const std::vector<ChainAtom>& chain, const MapOptions& options) {
  const std::string coordinates = CheckCoordinates(chain);
  if (!coordinates.empty())
    return coordinates;
  if (options.closureMethod < 0 || options.closureMethod > 4)
    return "the closure method must be 0 to 4";
  if (options.closures < 1)
    return "the number of closures must be at least 1";
  if (options.step < 0)
    return "the grid step must not be negative";
  return "";
}

KnotMap MapKnots(const std::vector<ChainAtom>& chain, const MapOptions& options) {
  EnsureKnotsFilled();
  if (chain.size() < static_cast<std::size_t>(kShortestSubchain)) {
    KnotMap map;
    map.atoms = static_cast<int>(chain.size());
    return map;
  }
  return Mapper(chain, options).Run();
}

ChainClass ClassifyChain(const std::vector<ChainAtom>& chain, const MapOptions& options) {
  const KnotMap map = MapKnots(chain, options);
  return {map.chainClass, map.types};
}

} // namespace tresk
