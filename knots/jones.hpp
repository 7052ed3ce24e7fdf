// The Jones polynomial of a knot diagram, exact, and naming by it with handedness.
//
// Normal form: a Laurent polynomial in the Kauffman-bracket variable A, every exponent a multiple
// of 4, stored as its lowest exponent and the coefficients of A^low, A^(low+4), ... (no zero at
// either end; the unknot is {0, {1}}). It is f(A) = (-A^3)^(-w) <D> with the bracket normalised
// to 1 on a circle, <X> = A <smoothing joining the incoming under strand to the strand
// counter-clockwise after it> + A^-1 <the other smoothing>, w the writhe (crossing sign 1 of
// alexander/foxRow.hpp counts +1). In t = A^-4 this is the Jones polynomial V(t). The table's
// convention (Knoto-ID's knot names) is the same variable: its 3_1 is A^4 + A^12 - A^16, that
// is V = t^-1 + t^-3 - t^-4. Coefficients are computed in wrapping 64-bit arithmetic: a ring
// homomorphism, so the result is exact whenever the true coefficients fit (they are small).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom, Edge, Crossing

namespace tresk {

struct JonesPolynomial {
  int lowest = 0;                         // exponent of A of the first coefficient
  std::vector<std::int64_t> coefficients; // of A^lowest, A^(lowest+4), ...
};

bool operator==(const JonesPolynomial& a, const JonesPolynomial& b);

// The mirror image's polynomial: A -> A^-1.
JonesPolynomial Mirror(const JonesPolynomial& p);

// Text like "A^4 + A^12 - A^16" ("1" for the unknot).
std::string JonesText(const JonesPolynomial& p);

// Contraction of the bracket crossing by crossing along the chain (width, not 2^n, decides the
// cost): gives up when the partial states of one step exceed this many.
constexpr std::size_t kJonesMaxStates = 1u << 16;

enum class JonesStatus { ok, degenerate, tooWide };

// The Jones polynomial of the diagram of a closed chain's edges and crossings, as ProjectChain
// and FindAllCrossings give them (Edge::crossings with the parameter t from 1 at an edge's
// first point to 0 at its last).
JonesStatus JonesOfDiagram(const std::vector<Edge>& edges, const std::vector<Crossing>& crossings,
                           JonesPolynomial& out);

// The Jones polynomial of a closed chain projected along `direction` (0..59).
JonesStatus JonesOfClosedChain(const std::vector<ChainAtom>& chain, int direction,
                               JonesPolynomial& out);

// A diagram as a planar-diagram code: crossing k is X[a, b, c, d], the strand labels around it
// counter-clockwise from the incoming under strand, and its sign (+1 / -1) for the writhe.
struct PdCrossing {
  int label[4];
  int sign;
};
JonesStatus JonesOfPd(const std::vector<PdCrossing>& pd, JonesPolynomial& out);
// The code of a projected diagram, its crossings in the order the chain first meets them; false
// when the crossings' records do not describe one closed curve.
bool PdOfDiagram(const std::vector<Edge>& edges, const std::vector<Crossing>& crossings,
                 std::vector<PdCrossing>& pd);

// Handed naming. The handed name of a table entry: its first knot, "+" for the hand that the
// knotted-protein field calls positive (right-handed, positive crossings), "-" for its mirror,
// no sign for an amphichiral knot; composites joined by "#" ("+3_1#-3_1"); "01" the unknot.
// "" when the polynomial is not in the table.
std::string HandedNameOfJones(const JonesPolynomial& p);

// The outcome of one closed copy named by both invariants: `alexanderName` is what the
// Alexander polynomial named ("01", a knot, "UNKNOWN", or a status text). A trivial Alexander
// polynomial with a non-trivial Jones polynomial is never the unknot: the Jones name, or
// "UNKNOWN". A knot whose Jones polynomial is not in the table keeps its Alexander name.
std::string HandedName(const std::string& alexanderName, JonesStatus status,
                       const JonesPolynomial& jones);

} // namespace tresk
