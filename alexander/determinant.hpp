// The numeric variant of the Alexander determinant: the matrix at one integer t, Gaussian
// elimination, powers of t divided out, and lookups by the table's values at t = -3.
#pragma once

#include <vector>

#include <boost/math/tools/polynomial.hpp>

#include "core/records.hpp" // for Crossing

std::vector<std::vector<double>> CreateFoxMatrix_double(std::vector<Crossing> const& crossings,
                                                        int t);
double det_double(std::vector<std::vector<double>>& M, int t);
int Normalize_det_double(double x, int d);
int WhichKnotDouble_OrdNr(double x);
boost::math::tools::polynomial<int> GivePolyByValM3(double x);
void ShowMatrix_double(std::vector<std::vector<double>> const& M);
void main2();
