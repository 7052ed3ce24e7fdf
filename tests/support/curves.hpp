// The zoo of test chains: parametric knots of known type, random rotations, and access to the
// ground-truth files under ../shared/data (tests skip when that folder is absent).
#pragma once

#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace zoo {

// Closed polygons (first point not repeated), ids 1..n.
std::vector<ChainAtom> Circle(int n, double radius = 10.0);
// Torus knot T(p, q) on a torus of radii R, r: T(2,3) trefoil, T(2,5) 5_1, T(2,7) 7_1,
// T(3,4) 8_19.
std::vector<ChainAtom> TorusKnot(int p, int q, int n, double R = 10.0, double r = 4.0);
// Figure-eight knot 4_1 from its standard trigonometric parametrisation.
std::vector<ChainAtom> FigureEight(int n, double scale = 5.0);

// The chain rotated by a random rotation (fixed seed) and shifted.
std::vector<ChainAtom> RandomlyRotated(const std::vector<ChainAtom>& chain, unsigned seed);

// Full path of a file under ../shared/data, or "" when the data folder is absent.
std::string DataFile(const std::string& relative);
// Full path of a file under the repository.
std::string SourceFile(const std::string& relative);

} // namespace zoo
