// The vote over many closures of one open chain: counts of knot ordinals.
#pragma once

#include <vector>

#include "core/records.hpp" // for ChainAtom

int FindOneKnot(const std::vector<ChainAtom>& chain, int* counts, int closureMethod, int closures);
