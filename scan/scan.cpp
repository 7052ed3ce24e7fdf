// The knot fingerprint of a chain: the coarse grid of subchains, then the refinement around
// strongly knotted rows, each phase in batches (prepare, reduce, analyse, vote), written to a
// file stream or returned as text.
#include "scan/scan.hpp"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

#include "chain/direction.hpp" // for FindTheKnotInParticularDirection*
#include "knots/whichKnot.hpp" // for the verdict texts and strengths
#include "reduction/batch.hpp" // for tresk::ReduceBatch
#include "scan/grid.hpp"
#include "scan/prepare.hpp"
#include "scan/rows.hpp"
#include "scan/threads.hpp"
#include "scan/workers.hpp"

namespace {

using Tally = std::map<std::string, float>;

struct ScanArgs {
  int step;
  int threshold;
  int closureMethod;
  int closures;
  int namesMode;
  int polyOption;
  bool polyFlag;
  unsigned long long memoryLimit;
  // The string driver votes each subchain on its own closures; the file driver lets the
  // polynomial tally accumulate over the whole scan.
  bool resetTallyPerSubchain;
};

constexpr int kAnalysisDirection = 1;

std::string Header(const std::vector<ChainAtom>& chain) {
  // The columns of a row: ids of the ends, 31 probability bands, the inside share, positions.
  // An empty chain has no end atoms; its header shows 0 for both ids.
  std::ostringstream h;
  h << "# " << (chain.empty() ? 0 : chain.front().id) << " "
    << (chain.empty() ? 0 : chain.back().id)
    << " >90 >87 >84 >81 >78 >75 >72 >69 >66 >63 >60 >57 >54 >51 >48 >45 >42 >39 >36 >33 >30 "
       ">27 >24 >21 >18 >15 >12 >9 >6 >3 >0 IN "
    << 1 << " " << chain.size();
  return h.str();
}

bool Unknotted(const std::string& verdict) {
  return verdict == UNKNOT || verdict == "{'1': 1.0}" || verdict == "{'1': 1}";
}

// One batch's closed copies reduced in place, wherever tresk::ReduceBatch decides; on the
// host the chunks are handed to the workers.
void ReduceBatch(std::vector<fPointR3>& points, std::vector<Job>& batch, int workers,
                 const std::function<void(std::size_t)>& progress) {
  tresk::ReduceBatch(
      points, batch, [&](std::size_t count, const std::function<void(std::size_t)>& body) {
        RunJobs(count, workers, body,
                [&](std::size_t done) { progress(std::min(batch.size(), done * 8)); });
      });
  progress(batch.size());
}

// One phase of the scan over `grid`; knotted subchains are appended to `rows`.
void RunPhase(int phase, const std::vector<ChainAtom>& chain, const std::vector<Job>& grid,
              const ScanArgs& a, Tally& tally, std::vector<RowFile>& rows) {
  const int workers = FingerprintWorkerCount();
  const unsigned long long total =
      a.closures > 0 ? 2ull * static_cast<unsigned long long>(a.closures) * grid.size() : 0;
  unsigned long long done = 0;
  auto report = [&](std::size_t inPass) { ReportFingerprintProgress(phase, done + inPass, total); };

  std::vector<fPointR3> points;
  std::vector<Job> batch;
  std::vector<int> ordinals;
  std::vector<std::string> polies;
  unsigned int next = 0;
  bool finished = false;
  while (!finished) {
    finished = PrepareAllInfixesFuleren(chain, points, batch, grid, next, a.closures,
                                        a.closureMethod, a.memoryLimit);
    ReduceBatch(points, batch, workers, report);
    done += batch.size();

    // Every closed copy on its own: back to a chain, projected in one direction.
    if (a.namesMode != 0) {
      ordinals.assign(batch.size(), 0);
    } else {
      polies.assign(batch.size(), std::string());
    }
    RunJobs(
        batch.size(), workers,
        [&](std::size_t i) {
          thread_local std::vector<ChainAtom> work;
          CopyJobToChainAtom(points, work, batch[i]);
          if (a.namesMode != 0) {
            ordinals[i] = FindTheKnotInParticularDirection(work, kAnalysisDirection);
          } else {
            polies[i] =
                FindTheKnotInParticularDirection_poly_string(work, a.polyOption, a.polyFlag);
          }
        },
        report);
    done += batch.size();

    // The closures of one subchain are consecutive: vote them in job order.
    if (a.closures <= 0)
      continue;
    const std::size_t group = static_cast<std::size_t>(a.closures);
    for (std::size_t k = 0; k < batch.size(); k += group) {
      const std::size_t end = std::min(batch.size(), k + group);
      std::string verdict;
      int strength = 0;
      if (a.namesMode != 0) {
        int counts[42] = {};
        for (std::size_t j = k; j < end; ++j) {
          if (ordinals[j] >= 0 && ordinals[j] < 42)
            ++counts[ordinals[j]];
        }
        verdict = GiveTheNameOfKnot_toMatrix(counts);
        strength = GiveTheStrenghtOfKnot(counts);
      } else {
        if (a.resetTallyPerSubchain)
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

// Both phases; the rows come back in output order.
std::vector<RowFile> Scan(const std::vector<ChainAtom>& chain, const ScanArgs& a) {
  Tally tally;
  std::vector<RowFile> rows;
  std::vector<Job> grid;
  PrepareJobsFromNet(chain, grid, a.step);
  RunPhase(1, chain, grid, a, tally, rows);
  grid.clear();
  PrepareJobsAroundNet(chain, grid, rows, a.step, a.threshold);
  RunPhase(2, chain, grid, a, tally, rows);
  std::sort(rows.begin(), rows.end(), WayToSortRowsToFile);
  return rows;
}

void WriteRows(std::ostream& out, const std::vector<RowFile>& rows, int namesMode) {
  if (namesMode != 0) {
    for (const RowFile& r : rows)
      out << r.text << std::endl;
    return;
  }
  out << "{";
  for (std::size_t i = 0; i < rows.size(); ++i)
    out << (i == 0 ? "" : ", ") << rows[i].text;
  out << "}";
}

} // namespace

int FindAllKnots(const std::vector<ChainAtom>& chain, std::fstream& out, int step, int threshold,
                 int closureMethod, int closures, int namesMode, int polyOption, bool polyFlag,
                 unsigned long long memoryLimit) {
  if (namesMode != 0)
    out << Header(chain) << std::endl;
  const ScanArgs args{step,       threshold, closureMethod, closures, namesMode,
                      polyOption, polyFlag,  memoryLimit,   false};
  const std::vector<RowFile> rows = Scan(chain, args);
  if (namesMode != 0 && rows.empty()) {
    out << "UNKNOT\n";
  } else {
    WriteRows(out, rows, namesMode);
  }
  out.flush();
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
    s << Header(chain) << "\n";
    result += s.str();
  }
  const ScanArgs args{step,       threshold, closureMethod, closures, namesMode,
                      polyOption, polyFlag,  memoryLimit,   true};
  const std::vector<RowFile> rows = Scan(chain, args);
  WriteRows(s, rows, namesMode);
  result += s.str();
  if (rows.empty()) {
    s << (namesMode != 0 ? "UNKNOT\n" : "{}");
    result += s.str();
  }
  return result;
}
