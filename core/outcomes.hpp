// The outcomes a vote over closures counts, as slots of the 42-int counts array: 0 the unknot,
// 1..38 the knots of the table, then three status slots. Every file that indexes a counts array
// takes these names from here.
#pragma once

namespace tresk {

constexpr int kOrdinals = 42;   // slots of a counts array
constexpr int kUnknot = 0;      // the unknot's slot
constexpr int kTableKnots = 39; // slots 0..38 are knots the table can match
constexpr int kUnknown = 39;    // a polynomial that no table row has
constexpr int kProblem = 40;    // "Problem with projecting": the numeric value is not an integer
constexpr int kInside = 41;     // INSIDE

} // namespace tresk
