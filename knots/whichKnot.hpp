// The table of known knots and its lookups, the verdict over many closures and the compact
// result texts (matrix cells, polynomial dictionaries, short decimals).
#pragma once

#include <map>
#include <string>
#include <utility>

#include <boost/math/tools/polynomial.hpp>

#include "core/records.hpp" // for KnownKnot, Knocik, knots

void FillKnotsArray();
std::string WhichKnot(boost::math::tools::polynomial<int> poly);
int WhichKnot_OrdNr(boost::math::tools::polynomial<int> poly);

std::string GiveTheNameOfKnotOne(int* counts);
int GiveTheStrenghtOfKnot(int* counts);
int GiveTheStrenghtOfKnot_poly(std::map<std::string, float> tally);
std::string GiveTheNameOfKnot_allProj(int* counts);
bool WayToSortKnociki(Knocik a, Knocik b);

std::string GiveTheNameOfKnot_toMatrix(int* counts);
std::string GiveThePolies_toDict(std::map<std::string, float> tally);
bool WayToSortPolies(std::pair<std::string, float> a, std::pair<std::string, float> b);
// Three decimals, trailing zeros and a bare point removed: 0.5 -> "0.5", 1 -> "1".
std::string removeTrailingZeros(float value);
