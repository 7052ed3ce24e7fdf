// The layout of a fingerprint picture, computed without drawing: the frame of the triangle of
// subchains, one coloured square per knotted row, the axis ticks, the legend's places.
#pragma once

#include <string>
#include <vector>

#include "entry/api.hpp" // for tresk::Fingerprint

struct PlotStyle {
  int size = 900;    // width of the picture in pixels (PNG) or points (SVG)
  int step = 0;      // grid step of the scan; 0 = inferred from the rows
  std::string title; // drawn above the triangle when not empty
};

struct Rgb {
  double r, g, b;
};

// The triangle: chain positions 0 .. atoms map to a square of side `side` at (left, top),
// first position across, last position up.
struct Frame {
  double left, top, side;
  int atoms;
  double X(double p) const { return left + p / atoms * side; }
  double Y(double p) const { return top + side - p / atoms * side; }
};

struct Square {
  double x, y, width, height;
  Rgb colour;
};

struct Tick {
  double position; // chain position of the tick (middle of its atom)
  long long id;    // residue number written beside it
};

// Legend on the right: a title, one box per knot type, then an intensity scale.
struct Legend {
  double x, box, titleY;
  std::vector<double> entryY; // top of each knot type's box
  double afterEntries;        // below the last box ("no knotted subchain" when there is none)
  double scaleTitleY, scaleY, scaleHeight;
};

struct PlotLayout {
  double width, height, font;
  Frame frame;
  std::vector<std::string> types; // knot types in table order
  std::vector<Square> squares;    // painted in this order
  std::vector<Tick> ticks;
  Legend legend;
};

// The layout of `f` at the style's size; f.atoms must be at least 1.
PlotLayout LayOut(const tresk::Fingerprint& f, const PlotStyle& style);
// The colour of a knot type (index: its place in the legend), and blended towards white for a
// probability below 100 %.
Rgb KnotColour(const std::string& knot, int index);
Rgb Shade(Rgb base, double percent);
// The legend's text for a knot type or status code.
std::string LegendLabel(const std::string& type);
