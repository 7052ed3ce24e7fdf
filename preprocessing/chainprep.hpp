// The chain-preprocessing library (libchainprep.so): reading chain files, checking atom
// distances, closing open chains, simplifying closed chains and projecting them onto planes.
// It depends on nothing of the knot engine; libtresk links against it.
#pragma once

#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom, Edge

// Reads one chain (plain xyz text, PDB or mmCIF, optionally gzip-compressed). Sets `error` on
// every call; an unreadable or unusable file gives error = true and an empty vector.
std::vector<ChainAtom> ChainRead(char* fileName, bool& error);

// "OK" for an acceptable chain, otherwise a readable message naming the offending atoms.
std::string CheckDistancesBetweenAtoms(std::vector<ChainAtom> chain);

// Prepares the 60 projection directions (done lazily as well, so calling it is optional).
void FillFulerenData();

// Closures of an open chain, in place. -1 means "try again"; never -1 for ever.
int CloseChain_OUT(std::vector<ChainAtom>& chain, double parameter);
int CloseChain_2points(std::vector<ChainAtom>& chain, double parameter);
int CloseChain_1point(std::vector<ChainAtom>& chain, double parameter);
int CloseChain_1direction(std::vector<ChainAtom>& chain);

// Removes vertices of a closed chain without changing its knot type; returns the new size.
int ChainReduce(std::vector<ChainAtom>& chain, bool flag);

// Projects a closed chain along direction `direction` (any int, taken modulo 60); one Edge per
// segment including the closing one.
std::vector<Edge> ProjectChain(const std::vector<ChainAtom>& chain, int direction, bool flag);

// True when a equals b within tolerance.
bool CompareEq(double a, double b, double tolerance);
