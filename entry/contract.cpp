// Compile-time checks of every exported signature of libtresk and libchainprep: a changed
// parameter or result type breaks the build here instead of an application that loads the
// library. Nothing in this file runs.
#include <fstream>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "entry/tresk.hpp"

namespace {

using Poly = boost::math::tools::polynomial<int>;
using PolyMatrix = std::vector<std::vector<Poly>>;
using NumMatrix = std::vector<std::vector<double>>;
using Chain = std::vector<ChainAtom>;
using Tally = std::map<std::string, float>;
using PolyShare = std::pair<std::string, float>;

// The exported function `name` has exactly the function type given after it.
#define TRESK_SIGNATURE(name, ...)                                                                 \
  static_assert(std::is_same_v<decltype(&name), std::add_pointer_t<__VA_ARGS__>>, #name)
// The same for a name with overloads: the call compiles only when this exact overload exists.
template <class Signature> constexpr bool Overload(Signature*) {
  return true;
}
#define TRESK_OVERLOAD(name, ...) static_assert(Overload<__VA_ARGS__>(&name), #name)

// Records and their sort orders.
TRESK_SIGNATURE(WayToSortRowsToFile, bool(RowFile, RowFile));
TRESK_SIGNATURE(WayToSortCrossings, bool(CrossingShort, CrossingShort));

// The chain-preprocessing library.
TRESK_SIGNATURE(ChainRead, Chain(char*, bool&));
TRESK_SIGNATURE(CheckDistancesBetweenAtoms, std::string(Chain));
TRESK_SIGNATURE(FillFulerenData, void());
TRESK_SIGNATURE(CloseChain_OUT, int(Chain&, double));
TRESK_SIGNATURE(CloseChain_2points, int(Chain&, double));
TRESK_SIGNATURE(CloseChain_1point, int(Chain&, double));
TRESK_SIGNATURE(CloseChain_1direction, int(Chain&));
TRESK_OVERLOAD(ChainReduce, int(Chain&, bool));
TRESK_SIGNATURE(ProjectChain, std::vector<Edge>(const Chain&, int, bool));
TRESK_SIGNATURE(CompareEq, bool(double, double, double));

// Crossings.
TRESK_SIGNATURE(TwoEdgesCrossed, std::pair<double, double>(Edge, Edge, int&));
TRESK_SIGNATURE(FirstEdgeOver, bool(Edge, Edge, double, double));
TRESK_SIGNATURE(TypeOfCrossing, bool(Edge, Edge));
TRESK_SIGNATURE(FindAllCrossings, int(std::vector<Edge>&, std::vector<Crossing>&, bool));
TRESK_SIGNATURE(FillCrossings, int(std::vector<Edge>&, std::vector<Crossing>&));

// Alexander polynomial, exact and numeric.
TRESK_SIGNATURE(CreateFoxMatrix, PolyMatrix(std::vector<Crossing> const&));
TRESK_SIGNATURE(det_poly, Poly(PolyMatrix const&));
TRESK_SIGNATURE(NormalizePoly, Poly(Poly const&));
TRESK_SIGNATURE(NonZeroPoly, bool(Poly));
TRESK_SIGNATURE(EqualPolies, bool(Poly, Poly));
TRESK_SIGNATURE(CalculatePoly, int(Poly, int));
TRESK_SIGNATURE(ShowPoly, void(Poly));
TRESK_SIGNATURE(ShowMatrix, void(PolyMatrix const&));
TRESK_SIGNATURE(CreateFoxMatrix_double, NumMatrix(std::vector<Crossing> const&, int));
TRESK_SIGNATURE(det_double, double(NumMatrix&, int));
TRESK_SIGNATURE(Normalize_det_double, int(double, int));
TRESK_SIGNATURE(WhichKnotDouble_OrdNr, int(double));
TRESK_SIGNATURE(GivePolyByValM3, Poly(double));
TRESK_SIGNATURE(ShowMatrix_double, void(NumMatrix const&));
TRESK_SIGNATURE(main2, void());

// Knot table, verdicts and result texts.
TRESK_SIGNATURE(FillKnotsArray, void());
TRESK_SIGNATURE(WhichKnot, std::string(Poly));
TRESK_SIGNATURE(WhichKnot_OrdNr, int(Poly));
TRESK_SIGNATURE(GiveTheNameOfKnotOne, std::string(int*));
TRESK_SIGNATURE(GiveTheStrenghtOfKnot, int(int*));
TRESK_SIGNATURE(GiveTheStrenghtOfKnot_poly, int(Tally));
TRESK_SIGNATURE(GiveTheNameOfKnot_allProj, std::string(int*));
TRESK_SIGNATURE(WayToSortKnociki, bool(Knocik, Knocik));
TRESK_SIGNATURE(GiveTheNameOfKnot_toMatrix, std::string(int*));
TRESK_SIGNATURE(GiveThePolies_toDict, std::string(Tally));
TRESK_SIGNATURE(WayToSortPolies, bool(PolyShare, PolyShare));
static_assert(std::is_same_v<decltype(knots), KnownKnot[42]>, "knots");

// Knot of one chain.
TRESK_SIGNATURE(FindTheKnotInParticularDirection_poly, bool(Chain, Poly&, double&, int, int));
TRESK_SIGNATURE(FindTheKnotInParticularDirection, int(Chain, int));
TRESK_SIGNATURE(FindTheKnotInParticularDirection_True, int(Chain, int));
TRESK_SIGNATURE(FindTheKnotInParticularDirection_poly_string, std::string(Chain, int, bool));
TRESK_SIGNATURE(FindOneKnot, int(const Chain&, int*, int, int));

// Subchain scan.
TRESK_SIGNATURE(PrepareJobsFromNet, int(const Chain&, std::vector<Job>&, int));
TRESK_SIGNATURE(PrepareJobsAroundNet,
                int(const Chain&, std::vector<Job>&, const std::vector<RowFile>&, int, int));
TRESK_SIGNATURE(PrepareAllInfixesFuleren,
                bool(const Chain&, std::vector<fPointR3>&, std::vector<Job>&,
                     const std::vector<Job>&, unsigned int&, int, int, unsigned long long));
TRESK_SIGNATURE(PrepareAllInfixes, int(const Chain&, std::vector<fPointR3>&, std::vector<Job>&,
                                       unsigned int&, unsigned int&, unsigned long long));
TRESK_SIGNATURE(CopyJobToChainAtom, void(const std::vector<fPointR3>&, Chain&, Job));
TRESK_SIGNATURE(FindAllKnots, int(const Chain&, std::fstream&, int, int, int, int, int, int, bool,
                                  unsigned long long));
TRESK_SIGNATURE(FindAllKnots_string,
                std::string(const Chain&, int, int, int, int, int, int, bool, unsigned long long));
TRESK_SIGNATURE(MakeRowFromJob, RowFile(std::string, Job, int, int));
TRESK_SIGNATURE(removeTrailingZeros, std::string(float));

// Batch reduction.
TRESK_SIGNATURE(intersection, int(fPointR3*, fPointR3*));
TRESK_OVERLOAD(ChainReduce, int(std::vector<fPointR3>&));
TRESK_SIGNATURE(ChainReduceCPU, int(std::vector<fPointR3>&, std::vector<Job>&));
TRESK_SIGNATURE(ChainReduceANY, int(std::vector<fPointR3>&, std::vector<Job>&, bool));

// Entry points.
TRESK_SIGNATURE(FindKnots, int(int, char*, char*, int, int, int, int, int, unsigned long long));
TRESK_SIGNATURE(MainFindKnots, int(char*, char*, int, int, int, int, int, int, unsigned long long));
TRESK_SIGNATURE(FindKnotFingerprint,
                int(const Chain&, char*, int, int, int, int, int, int, bool, unsigned long long));
TRESK_SIGNATURE(FindKnotFingerprint_string,
                std::string(const Chain&, int, int, int, int, int, int, bool, unsigned long long));
TRESK_SIGNATURE(FindMajorKnot, int(const Chain&, int*, int, int));
TRESK_SIGNATURE(GiveTheNameOfKnot, std::string(int*));
TRESK_SIGNATURE(GiveTheNameOfKnot_Matrix, std::string(int*));
TRESK_SIGNATURE(FindTheKnot, int(Chain));
TRESK_SIGNATURE(FindTheKnot_poly_string, std::string(Chain, int, bool));
TRESK_SIGNATURE(FindTheKnot_poly_polynomial, bool(Chain, Poly&, double&));
TRESK_SIGNATURE(FindTheKnot_poly, bool(Chain, std::vector<int>&, double&));
TRESK_SIGNATURE(PrintsPoly, void(Poly));
TRESK_SIGNATURE(CalculatesPoly, int(std::vector<int>, int));
TRESK_SIGNATURE(PrintChain_ToMathematica, void(const Chain&));

#undef TRESK_SIGNATURE
#undef TRESK_OVERLOAD

} // namespace
