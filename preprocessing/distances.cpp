// CheckDistancesBetweenAtoms: chain breaks and atoms that (almost) coincide, judged against the
// chain's own typical neighbour distance so that any unit of length works.
#include "preprocessing/distances.hpp"

#include "preprocessing/chainprep.hpp" // for OK, CheckDistancesBetweenAtoms

#include <algorithm>
#include <cmath>
#include <numeric>
#include <sstream>

#include "preprocessing/vec3.hpp" // for Vec3

using tresk::PositionOf;

namespace {

// A neighbour distance above this multiple of the median is a break (a C-alpha gap of one
// missing residue is already about 1.6 times the 3.8 A step); below kTooClose times the median,
// two atoms of any pair are too close (C-alpha atoms never come closer than about 2.9 A).
constexpr double kBreakFactor = 1.5;
constexpr double kTooClose = 0.5;
// Problems listed one per line, at most this many.
constexpr int kMaxListed = 20;

struct Problem {
  int first; // positions in the chain
  int second;
  double distance;
  bool isBreak;
};

// All pairs of atoms closer than `limit`, neighbours included: a sweep along x.
std::vector<Problem> ClosePairs(const std::vector<ChainAtom>& chain, double limit) {
  std::vector<Problem> out;
  std::vector<int> order(chain.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](int a, int b) { return chain[a].x < chain[b].x; });
  for (size_t i = 0; i < order.size(); ++i) {
    for (size_t j = i + 1; j < order.size(); ++j) {
      const ChainAtom &a = chain[order[i]], &b = chain[order[j]];
      if (b.x - a.x >= limit)
        break;
      double d = Norm(PositionOf(a) - PositionOf(b));
      if (d < limit)
        out.push_back({std::min(order[i], order[j]), std::max(order[i], order[j]), d, false});
    }
  }
  return out;
}

} // namespace

tresk::DistanceReport tresk::CheckDistances(const std::vector<ChainAtom>& chain) {
  DistanceReport report;
  report.message = OK;
  size_t n = chain.size();
  if (n < 2)
    return report;
  std::vector<double> steps(n - 1);
  for (size_t i = 0; i + 1 < n; ++i)
    steps[i] = Norm(PositionOf(chain[i + 1]) - PositionOf(chain[i]));
  std::vector<double> sorted = steps;
  std::nth_element(sorted.begin(), sorted.begin() + sorted.size() / 2, sorted.end());
  double typical = sorted[sorted.size() / 2];
  report.typical = typical;
  if (!(typical > 0.0) || !std::isfinite(typical)) {
    std::ostringstream msg;
    msg << "Most neighbouring atoms of the chain coincide (typical neighbour distance " << typical
        << "); the chain cannot be analysed.\n";
    report.message = msg.str();
    return report;
  }
  std::vector<Problem> problems;
  for (size_t i = 0; i + 1 < n; ++i)
    if (steps[i] > kBreakFactor * typical)
      problems.push_back({static_cast<int>(i), static_cast<int>(i + 1), steps[i], true});
  report.breaks = static_cast<int>(problems.size());
  std::vector<Problem> close = ClosePairs(chain, kTooClose * typical);
  report.clashes = static_cast<int>(close.size());
  problems.insert(problems.end(), close.begin(), close.end());
  if (problems.empty())
    return report;
  std::sort(problems.begin(), problems.end(), [](const Problem& a, const Problem& b) {
    return a.first != b.first ? a.first < b.first : a.second < b.second;
  });
  std::ostringstream msg;
  msg.precision(3);
  int listed = 0;
  for (const Problem& p : problems) {
    if (listed++ == kMaxListed)
      break;
    msg << (p.isBreak ? "Chain break between atoms " : "Atoms too close: atoms ")
        << chain[p.first].id << " and " << chain[p.second].id << " are " << p.distance
        << " apart (typical neighbour distance " << typical << ").\n";
  }
  if (problems.size() > static_cast<size_t>(kMaxListed))
    msg << "... and " << problems.size() - kMaxListed << " more distance problems.\n";
  report.message = msg.str();
  return report;
}

std::string CheckDistancesBetweenAtoms(std::vector<ChainAtom> chain) {
  return tresk::CheckDistances(chain).message;
}
