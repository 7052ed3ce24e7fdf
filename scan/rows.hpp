// Output rows of a scan and the short decimal text of a float.
#pragma once

#include <string>

#include "core/records.hpp" // for RowFile, Job

RowFile MakeRowFromJob(std::string verdict, Job job, int strength, int namesMode);
std::string removeTrailingZeros(float value);
