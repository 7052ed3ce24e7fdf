// Over- and under-pass shortcuts of a closed chain in one projection: a stretch of the chain
// that passes over (or under) every strand it meets in the diagram is replaced by a straight
// path lifted above (or lowered below) the whole chain. The knot type is kept: the stretch can be
// lifted vertically without meeting anything, and above the chain it can be straightened freely.
#pragma once

#include <vector>

#include "core/records.hpp"             // for ChainAtom
#include "preprocessing/directions.hpp" // for ProjectionFrame

namespace tresk {

// Replaces the stretch whose shortcut removes the most crossings of the diagram in `frame`;
// false (chain unchanged) when no shortcut removes any, or the diagram is too close to
// degenerate to be trusted. New vertices get id 0.
bool ShortcutBestPass(std::vector<ChainAtom>& chain, const ProjectionFrame& frame);

} // namespace tresk
