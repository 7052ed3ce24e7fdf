// The distance check of a chain as numbers and as the message of CheckDistancesBetweenAtoms:
// how many chain breaks and clashes it finds, judged against the chain's typical step.
#pragma once

#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace tresk {

struct DistanceReport {
  double typical = 0.0; // the median neighbour distance
  int breaks = 0;       // neighbour steps longer than 1.5 x typical (all of them, not only listed)
  int clashes = 0;      // pairs of atoms closer than 0.5 x typical
  std::string message;  // exactly what CheckDistancesBetweenAtoms returns ("OK" when clean)
};

DistanceReport CheckDistances(const std::vector<ChainAtom>& chain);

} // namespace tresk
