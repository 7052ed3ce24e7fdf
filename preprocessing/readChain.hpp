// Reading a chosen chain of a structure or text file, with a message when the file cannot be
// used: the chain-preprocessing library's own reader API (ChainRead is its default use).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace tresk {

// Coordinates the engine accepts: finite and at most this far from the origin on every axis.
// Beyond it the products inside the geometric tests lose their margin (and 1e39 is no float).
constexpr double kMaxCoordinate = 1e9;

struct ReadOptions {
  std::string chain; // author chain id (mmCIF label id accepted too); "" = first polymer chain
  int model = 0;     // model number; 0 = model 1 when present, else the first in the file
  std::string atom = "CA"; // the backbone atom taken per residue ("P" for nucleic acids)
  std::size_t maxBytes = std::size_t(1) << 29; // largest (decompressed) file read: 512 MiB
};

struct ReadResult {
  std::vector<ChainAtom> atoms; // empty when `error` is set
  std::string error;            // "" on success, otherwise what is wrong (with the line)
  std::string chain;            // the chain that was read ("" for plain text files)
  std::string model;            // its model ("" for plain text files)
};

// Reads one chain of a plain-text (x y z or id x y z), PDB or mmCIF file, each optionally
// gzip-compressed. Structures: every residue of the chosen chain of the chosen model in file
// order, whatever TER records say, polymer residues written as HETATM (MSE, ...) included,
// waters and ligands never; one atom per residue, the alternate location with the highest
// occupancy (the first on ties); `id` is the author residue number.
ReadResult ReadChain(const std::string& path, const ReadOptions& options = {});

// Every chain of the model that has at least one residue with the backbone atom, in file order.
// Empty for plain text files and unreadable ones.
std::vector<std::string> PolymerChains(const std::string& path, const ReadOptions& options = {});

// "" when every coordinate is finite and within kMaxCoordinate, otherwise the first offender.
std::string CheckCoordinates(const std::vector<ChainAtom>& chain);

// "" unless the chain has two or more atoms and every one lies at the same point: such a chain
// has no shape to name, and each projection of it is degenerate. The commands refuse it.
std::string CheckExtent(const std::vector<ChainAtom>& chain);

} // namespace tresk
