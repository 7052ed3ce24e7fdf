// Over- and under-pass shortcuts of a closed chain in one projection: a stretch of the chain
// that passes over (or under) every strand it meets in the diagram is replaced by a straight
// path lifted above (or lowered below) the whole chain. The knot type is kept: the stretch can be
// lifted vertically without meeting anything, and above the chain it can be straightened freely.
#pragma once

#include <vector>

#include "core/records.hpp"             // for ChainAtom
#include "preprocessing/directions.hpp" // for ProjectionFrame
#include "preprocessing/plane2d.hpp"    // for P2

namespace tresk {

// Replaces the stretch whose shortcut removes the most crossings of the diagram in `frame`;
// false (chain unchanged) when no shortcut removes any, or the diagram is too close to
// degenerate to be trusted. New vertices get id 0.
bool ShortcutBestPass(std::vector<ChainAtom>& chain, const ProjectionFrame& frame);

// True when the closed chain's diagram in `frame` has exactly `crossings` crossings, every one
// clear of degeneracy, and is reduced (no crossing that a circle could cut off alone: in the
// order along the chain, every crossing has another one met exactly once between its two
// passes) and alternating (over and under take turns along the chain). Such a diagram has as
// few crossings as any diagram of its knot can have, so no change that keeps the knot can
// bring any diagram lower.
bool MinimalDiagram(const std::vector<ChainAtom>& chain, const ProjectionFrame& frame,
                    int crossings);

// The least distance (hypot of the offset) from c to the edges e -> e + 1 of the closed polygon
// p, for e from `first` up to (not including) `stop` round the polygon, leaving out edge `skip`;
// infinity when there is none. The shortcut search takes the clearance of a chord's ends so.
double LeastDistance(plane2d::P2 c, const std::vector<plane2d::P2>& p, int first, int stop,
                     int skip);

} // namespace tresk
