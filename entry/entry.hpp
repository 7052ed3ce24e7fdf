// The exported entry points: the file driver, the in-memory fingerprint calls and the
// in-memory single-chain calls.
#pragma once

#include <string>
#include <vector>

#include <boost/math/tools/polynomial.hpp>

#include "core/records.hpp" // for ChainAtom

int FindKnots(int type, char* inputFile, char* outputFile, int check, int step, int threshold,
              int closureMethod, int closures, unsigned long long polyFlag);
int MainFindKnots(char* inputFile, char* outputFile, int type, int check, int closureMethod,
                  int closures, int step, int threshold, unsigned long long polyFlag);
int FindKnotFingerprint(const std::vector<ChainAtom>& chain, char* outputFile, int step,
                        int threshold, int closureMethod, int closures, int namesMode,
                        int polyOption, bool polyFlag, unsigned long long memoryLimit);
std::string FindKnotFingerprint_string(const std::vector<ChainAtom>& chain, int step, int threshold,
                                       int closureMethod, int closures, int namesMode,
                                       int polyOption, bool polyFlag,
                                       unsigned long long memoryLimit);

int FindMajorKnot(const std::vector<ChainAtom>& chain, int* counts, int closureMethod,
                  int closures);
std::string GiveTheNameOfKnot(int* counts);
std::string GiveTheNameOfKnot_Matrix(int* counts);
int FindTheKnot(std::vector<ChainAtom> chain);
std::string FindTheKnot_poly_string(std::vector<ChainAtom> chain, int maxPolyCrossings,
                                    bool numeric);
bool FindTheKnot_poly_polynomial(std::vector<ChainAtom> chain,
                                 boost::math::tools::polynomial<int>& poly, double& value);
bool FindTheKnot_poly(std::vector<ChainAtom> chain, std::vector<int>& coefficients, double& value);
void PrintsPoly(boost::math::tools::polynomial<int> poly);
int CalculatesPoly(std::vector<int> coefficients, int t);
void PrintChain_ToMathematica(const std::vector<ChainAtom>& chain);
