// Crossings of a projected closed chain: detection, over/under, handedness, order along the
// edges and arc numbering. All comparisons are exact on doubles.
#pragma once

#include <utility>
#include <vector>

#include "core/records.hpp" // for Edge, Crossing, CrossingShort

// Parameters (on a, on b) of the crossing of two projected segments; result 1 crossing,
// 0 none, -1 degenerate (a message on the log stream). The pair is (0, 0) unless result is 1.
std::pair<double, double> TwoEdgesCrossed(Edge a, Edge b, int& result);
// True when a is strictly higher than b at the crossing.
bool FirstEdgeOver(Edge a, Edge b, double ta, double tb);
// Handedness: true when atan2(cross, dot) of the over and under directions is positive.
bool TypeOfCrossing(Edge over, Edge under);
// 1 when the projection must be rejected, 0 otherwise.
int FindAllCrossings(std::vector<Edge>& edges, std::vector<Crossing>& crossings, bool closed);
// Numbers the arcs; always 0.
int FillCrossings(std::vector<Edge>& edges, std::vector<Crossing>& crossings);
