// Access to the ground-truth corpus for the single-chain tests: listing a data folder, reading
// a chain with the library's reader, and the knot table's name for a knot type.
#pragma once

#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace corpus {

// Names of the files in a folder under the data directory that end in `suffix`, sorted; empty
// when the data directory is absent.
std::vector<std::string> FilesIn(const std::string& folder, const std::string& suffix);

// The chain of a data file read by ChainRead; empty when the reader fails.
std::vector<ChainAtom> Read(const std::string& relative);

// The knot type in a file name: "knot.8_3i8.short" -> "8_3", "8_20.xyz" -> "8_20",
// "3_1m_supercoiled.xyz" -> "3_1".
std::string TypeFromName(std::string name);

// The name that the knot table gives a knot type ("0_1" -> "01", "8_20" -> "8_20|3_1#3_1",
// "10_1" -> "8_3", a type outside the table -> "-3").
std::string TableName(const std::string& type);

// The crossing number in a type name ("8_20" -> 8; "3_1#4_1" -> 3).
int CrossingNumber(const std::string& type);

} // namespace corpus
