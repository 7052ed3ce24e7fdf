// The two sort orders of the shared records.
#include "core/records.hpp"

bool WayToSortRowsToFile(RowFile a, RowFile b) {
  if (a.first < b.first)
    return true;
  if (a.first == b.first)
    return a.last > b.last;
  return false;
}

bool WayToSortCrossings(CrossingShort a, CrossingShort b) {
  return a.t > b.t;
}
