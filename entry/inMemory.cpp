// The in-memory calls for one chain that an application already holds: the vote over closures
// and its texts, the knot and the Alexander polynomial of one projection (direction 0), two
// polynomial utilities and a diagnostic print of the coordinates.
#include <algorithm>
#include <iostream>

#include "alexander/determinant.hpp" // for GivePolyByValM3
#include "alexander/polynomial.hpp"  // for ShowPoly, CalculatePoly
#include "chain/direction.hpp"       // for the one-direction operations
#include "chain/manyClosures.hpp"    // for FindOneKnot
#include "entry/entry.hpp"
#include "knots/whichKnot.hpp"         // for GiveTheNameOfKnot_allProj, GiveTheNameOfKnot_toMatrix
#include "preprocessing/readChain.hpp" // for tresk::CheckCoordinates
#include "core/outcomes.hpp"           // for the counts slots

namespace {

using Poly = boost::math::tools::polynomial<int>;

// The polynomial of a coefficient list, constant term first, read with one coefficient more
// than the list holds; that extra coefficient is 0, so trailing zeros simply drop.
Poly PolyFromCoefficients(const std::vector<int>& coefficients) {
  std::vector<int> padded(coefficients);
  padded.push_back(0);
  return Poly(padded.data(), static_cast<unsigned>(coefficients.size()));
}

} // namespace

// Input the engine cannot use (no counts array, coordinates outside the supported range) ends
// the call with -1 and the reason on the standard error stream, like an unreadable file.
int FindMajorKnot(const std::vector<ChainAtom>& chain, int* counts, int closureMethod,
                  int closures) {
  if (counts == nullptr) {
    std::cerr << "FindMajorKnot: no counts array\n";
    return -1;
  }
  const std::string bad = tresk::CheckCoordinates(chain);
  if (!bad.empty()) {
    std::fill(counts, counts + tresk::kOrdinals, 0);
    std::cerr << "FindMajorKnot: " << bad << "\n";
    return -1;
  }
  return FindOneKnot(chain, counts, closureMethod, closures);
}

// Without a counts array there is nothing to name: the empty text.
std::string GiveTheNameOfKnot(int* counts) {
  return counts == nullptr ? std::string() : GiveTheNameOfKnot_allProj(counts);
}

std::string GiveTheNameOfKnot_Matrix(int* counts) {
  return counts == nullptr ? std::string() : GiveTheNameOfKnot_toMatrix(counts);
}

int FindTheKnot(std::vector<ChainAtom> chain) {
  return FindTheKnotInParticularDirection(std::move(chain), 0);
}

std::string FindTheKnot_poly_string(std::vector<ChainAtom> chain, int maxPolyCrossings,
                                    bool numeric) {
  return FindTheKnotInParticularDirection_poly_string(std::move(chain), maxPolyCrossings, numeric);
}

bool FindTheKnot_poly_polynomial(std::vector<ChainAtom> chain, Poly& poly, double& value) {
  if (FindTheKnotInParticularDirection_poly(std::move(chain), poly, value, 0, 16))
    return true;
  // Too many crossings for the exact way: the polynomial that the table gives for the number.
  poly = GivePolyByValM3(value);
  return false;
}

bool FindTheKnot_poly(std::vector<ChainAtom> chain, std::vector<int>& coefficients, double& value) {
  Poly poly = PolyFromCoefficients(coefficients);
  bool result = FindTheKnot_poly_polynomial(std::move(chain), poly, value);
  // Appended, not replaced: callers pass an empty vector.
  for (std::size_t k = 0; k < poly.size(); ++k)
    coefficients.push_back(poly[k]);
  return result;
}

void PrintsPoly(Poly poly) {
  ShowPoly(poly);
}

int CalculatesPoly(std::vector<int> coefficients, int t) {
  return CalculatePoly(PolyFromCoefficients(coefficients), t);
}

void PrintChain_ToMathematica(const std::vector<ChainAtom>& chain) {
  std::cout << "{";
  for (const ChainAtom& atom : chain) {
    std::cout << "{" << atom.x << "," << atom.y << "," << atom.z << "},";
  }
  std::cout << "}\n";
}
