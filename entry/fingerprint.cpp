// The in-memory fingerprint calls: the subchain scan of a chain the application holds, to a
// file it names or to a string.
#include <fstream>

#include "entry/entry.hpp"
#include "scan/scan.hpp" // for FindAllKnots, FindAllKnots_string

int FindKnotFingerprint(const std::vector<ChainAtom>& chain, char* outputFile, int step,
                        int threshold, int closureMethod, int closures, int namesMode,
                        int polyOption, bool polyFlag, unsigned long long memoryLimit) {
  // The stream closes itself on the way out, also when an exception passes. A file that cannot
  // be opened (or no name) only loses what would have been written to it.
  std::fstream out;
  if (outputFile != nullptr)
    out.open(outputFile, std::ios::out | std::ios::trunc);
  const int result = FindAllKnots(chain, out, step, threshold, closureMethod, closures, namesMode,
                                  polyOption, polyFlag, memoryLimit);
  out.close();
  return result;
}

std::string FindKnotFingerprint_string(const std::vector<ChainAtom>& chain, int step, int threshold,
                                       int closureMethod, int closures, int namesMode,
                                       int polyOption, bool polyFlag,
                                       unsigned long long memoryLimit) {
  return FindAllKnots_string(chain, step, threshold, closureMethod, closures, namesMode, polyOption,
                             polyFlag, memoryLimit);
}
