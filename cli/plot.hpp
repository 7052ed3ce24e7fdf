// The picture of a knot fingerprint: the triangle of subchains (first atom across, last atom
// up), each knotted subchain coloured by its knot type with the probability as intensity.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

// One knotted subchain as read back from a fingerprint file.
struct FingerprintCell {
  int first; // 1-based positions of the subchain's ends
  int last;
  int firstId; // the end atoms' own numbers (residue numbers)
  int lastId;
  std::string knot; // dominant knot type; "IN" when no knot reached a band
  double percent;   // estimated probability of that knot (middle of its band), or inside share
};

// A names-mode fingerprint: the chain's end ids and length from the header, and its rows.
struct Fingerprint {
  int firstId = 0;
  int lastId = 0;
  int atoms = 0;
  std::vector<FingerprintCell> cells;
};

struct PlotStyle {
  int size = 900;    // width of the picture in pixels (PNG) or points (SVG)
  int step = 0;      // grid step of the scan; 0 = inferred from the rows
  std::string title; // drawn above the triangle when not empty
};

// Reads a fingerprint written in names mode (header line, then rows or "UNKNOT").
// Returns "" on success, otherwise a message naming the offending line.
std::string ParseFingerprint(std::istream& in, Fingerprint& out);
// Draws the fingerprint into a .svg or .png file (chosen by the extension).
// Returns "" on success, otherwise a message.
std::string DrawFingerprint(const Fingerprint& fingerprint, const std::string& picturePath,
                            const PlotStyle& style);
// Both steps, from a fingerprint file to a picture file.
std::string PlotFingerprintFile(const std::string& fingerprintPath, const std::string& picturePath,
                                const PlotStyle& style);
