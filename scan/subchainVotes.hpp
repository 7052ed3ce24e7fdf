// The outcomes of closed subchains for the knot core and the knot map: every subchain closed the
// same ways (closure k drawn from the seed and k alone), reduced in single precision in batches
// and named on worker threads, each subchain's outcomes kept once analysed.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include "chain/naming.hpp" // for tresk::NamingOptions
#include "core/records.hpp" // for ChainAtom, fPointR3, Job
#include "scan/workers.hpp" // for tresk::WorkerPool

namespace tresk {

// A subchain by the 1-based positions of its first and last atom.
using Span = std::pair<int, int>;

class SubchainVotes {
public:
  // closureMethod 0..4 as in VoteOverClosures (0 and 1 close one way, so one closure is made
  // whatever `closures` says); threads as tresk::WorkerCount reads them.
  SubchainVotes(const std::vector<ChainAtom>& chain, int closureMethod, int closures,
                unsigned long long seed, const NamingOptions& naming, int threads);

  int Closures() const { return static_cast<int>(seeds_.size()); }
  int Atoms() const { return static_cast<int>(chain_.size()); }
  // Subchains analysed so far.
  int Analysed() const { return static_cast<int>(outcomes_.size()); }

  // Analyses the subchains of `spans` not analysed yet, as few batches as the budget allows.
  void Analyse(const std::vector<Span>& spans);
  // Closures of first..last (analysed on demand) that give `ordinal` of the knot table.
  int Votes(int first, int last, int ordinal);
  // More than half of the closures of first..last give `ordinal`.
  bool Kept(int first, int last, int ordinal) {
    return 2 * Votes(first, last, ordinal) > Closures();
  }
  // How many closures of first..last gave each ordinal (index = ordinal).
  std::vector<int> Tally(int first, int last);
  // The most frequent outcome of first..last (ties to the lower ordinal) and its votes.
  std::pair<int, int> Dominant(int first, int last);

private:
  static std::uint64_t Key(int first, int last) {
    return (static_cast<std::uint64_t>(first) << 32) | static_cast<std::uint32_t>(last);
  }
  const std::vector<std::uint16_t>& Outcomes(int first, int last);
  void RunBatch(const std::vector<Span>& spans);

  std::vector<ChainAtom> chain_;
  int closureMethod_;
  NamingOptions naming_;
  WorkerPool pool_;
  std::vector<unsigned> seeds_;
  std::unordered_map<std::uint64_t, std::vector<std::uint16_t>> outcomes_;
  std::vector<ChainAtom> sub_;
  std::vector<fPointR3> points_;
  std::vector<Job> jobs_;
};

// The grid of a fingerprint: first atoms 1, 1 + step, ..., last atoms n, n - step, ... (the
// fingerprint's coarse grid), subchains of at least `shortest` atoms.
std::vector<Span> CoarseGrid(int atoms, int step, int shortest);

// The shortest subchain that keeps `ordinal` (more than half of its closures) among the
// candidates: lengths are visited in ascending order from `shortest` to `longest`, the
// subchains atLength(length) analysed together, and the first length at which one is kept ends
// the search (ties: more votes, then the earlier first atom). This is exact over the union of
// the candidate sets without any assumption on how knotting changes with length: every shorter
// candidate was analysed and lost the type.
struct Kept {
  bool found = false;
  int first = 0, last = 0, votes = 0;
};
Kept ShortestKept(SubchainVotes& votes, int ordinal, int shortest, int longest,
                  const std::function<std::vector<Span>(int length)>& atLength);

// Candidates of ShortestKept on a fingerprint's grid: every subchain whose ends lie within
// step - 1 of the ends of a coarse grid subchain that keeps the type (the refinement window of
// the fingerprint, which holds every subchain between neighbouring grid points). Coarse
// subchains are analysed lazily, shortest first, as far as the windows of a length need them;
// `allowed`, when given, limits the coarse subchains whose windows count (a region of a map).
class GridWindows {
public:
  GridWindows(SubchainVotes& votes, int ordinal, int step, int shortest,
              const std::set<Span>* allowed = nullptr);
  std::vector<Span> AtLength(int length);

private:
  SubchainVotes& votes_;
  int ordinal_, step_;
  const std::set<Span>* allowed_;
  std::vector<Span> coarse_; // by ascending length
  std::size_t analysed_ = 0;
  std::vector<Span> kept_;
};

} // namespace tresk
