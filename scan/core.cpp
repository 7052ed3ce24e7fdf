// The knot core of an open chain: the dominant type from the vote over closures of the whole
// chain, then a walk along the boundary of the region of subchains that keep it (coarse grid,
// then step 1 around the shortest candidates), each subchain closed the same ways, reduced in
// single precision in one batch and named on the worker threads.
#include "scan/core.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <numeric>
#include <utility>

#include "chain/naming.hpp"            // for tresk::VoteOverClosures, tresk::KnotInDirection
#include "entry/entry.hpp"             // for GiveTheNameOfKnot
#include "knots/knotTable.hpp"         // for EnsureKnotsFilled
#include "preprocessing/chainprep.hpp" // for the closures
#include "preprocessing/readChain.hpp" // for tresk::CheckCoordinates
#include "reduction/batch.hpp"         // for tresk::ReduceBatch
#include "scan/prepare.hpp"            // for CopyJobToChainAtom
#include "scan/workers.hpp"            // for tresk::WorkerPool

namespace tresk {
namespace {

constexpr int kCountSlots = 42;
constexpr int kFirstStatusRow = 39; // rows 39..41: not in the table, failed projection, inside
constexpr int kProblemWithProjecting = 40;
constexpr int kDirectionsPerClosure = 30;
constexpr double kClosureParameter = 1.25;
// A subchain of fewer atoms cannot hold a knot once closed.
constexpr int kShortestSubchain = 6;
// Coarse candidates refined at step 1, shortest first.
constexpr int kRefinedCandidates = 3;
// Steps in a row that may lose the type before the walk stops shortening a subchain.
constexpr int kPatience = 2;

uint64_t SplitMix(uint64_t x) {
  x += 0x9E3779B97F4A7C15ull;
  x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ull;
  x = (x ^ (x >> 27)) * 0x94D049BB133111EBull;
  return x ^ (x >> 31);
}

void Close(std::vector<ChainAtom>& sub, int method) {
  switch (method) {
  case 1:
    CloseChain_OUT(sub, kClosureParameter);
    break;
  case 2:
    CloseChain_2points(sub, kClosureParameter);
    break;
  case 3:
    CloseChain_1point(sub, kClosureParameter);
    break;
  case 4:
    CloseChain_1direction(sub);
    break;
  default:
    break; // 0: the reduction joins the last atom to the first
  }
}

// The chain moved so that its centroid is the origin: subchains are reduced in single
// precision, which keeps its digits near the origin.
std::vector<ChainAtom> Centred(const std::vector<ChainAtom>& chain) {
  double c[3] = {0, 0, 0};
  for (const ChainAtom& a : chain)
    c[0] += a.x, c[1] += a.y, c[2] += a.z;
  std::vector<ChainAtom> moved = chain;
  const double n = static_cast<double>(chain.size());
  for (ChainAtom& a : moved)
    a.x -= c[0] / n, a.y -= c[1] / n, a.z -= c[2] / n;
  return moved;
}

int Steps(int n) {
  return std::clamp(n / 10, 1, 10);
}

class CoreSearch {
public:
  CoreSearch(const std::vector<ChainAtom>& chain, const CoreOptions& options, int target)
      : chain_(Centred(chain)), options_(options), target_(target), pool_(options.threads) {
    const int closures = options.closureMethod == 0 || options.closureMethod == 1
                             ? 1
                             : std::max(1, options.closures);
    for (int k = 0; k < closures; ++k)
      seeds_.push_back(static_cast<unsigned>(SplitMix(SplitMix(options.seed) + k) >> 32));
  }

  int Closures() const { return static_cast<int>(seeds_.size()); }
  int Analysed() const { return static_cast<int>(votes_.size()); }

  // Closures of atoms first..last (1-based) that give the dominant type; memoised.
  int Votes(int first, int last) {
    const auto key = std::make_pair(first, last);
    const auto found = votes_.find(key);
    if (found != votes_.end())
      return found->second;
    return votes_[key] = Count(first, last);
  }
  bool Kept(int first, int last) { return 2 * Votes(first, last) > Closures(); }

  // Walks the boundary of the kept region from the kept subchain (i0, j0) in steps of `step`:
  // for first atoms i0, i0 + step, ... up to iMax, the last atom goes down (not below jMin)
  // while the shorter subchain is kept, and up (not above jMax) until one is kept; the walk ends
  // at a first atom with no kept subchain. Kept subchains get shorter towards the first atom of
  // the knot and longer away from it, so the walk visits the shortest of them. Returns the
  // shortest kept last atom found for each first atom.
  std::vector<std::pair<int, int>> Walk(int i0, int iMax, int j0, int jMin, int jMax, int step) {
    std::vector<std::pair<int, int>> corners;
    int j = j0;
    for (int i = i0; i <= iMax; i += step) {
      if (j - i + 1 < kShortestSubchain || !Kept(i, j)) {
        bool kept = false;
        while (!kept && j + step <= jMax) {
          j += step;
          kept = j - i + 1 >= kShortestSubchain && Kept(i, j);
        }
        if (!kept)
          break;
      }
      j = Lowered(i, j, jMin, step);
      corners.emplace_back(i, j);
    }
    return corners;
  }

  // The last atom of (first, j) lowered in steps of `step`, not below jMin, as far as the
  // subchain is kept. A few closures can untie a subchain that a shorter one keeps, so a step
  // that loses the type is looked past: the walk goes on from the next kept subchain within
  // kPatience steps.
  int Lowered(int first, int j, int jMin, int step) {
    for (int miss = 0, k = j - step;
         miss < kPatience && k >= jMin && k - first + 1 >= kShortestSubchain; k -= step) {
      if (Kept(first, k)) {
        j = k;
        miss = 0;
      } else {
        ++miss;
      }
    }
    return j;
  }

  // The shortest kept subchain analysed: ties go to more votes, then to the earlier start.
  bool Shortest(int& first, int& last, int& votes) const {
    bool any = false;
    for (const auto& [where, v] : votes_) {
      if (2 * v <= Closures())
        continue;
      const int length = where.second - where.first;
      if (!any || length < last - first || (length == last - first && v > votes)) {
        first = where.first, last = where.second, votes = v;
        any = true;
      }
    }
    return any;
  }

private:
  int Count(int first, int last) {
    points_.clear();
    jobs_.clear();
    int32_t offset = 0;
    for (unsigned s : seeds_) {
      // Closure k of every subchain draws from the same seed: neighbouring subchains are
      // compared under the same closures, so their difference is the chain's, not the dice's.
      std::srand(s);
      sub_.assign(chain_.begin() + (first - 1), chain_.begin() + last);
      Close(sub_, options_.closureMethod);
      const int32_t length = static_cast<int32_t>(sub_.size());
      jobs_.push_back(Job{offset, length, first, last, first, last});
      for (const ChainAtom& a : sub_)
        points_.push_back(
            fPointR3{static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(a.z)});
      // The batch layout: every job is followed by two copies of its last point.
      points_.push_back(points_.back());
      points_.push_back(points_.back());
      offset += length + 2;
    }
    const std::function<void(std::size_t)> quiet = [](std::size_t) {};
    ReduceBatch(points_, jobs_, [&](std::size_t count, const std::function<void(std::size_t)>& f) {
      pool_.Run(count, f, quiet);
    });
    ordinals_.assign(jobs_.size(), 0);
    pool_.Run(
        jobs_.size(),
        [&](std::size_t k) {
          thread_local std::vector<ChainAtom> work;
          CopyJobToChainAtom(points_, work, jobs_[k]);
          int ordinal = kProblemWithProjecting;
          for (int d = 0; d < kDirectionsPerClosure && ordinal == kProblemWithProjecting; ++d)
            ordinal = KnotInDirection(work, d, options_.naming);
          ordinals_[k] = ordinal;
        },
        quiet);
    return static_cast<int>(std::count(ordinals_.begin(), ordinals_.end(), target_));
  }

  std::vector<ChainAtom> chain_;
  const CoreOptions& options_;
  int target_;
  WorkerPool pool_;
  std::vector<unsigned> seeds_;
  std::map<std::pair<int, int>, int> votes_;
  std::vector<ChainAtom> sub_;
  std::vector<fPointR3> points_;
  std::vector<Job> jobs_;
  std::vector<int> ordinals_;
};

} // namespace

std::string KnotCoreProblem(const std::vector<ChainAtom>& chain, const CoreOptions& options) {
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

KnotCore FindKnotCore(const std::vector<ChainAtom>& chain, const CoreOptions& options) {
  KnotCore core;
  EnsureKnotsFilled();
  int counts[kCountSlots];
  std::srand(static_cast<unsigned>(options.seed));
  VoteOverClosures(chain, counts, options.closureMethod, options.closures, options.naming);
  core.verdict = GiveTheNameOfKnot(counts);
  core.ordinal = static_cast<int>(std::max_element(counts, counts + kCountSlots) - counts);
  core.type = knots[core.ordinal].name;
  const int total = std::accumulate(counts, counts + kCountSlots, 0);
  core.share = total > 0 ? static_cast<double>(counts[core.ordinal]) / total : 0.0;
  const int n = static_cast<int>(chain.size());
  if (core.ordinal == 0 || core.ordinal >= kFirstStatusRow || n < kShortestSubchain)
    return core;

  CoreSearch search(chain, options, core.ordinal);
  const int step = options.step > 0 ? options.step : Steps(n);
  if (search.Kept(1, n)) {
    std::vector<std::pair<int, int>> corners = search.Walk(1, n, n, 1, n, step);
    std::sort(corners.begin(), corners.end(),
              [](const auto& a, const auto& b) { return a.second - a.first < b.second - b.first; });
    // Between grid points the shortest subchain can be up to 2 (step - 1) atoms shorter.
    const int bound = corners.empty() ? 0 : corners[0].second - corners[0].first + 2 * step - 2;
    for (int c = 0; c < static_cast<int>(corners.size()) && c < kRefinedCandidates; ++c) {
      const auto [i, j] = corners[static_cast<std::size_t>(c)];
      if (step == 1 || j - i > bound)
        break;
      search.Walk(i, std::min(n, i + step), j, std::max(1, j - step), std::min(n, j + step), 1);
    }
  }
  core.subchains = search.Analysed();
  int votes = 0;
  if (!search.Shortest(core.first, core.last, votes))
    return core;
  core.found = true;
  core.firstId = chain[static_cast<std::size_t>(core.first - 1)].id;
  core.lastId = chain[static_cast<std::size_t>(core.last - 1)].id;
  core.coreShare = static_cast<double>(votes) / search.Closures();
  core.nTail = core.first - 1;
  core.cTail = n - core.last;
  core.depth = std::min(core.nTail, core.cTail);
  core.depthFraction = static_cast<double>(core.depth) / n;
  return core;
}

} // namespace tresk
