// The plain empty-corner cutting of a closed chain in double precision: corners in chain order,
// each against every other segment with the plain contact test, and a restart from the first
// corner after every removal. ChainReduce without shortcuts must give exactly its result.
#pragma once

#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace reference {

// Drops repeated points as ChainReduce does, then cuts corners; returns the size left.
int CutCornersPlain(std::vector<ChainAtom>& chain);

} // namespace reference
