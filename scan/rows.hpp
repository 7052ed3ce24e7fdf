// Output rows of a scan; the short decimal text of a float (removeTrailingZeros) comes with
// the knots header.
#pragma once

#include <string>

#include "core/records.hpp"    // for RowFile, Job
#include "knots/whichKnot.hpp" // for removeTrailingZeros

RowFile MakeRowFromJob(std::string verdict, Job job, int strength, int namesMode);
