// The knot fingerprint of a chain: the coarse grid of subchains, then the refinement around
// strongly knotted rows, each phase in batches (prepare, reduce, analyse, vote), written to a
// file, a stream or returned as text.
#include "scan/scan.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

#include "chain/direction.hpp"         // for FindTheKnotInParticularDirection_poly_string
#include "chain/naming.hpp"            // for tresk::KnotInDirection
#include "core/log.hpp"                // for tresk::LogCapture
#include "knots/whichKnot.hpp"         // for the verdict texts and strengths
#include "preprocessing/readChain.hpp" // for tresk::CheckCoordinates
#include "reduction/batch.hpp"         // for tresk::ReduceBatch
#include "scan/grid.hpp"
#include "scan/prepare.hpp"
#include "scan/rows.hpp"
#include "scan/workers.hpp"
#include "core/outcomes.hpp" // for the counts slots

namespace {

using Tally = std::map<std::string, float>;

constexpr int kAnalysisDirection = 1;

bool Unknotted(const std::string& verdict) {
  return verdict == UNKNOT || verdict == "{'1': 1.0}" || verdict == "{'1': 1}";
}

// Everything one scan shares: what it computes, how it runs, and its worker threads. The
// string driver votes each subchain on its own closures; the file driver lets the polynomial
// tally accumulate over the whole scan.
struct ScanRun {
  const tresk::FingerprintParams& params;
  const tresk::ScanOptions& options;
  bool resetTallyPerSubchain;
  tresk::WorkerPool pool;
  Tally tally;

  // Runs `step` with its log text sent to the options' log stream, when there is one.
  template <class Step> void Logged(Step&& step) {
    if (options.log == nullptr) {
      step();
      return;
    }
    std::string text;
    {
      tresk::LogCapture capture(text);
      step();
    }
    *options.log << text << std::flush;
  }

  // One phase of the scan over `grid`; knotted subchains are appended to `rows`.
  void RunPhase(int phase, const std::vector<ChainAtom>& chain, const std::vector<Job>& grid,
                std::vector<RowFile>& rows);
  // Both phases; the rows come back in output order.
  std::vector<RowFile> Scan(const std::vector<ChainAtom>& chain);
};

void ScanRun::RunPhase(int phase, const std::vector<ChainAtom>& chain, const std::vector<Job>& grid,
                       std::vector<RowFile>& rows) {
  const tresk::FingerprintParams& a = params;
  const unsigned long long total =
      a.closures > 0 ? 2ull * static_cast<unsigned long long>(a.closures) * grid.size() : 0;
  unsigned long long done = 0;
  auto report = [&](std::size_t inPass) {
    if (options.progress)
      options.progress(phase, done + inPass, total);
  };

  std::vector<fPointR3> points;
  std::vector<Job> batch;
  std::vector<int> ordinals;
  std::vector<std::string> polies;
  unsigned int next = 0;
  bool finished = false;
  while (!finished) {
    Logged([&] {
      finished = PrepareAllInfixesFuleren(chain, points, batch, grid, next, a.closures,
                                          a.closureMethod, a.memoryLimit);
    });
    Logged([&] {
      // Reduced in place wherever tresk::ReduceBatch decides; on the host its chunks (8 jobs
      // each) go to the workers.
      tresk::ReduceBatch(
          points, batch, [&](std::size_t count, const std::function<void(std::size_t)>& body) {
            pool.Run(count, body,
                     [&](std::size_t chunks) { report(std::min(batch.size(), chunks * 8)); });
          });
      report(batch.size());
      done += batch.size();

      // Every closed copy on its own: back to a chain, projected in one direction.
      if (a.namesMode != 0) {
        ordinals.assign(batch.size(), 0);
      } else {
        polies.assign(batch.size(), std::string());
      }
      pool.Run(
          batch.size(),
          [&](std::size_t i) {
            thread_local std::vector<ChainAtom> work;
            CopyJobToChainAtom(points, work, batch[i]);
            if (a.namesMode != 0) {
              ordinals[i] = tresk::KnotInDirection(work, kAnalysisDirection,
                                                   tresk::NamingOptions{a.numericAbove, false});
            } else {
              polies[i] =
                  FindTheKnotInParticularDirection_poly_string(work, a.polyOption, a.polyFlag);
            }
          },
          report);
      done += batch.size();
    });

    // The closures of one subchain are consecutive: vote them in job order.
    if (a.closures <= 0)
      continue;
    const std::size_t group = static_cast<std::size_t>(a.closures);
    for (std::size_t k = 0; k < batch.size(); k += group) {
      const std::size_t end = std::min(batch.size(), k + group);
      std::string verdict;
      int strength = 0;
      if (a.namesMode != 0) {
        int counts[tresk::kOrdinals] = {};
        for (std::size_t j = k; j < end; ++j) {
          if (ordinals[j] >= 0 && ordinals[j] < 42)
            ++counts[ordinals[j]];
        }
        verdict = GiveTheNameOfKnot_toMatrix(counts);
        strength = GiveTheStrenghtOfKnot(counts);
      } else {
        if (resetTallyPerSubchain)
          tally.clear();
        for (std::size_t j = k; j < end; ++j) {
          tally[polies[j].empty() ? std::string("0") : polies[j]] += 1.0f;
        }
        verdict = GiveThePolies_toDict(tally);
        strength = GiveTheStrenghtOfKnot_poly(tally);
      }
      if (!Unknotted(verdict))
        rows.push_back(MakeRowFromJob(verdict, batch[k], strength, a.namesMode));
    }
  }
}

std::vector<RowFile> ScanRun::Scan(const std::vector<ChainAtom>& chain) {
  std::vector<RowFile> rows;
  std::vector<Job> grid;
  Logged([&] { PrepareJobsFromNet(chain, grid, params.step); });
  RunPhase(1, chain, grid, rows);
  grid.clear();
  Logged([&] { PrepareJobsAroundNet(chain, grid, rows, params.step, params.threshold); });
  RunPhase(2, chain, grid, rows);
  std::sort(rows.begin(), rows.end(), WayToSortRowsToFile);
  return rows;
}

tresk::FingerprintParams Params(int step, int threshold, int closureMethod, int closures,
                                int namesMode, int polyOption, bool polyFlag,
                                unsigned long long memoryLimit) {
  // The documented drivers decide diagrams above 16 crossings by the numeric determinant.
  return tresk::FingerprintParams{step,       threshold, closureMethod, closures, namesMode,
                                  polyOption, polyFlag,  memoryLimit,   16};
}

} // namespace

namespace tresk {
namespace {

// The chain moved to the origin when its centre is farther away than its extent; else as is.
std::vector<ChainAtom> Recentred(const std::vector<ChainAtom>& chain) {
  if (chain.empty())
    return chain;
  double c[3] = {0, 0, 0};
  for (const ChainAtom& a : chain)
    c[0] += a.x, c[1] += a.y, c[2] += a.z;
  for (double& v : c)
    v /= static_cast<double>(chain.size());
  double extent = 0;
  for (const ChainAtom& a : chain)
    extent =
        std::max({extent, std::fabs(a.x - c[0]), std::fabs(a.y - c[1]), std::fabs(a.z - c[2])});
  if (std::max({std::fabs(c[0]), std::fabs(c[1]), std::fabs(c[2])}) <= extent)
    return chain;
  std::vector<ChainAtom> moved = chain;
  for (ChainAtom& a : moved)
    a.x -= c[0], a.y -= c[1], a.z -= c[2];
  return moved;
}

} // namespace

std::string FingerprintProblem(const std::vector<ChainAtom>& chain,
                               const FingerprintParams& params) {
  const std::string coordinates = CheckCoordinates(chain);
  if (!coordinates.empty())
    return coordinates;
  if (params.closures < 1)
    return "the number of closures must be at least 1";
  if (!ClosuresFitBudget(params.closures, params.memoryLimit))
    return std::to_string(params.closures) +
           " closures per subchain do not fit a batch budget of " +
           std::to_string(params.memoryLimit) + " (13 units per point, 100 points per closure)";
  return "";
}

std::vector<RowFile> FingerprintRows(const std::vector<ChainAtom>& chain,
                                     const FingerprintParams& params, const ScanOptions& options) {
  ScanRun run{params, options, false, WorkerPool(options.threads), {}};
  return run.Scan(options.recentre ? Recentred(chain) : chain);
}

void WriteFingerprint(const std::vector<ChainAtom>& chain, std::ostream& out,
                      const FingerprintParams& params, const ScanOptions& options) {
  if (params.namesMode != 0)
    out << FingerprintHeader(chain) << std::endl;
  const std::vector<RowFile> rows = FingerprintRows(chain, params, options);
  if (params.namesMode != 0 && rows.empty()) {
    out << "UNKNOT\n";
  } else {
    WriteFingerprintRows(out, rows, params.namesMode);
  }
  out.flush();
}

} // namespace tresk

int FindAllKnots(const std::vector<ChainAtom>& chain, std::fstream& out, int step, int threshold,
                 int closureMethod, int closures, int namesMode, int polyOption, bool polyFlag,
                 unsigned long long memoryLimit) {
  tresk::WriteFingerprint(chain, out,
                          Params(step, threshold, closureMethod, closures, namesMode, polyOption,
                                 polyFlag, memoryLimit));
  return 1;
}

std::string FindAllKnots_string(const std::vector<ChainAtom>& chain, int step, int threshold,
                                int closureMethod, int closures, int namesMode, int polyOption,
                                bool polyFlag, unsigned long long memoryLimit) {
  // The text stream is never emptied, so every append below repeats what it already holds:
  // names mode gives the header twice before the rows (three times before "UNKNOT\n"), and an
  // unknotted chain in polynomial mode gives "{}{}{}". Callers rely on these texts.
  std::ostringstream s;
  std::string result;
  if (namesMode != 0) {
    s << tresk::FingerprintHeader(chain) << "\n";
    result += s.str();
  }
  const tresk::FingerprintParams params = Params(step, threshold, closureMethod, closures,
                                                 namesMode, polyOption, polyFlag, memoryLimit);
  const tresk::ScanOptions options;
  ScanRun run{params, options, true, tresk::WorkerPool(1), {}};
  const std::vector<RowFile> rows = run.Scan(chain);
  tresk::WriteFingerprintRows(s, rows, namesMode);
  result += s.str();
  if (rows.empty()) {
    s << (namesMode != 0 ? "UNKNOT\n" : "{}");
    result += s.str();
  }
  return result;
}
