// Access to the ground-truth corpus under ../shared/data: whether it is there (a missing corpus
// fails in CI and skips elsewhere), folder listings, chains read with the library's reader or
// from the curve formats it does not take, and the knot table's name for a knot type.
#pragma once

#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace zoo {

// Where the corpus is expected; "" from DataFile() when a file is absent.
std::string DataDir();
std::string DataFile(const std::string& relative);
// Full path of a file of the repository.
std::string SourceFile(const std::string& relative);
// A scratch file name of this test process (several test processes run at once).
std::string TempPath(const std::string& name);
// True when the CI variable is set: a missing corpus is then an error, not a skip.
bool InCI();

// Names of the files in a corpus folder that end in `suffix`, sorted.
std::vector<std::string> FilesIn(const std::string& folder, const std::string& suffix);
// The chain of a corpus file read by ChainRead; empty when the reader fails.
std::vector<ChainAtom> ReadChain(const std::string& relative);
// Every {"x":..,"y":..,"z":..} point of a curvedata JSON file, ids 1..n; a last point equal to
// the first is dropped.
std::vector<ChainAtom> ReadCurveJson(const std::string& path);
// All rings of a multi-ring file (a count line, then that many `x y z` lines, repeated), each
// a closed polygon without its first vertex repeated.
std::vector<std::vector<ChainAtom>> ReadRings(const std::string& path);

// The knot type in a file name: "knot.8_3i8.short" -> "8_3", "3_1m_supercoiled.xyz" -> "3_1".
std::string TypeFromName(std::string name);
// The name the knot table gives a type ("0_1" -> "01", "8_20" -> "8_20|3_1#3_1", "10_1" ->
// "8_3", a type outside the table -> "-3").
std::string TableName(const std::string& type);
// The crossing number in a type name ("8_20" -> 8).
int CrossingNumber(const std::string& type);

} // namespace zoo

// Skips the test with one line saying where the corpus is expected, or fails it under CI.
#define TRESK_REQUIRE_DATA()                                                                       \
  do {                                                                                             \
    if (zoo::DataFile("MANIFEST.md").empty()) {                                                    \
      if (zoo::InCI())                                                                             \
        GTEST_FAIL() << "ground-truth corpus missing: expected at " << zoo::DataDir();             \
      GTEST_SKIP() << "ground-truth corpus not found at " << zoo::DataDir();                       \
    }                                                                                              \
  } while (0)
