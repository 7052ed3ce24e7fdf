// The one formatter of verdict texts over a counts vector, whatever table numbers the outcomes:
// "3_1(70%) 01(30%) " with outcomes by descending count (ties by ascending slot), percentages
// truncated in wrapping int arithmetic, and the closures that never closed summed as "IN(n) ".
#pragma once

#include <functional>
#include <string>

namespace tresk {

// `counts` has `slots` entries; `nameOf(slot)` names a slot. `problem` and `inside` (-1 when a
// table has no such slot) are the outcomes that did not give a knot: `inside` is never listed
// with a share, and both are summed into "IN(n) ", marked when they exceed a third of the total.
std::string VerdictText(const int* counts, int slots, const std::function<std::string(int)>& nameOf,
                        int problem, int inside);

} // namespace tresk
