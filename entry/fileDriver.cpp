// The file-to-file driver: reads a chain file and either names the knot of the whole chain
// (type 0, verdict on standard output) or writes its knot fingerprint to a file (type 2).
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "chain/manyClosures.hpp"      // for FindOneKnot
#include "core/log.hpp"                // for tresk::Log
#include "entry/entry.hpp"             // for FindKnots, MainFindKnots
#include "knots/knotTable.hpp"         // for EnsureKnotsFilled
#include "knots/whichKnot.hpp"         // for GiveTheNameOfKnot_allProj
#include "preprocessing/chainprep.hpp" // for ChainRead, CheckDistancesBetweenAtoms
#include "scan/scan.hpp"               // for FindAllKnots
#include "core/outcomes.hpp"           // for the counts slots

namespace {

// What the fingerprint mode of the file driver fixes: knot names (not polynomials), the
// polynomial bound passed through to the scan, and the memory budget of one batch.
constexpr int kNamesMode = 1;
constexpr int kPolyOption = 15;
constexpr unsigned long long kMemoryLimit = 768000000ULL;

} // namespace

int FindKnots(int type, char* inputFile, char* outputFile, int check, int step, int threshold,
              int closureMethod, int closures, unsigned long long polyFlag) {
  // Filled once per process with fixed contents: the same table a refill would give.
  tresk::EnsureKnotsFilled();
  FillFulerenData();

  // The output file exists (truncated) from here on, whatever happens next; a file that cannot
  // be opened only loses what would have been written to it.
  std::fstream file;
  if (outputFile != nullptr)
    file.open(outputFile, std::ios::out | std::ios::trunc);

  bool error = true;
  std::vector<ChainAtom> chain;
  if (inputFile != nullptr)
    chain = ChainRead(inputFile, error);
  if (chain.empty() || error) {
    std::cerr << "Unable to open file or empty file (or wrong data)!\n";
    file.close();
    return -1;
  }

  if (check != 0) {
    std::string message = CheckDistancesBetweenAtoms(chain);
    if (message != OK) {
      file << message << "\n";
      tresk::Log() << message << "\n\n";
    }
  }

  switch (type) {
  case 0: {
    int counts[tresk::kOrdinals];
    FindOneKnot(chain, counts, closureMethod, closures);
    std::cout << GiveTheNameOfKnot_allProj(counts) << "\n";
    break;
  }
  case 2:
    FindAllKnots(chain, file, step, threshold, closureMethod, closures, kNamesMode, kPolyOption,
                 polyFlag != 0, kMemoryLimit);
    tresk::Log() << "The full matrix is written to the file " << (outputFile ? outputFile : "")
                 << ".\n";
    break;
  default:
    std::cerr << "\nUnpossible error with type (tresk.FindKnots()).\n";
    break;
  }
  file.close();
  return 0;
}

int MainFindKnots(char* inputFile, char* outputFile, int type, int check, int closureMethod,
                  int closures, int step, int threshold, unsigned long long polyFlag) {
  return FindKnots(type, inputFile, outputFile, check, step, threshold, closureMethod, closures,
                   polyFlag);
}
