// The outcomes of closed subchains: the closures drawn per subchain from fixed seeds, the closed
// copies reduced together in single precision and named on the worker threads.
#include "scan/subchainVotes.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <functional>

#include "chain/closing.hpp"    // for tresk::CloseByMethod, tresk::FirstUsableOrdinal
#include "core/outcomes.hpp"    // for tresk::kProblem
#include "scan/closedBatch.hpp" // for tresk::AppendPackedRun
#include "reduction/batch.hpp"  // for tresk::ReduceBatch
#include "scan/prepare.hpp"     // for CopyJobToChainAtom

namespace tresk {
namespace {

// Points of closed copies reduced in one batch (12 bytes each).
constexpr std::size_t kBatchPoints = 2000000;

std::uint64_t SplitMix(std::uint64_t x) {
  x += 0x9E3779B97F4A7C15ull;
  x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ull;
  x = (x ^ (x >> 27)) * 0x94D049BB133111EBull;
  return x ^ (x >> 31);
}

// The chain moved so that its centroid is the origin: subchains are reduced in single
// precision, which keeps its digits near the origin.
std::vector<ChainAtom> Centred(const std::vector<ChainAtom>& chain) {
  double c[3] = {0, 0, 0};
  for (const ChainAtom& a : chain)
    c[0] += a.x, c[1] += a.y, c[2] += a.z;
  std::vector<ChainAtom> moved = chain;
  const double n = static_cast<double>(std::max<std::size_t>(1, chain.size()));
  for (ChainAtom& a : moved)
    a.x -= c[0] / n, a.y -= c[1] / n, a.z -= c[2] / n;
  return moved;
}

} // namespace

SubchainVotes::SubchainVotes(const std::vector<ChainAtom>& chain, int closureMethod, int closures,
                             unsigned long long seed, const NamingOptions& naming, int threads)
    : chain_(Centred(chain)), closureMethod_(closureMethod), naming_(naming), pool_(threads) {
  const int count = closureMethod == 0 || closureMethod == 1 ? 1 : std::max(1, closures);
  for (int k = 0; k < count; ++k)
    seeds_.push_back(static_cast<unsigned>(SplitMix(SplitMix(seed) + k) >> 32));
}

void SubchainVotes::Analyse(const std::vector<Span>& spans) {
  std::vector<Span> batch;
  std::size_t points = 0;
  for (const Span& s : spans) {
    if (outcomes_.count(Key(s.first, s.second)) ||
        std::find(batch.begin(), batch.end(), s) != batch.end())
      continue;
    // A closure adds at most a few dozen points; the estimate only sizes the batches.
    const std::size_t estimate =
        (static_cast<std::size_t>(s.second - s.first) + 64) * seeds_.size();
    if (!batch.empty() && points + estimate > kBatchPoints) {
      RunBatch(batch);
      batch.clear();
      points = 0;
    }
    batch.push_back(s);
    points += estimate;
  }
  if (!batch.empty())
    RunBatch(batch);
}

void SubchainVotes::RunBatch(const std::vector<Span>& spans) {
  points_.clear();
  jobs_.clear();
  std::int32_t offset = 0;
  for (const Span& s : spans) {
    for (unsigned seed : seeds_) {
      // Closure k of every subchain draws from the same seed: neighbouring subchains are
      // compared under the same closures, so their difference is the chain's, not the dice's.
      std::srand(seed);
      sub_.assign(chain_.begin() + (s.first - 1), chain_.begin() + s.second);
      CloseByMethod(sub_, closureMethod_, ClosureRetry::useAsIs);
      const std::int32_t length = static_cast<std::int32_t>(sub_.size());
      jobs_.push_back(Job{offset, length, s.first, s.second, s.first, s.second});
      AppendPackedRun(points_, sub_.begin(), sub_.end());
      offset += length + 2;
    }
  }
  const std::function<void(std::size_t)> quiet = [](std::size_t) {};
  ReduceBatch(points_, jobs_, [&](std::size_t count, const std::function<void(std::size_t)>& f) {
    pool_.Run(count, f, quiet);
  });
  std::vector<std::uint16_t> ordinals(jobs_.size(), 0);
  pool_.Run(
      jobs_.size(),
      [&](std::size_t k) {
        thread_local std::vector<ChainAtom> work;
        CopyJobToChainAtom(points_, work, jobs_[k]);
        ordinals[k] = static_cast<std::uint16_t>(
            FirstUsableOrdinal(work, kProblem, [&](const std::vector<ChainAtom>& closed, int d) {
              return KnotInDirection(closed, d, naming_);
            }));
      },
      quiet);
  const std::size_t per = seeds_.size();
  for (std::size_t i = 0; i < spans.size(); ++i)
    outcomes_[Key(spans[i].first, spans[i].second)].assign(
        ordinals.begin() + static_cast<std::ptrdiff_t>(i * per),
        ordinals.begin() + static_cast<std::ptrdiff_t>((i + 1) * per));
}

const std::vector<std::uint16_t>& SubchainVotes::Outcomes(int first, int last) {
  auto found = outcomes_.find(Key(first, last));
  if (found == outcomes_.end()) {
    RunBatch({Span{first, last}});
    found = outcomes_.find(Key(first, last));
  }
  return found->second;
}

int SubchainVotes::Votes(int first, int last, int ordinal) {
  const std::vector<std::uint16_t>& o = Outcomes(first, last);
  return static_cast<int>(std::count(o.begin(), o.end(), ordinal));
}

std::vector<int> SubchainVotes::Tally(int first, int last) {
  std::vector<int> tally;
  for (std::uint16_t v : Outcomes(first, last)) {
    if (v >= tally.size())
      tally.resize(v + 1u, 0);
    ++tally[v];
  }
  return tally;
}

std::pair<int, int> SubchainVotes::Dominant(int first, int last) {
  const std::vector<int> tally = Tally(first, last);
  const auto best = std::max_element(tally.begin(), tally.end());
  if (best == tally.end())
    return {0, 0};
  return {static_cast<int>(best - tally.begin()), *best};
}

} // namespace tresk

namespace tresk {

std::vector<Span> CoarseGrid(int atoms, int step, int shortest) {
  std::vector<Span> grid;
  for (int first = 1; first <= atoms; first += step)
    for (int last = atoms; last > first; last -= step)
      if (last - first + 1 >= shortest)
        grid.emplace_back(first, last);
  return grid;
}

Kept ShortestKept(SubchainVotes& votes, int ordinal, int shortest, int longest,
                  const std::function<std::vector<Span>(int length)>& atLength) {
  Kept best;
  for (int length = shortest; length <= longest && !best.found; ++length) {
    std::vector<Span> spans = atLength(length);
    std::sort(spans.begin(), spans.end());
    votes.Analyse(spans);
    for (const Span& s : spans) {
      const int v = votes.Votes(s.first, s.second, ordinal);
      if (2 * v > votes.Closures() && (!best.found || v > best.votes)) {
        best.found = true;
        best.first = s.first, best.last = s.second, best.votes = v;
      }
    }
  }
  return best;
}

GridWindows::GridWindows(SubchainVotes& votes, int ordinal, int step, int shortest,
                         const std::set<Span>* allowed)
    : votes_(votes), ordinal_(ordinal), step_(std::max(1, step)), allowed_(allowed) {
  for (const Span& s : CoarseGrid(votes.Atoms(), step_, shortest))
    if (!allowed_ || allowed_->count(s))
      coarse_.push_back(s);
  std::stable_sort(coarse_.begin(), coarse_.end(), [](const Span& a, const Span& b) {
    return a.second - a.first < b.second - b.first;
  });
}

std::vector<Span> GridWindows::AtLength(int length) {
  // A window of half-width step - 1 around a coarse subchain of L atoms holds subchains of
  // L - 2 (step - 1) to L + 2 (step - 1) atoms.
  const int reach = 2 * (step_ - 1);
  std::size_t end = analysed_;
  while (end < coarse_.size() && coarse_[end].second - coarse_[end].first + 1 <= length + reach)
    ++end;
  if (end > analysed_) {
    const std::vector<Span> fresh(coarse_.begin() + static_cast<std::ptrdiff_t>(analysed_),
                                  coarse_.begin() + static_cast<std::ptrdiff_t>(end));
    votes_.Analyse(fresh);
    for (const Span& s : fresh)
      if (votes_.Kept(s.first, s.second, ordinal_))
        kept_.push_back(s);
    analysed_ = end;
  }
  std::set<Span> spans;
  const int n = votes_.Atoms();
  for (const Span& c : kept_) {
    if (std::abs((c.second - c.first + 1) - length) > reach)
      continue;
    for (int first = std::max(1, c.first - step_ + 1); first <= c.first + step_ - 1; ++first) {
      const int last = first + length - 1;
      if (last > n || std::abs(last - c.second) > step_ - 1)
        continue;
      spans.emplace(first, last);
    }
  }
  return {spans.begin(), spans.end()};
}

} // namespace tresk
