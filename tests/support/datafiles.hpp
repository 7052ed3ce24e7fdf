// Readers for the ground-truth curve formats that the library's own reader does not take:
// curvedata JSON curves and multi-ring files (a count line, then that many `x y z` lines,
// repeated).
#pragma once

#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace zoo {

// Every {"x":..,"y":..,"z":..} point of the file in order (a curvedata file holds one curve),
// ids 1..n. A last point equal to the first (explicitly closed curve) is dropped. Empty when the
// file cannot be read or holds no complete point.
std::vector<ChainAtom> ReadCurveJson(const std::string& path);

// All rings of the file, ids 1..n within each ring; a last vertex repeating the first is dropped,
// so every ring is a closed polygon with its first vertex not repeated. Reading stops at the
// first malformed block; empty when the file cannot be read.
std::vector<std::vector<ChainAtom>> ReadRings(const std::string& path);

} // namespace zoo
