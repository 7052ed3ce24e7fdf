// The knot fingerprint (matrix) of a chain: two-phase subchain scan to a file, a stream or a
// string, and the options of how a scan runs (threads, progress, log).
#pragma once

#include <fstream>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom, RowFile

int FindAllKnots(const std::vector<ChainAtom>& chain, std::fstream& out, int step, int threshold,
                 int closureMethod, int closures, int namesMode, int polyOption, bool polyFlag,
                 unsigned long long memoryLimit);
std::string FindAllKnots_string(const std::vector<ChainAtom>& chain, int step, int threshold,
                                int closureMethod, int closures, int namesMode, int polyOption,
                                bool polyFlag, unsigned long long memoryLimit);

namespace tresk {

// What a scan computes: the arguments of FindAllKnots (polyOption = the crossing bound of the
// exact polynomial, polyFlag = its value at t = 12 instead; memoryLimit = the batch budget;
// numericAbove = the crossing bound of the exact polynomial in names mode, as in NamingOptions).
struct FingerprintParams {
  int step = 10;
  int threshold = 20;
  int closureMethod = 2;
  int closures = 100;
  int namesMode = 1;
  int polyOption = 15;
  bool polyFlag = false;
  unsigned long long memoryLimit = 768000000ULL;
  int numericAbove = 200; // exact naming, as NamingOptions; the documented drivers use 16
};

// How a scan runs. The output, the log text and the rand() sequence do not depend on it: every
// random draw stays in the single-threaded batch preparation and results are gathered in job
// order. The documented drivers use the defaults.
struct ScanOptions {
  // Threads that reduce and analyse each batch: 1 runs everything on the caller's thread,
  // 0 uses every core (negative counts as 1). They are started once per scan.
  int threads = 1;
  // Called on the caller's thread: `phase` 1 is the coarse grid, 2 the refinement; `done` and
  // `total` count closed subchain copies twice (reduced, analysed) over the whole phase.
  std::function<void(int phase, unsigned long long done, unsigned long long total)> progress;
  // Where the scan's log messages go, written on the caller's thread; null: tresk::Log().
  std::ostream* log = nullptr;
  // Subchains are reduced in single precision: a chain whose centre lies farther from the origin
  // than its own extent is first moved to the origin (in double precision), so that a
  // translated copy gives the fingerprint of the chain itself. Off in the documented drivers.
  bool recentre = false;
};

// "" when a scan with these parameters can run, otherwise why not: coordinates outside the
// supported range, or closures that do not fit the batch budget (the scan would print its
// "no memory" message and give up).
std::string FingerprintProblem(const std::vector<ChainAtom>& chain,
                               const FingerprintParams& params);

// The knotted rows of a scan in output order, with the polynomial tally of the file driver
// (accumulated over the whole scan).
std::vector<RowFile> FingerprintRows(const std::vector<ChainAtom>& chain,
                                     const FingerprintParams& params,
                                     const ScanOptions& options = {});
// Writes what FindAllKnots writes to its file: header and rows in names mode, "UNKNOT" when no
// row is knotted; one dictionary in polynomial mode.
void WriteFingerprint(const std::vector<ChainAtom>& chain, std::ostream& out,
                      const FingerprintParams& params, const ScanOptions& options = {});

} // namespace tresk
