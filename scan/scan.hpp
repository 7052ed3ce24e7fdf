// The knot fingerprint (matrix) of a chain: two-phase subchain scan to a file or a string.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom

int FindAllKnots(const std::vector<ChainAtom>& chain, std::fstream& out, int step, int threshold,
                 int closureMethod, int closures, int namesMode, int polyOption, bool polyFlag,
                 unsigned long long memoryLimit);
std::string FindAllKnots_string(const std::vector<ChainAtom>& chain, int step, int threshold,
                                int closureMethod, int closures, int namesMode, int polyOption,
                                bool polyFlag, unsigned long long memoryLimit);
