// Drawing a knot fingerprint with cairo: the triangle of subchains i..j (first atom across,
// last atom up), one square per knotted row coloured by knot type, lighter for rarer knots,
// with residue numbers on the axes and a legend. SVG or PNG by the file's extension.
#include "cli/plot.hpp"

#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <istream>
#include <map>
#include <numeric>
#include <sstream>
#include <unordered_set>

namespace {

constexpr int kBands = 31;        // probability bands >90, >87, ..., >0
constexpr int kHeaderFields = 37; // "#", 2 ids, 31 band titles, "IN", 1, atoms
constexpr int kRowFields = 36;    // 2 ids, 31 cells, inside share, 2 positions

bool ParseInt(const std::string& text, int& value) {
  if (text.empty())
    return false;
  errno = 0;
  char* end = nullptr;
  const long v = std::strtol(text.c_str(), &end, 10);
  if (errno != 0 || *end != '\0' || v < -2147483647L - 1 || v > 2147483647L)
    return false;
  value = static_cast<int>(v);
  return true;
}

std::vector<std::string> Fields(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> out;
  for (std::string f; in >> f;)
    out.push_back(f);
  return out;
}

std::string AtLine(int line, const std::string& what) {
  return "line " + std::to_string(line) + ": " + what;
}

struct Rgb {
  double r, g, b;
};

// Colours of the common knot types first, then a cycle for the rest; unknown polynomials and
// inside-dominated rows in greys.
Rgb KnotColour(const std::string& knot, int index) {
  static const std::map<std::string, Rgb> fixed = {
      {"3_1", {0.84, 0.15, 0.16}}, {"4_1", {0.12, 0.47, 0.71}}, {"5_1", {0.17, 0.63, 0.17}},
      {"5_2", {1.00, 0.50, 0.05}}, {"6_1", {0.58, 0.40, 0.74}}, {"6_2", {0.55, 0.34, 0.29}},
      {"6_3", {0.89, 0.47, 0.76}}, {"-3", {0.45, 0.45, 0.45}},  {"IN", {0.20, 0.20, 0.20}}};
  static const Rgb cycle[] = {{0.74, 0.74, 0.13}, {0.09, 0.75, 0.81}, {0.40, 0.65, 0.12},
                              {0.90, 0.67, 0.01}, {0.40, 0.40, 0.80}, {0.65, 0.34, 0.16}};
  auto it = fixed.find(knot);
  if (it != fixed.end())
    return it->second;
  return cycle[index % (sizeof cycle / sizeof cycle[0])];
}

// Blend towards white: a knot seen in every closure gets its full colour.
Rgb Shade(Rgb base, double percent) {
  const double a = 0.15 + 0.85 * std::clamp(percent, 0.0, 100.0) / 100.0;
  return {1 - a + a * base.r, 1 - a + a * base.g, 1 - a + a * base.b};
}

// Knot names in table order: by crossing number, then index; status codes last.
bool KnotOrder(const std::string& a, const std::string& b) {
  auto key = [](const std::string& k) {
    int crossings = 1000, index = 0;
    const std::size_t u = k.find('_');
    if (u != std::string::npos && ParseInt(k.substr(0, u), crossings)) {
      ParseInt(k.substr(u + 1), index);
    } else {
      crossings = 1000;
    }
    return std::make_pair(crossings, index);
  };
  auto ka = key(a), kb = key(b);
  return ka != kb ? ka < kb : a < b;
}

// Residue number at a chain position, from the ids the file gives for the positions it
// names (exact for consecutive numbering, the nearest known offset otherwise).
class IdMap {
public:
  explicit IdMap(const Fingerprint& f) {
    known_[1] = f.firstId;
    known_[f.atoms] = f.lastId;
    for (const FingerprintCell& c : f.cells) {
      known_[c.first] = c.firstId;
      known_[c.last] = c.lastId;
    }
  }
  int At(int position) const {
    auto hi = known_.lower_bound(position);
    if (hi == known_.end())
      --hi;
    if (hi != known_.begin()) {
      auto lo = std::prev(hi);
      if (position - lo->first < hi->first - position)
        hi = lo;
    }
    return hi->second + (position - hi->first);
  }

private:
  std::map<int, int> known_;
};

// The grid step of the coarse phase: rows without a neighbour one position away are coarse
// grid points, which lie at first = 1 + k·step and last = atoms − l·step.
int InferStep(const Fingerprint& f, const std::unordered_set<long long>& at,
              std::vector<bool>& isolated) {
  auto key = [](int i, int j) { return (static_cast<long long>(i) << 32) ^ (j & 0xffffffffLL); };
  int step = 0;
  isolated.assign(f.cells.size(), false);
  for (std::size_t k = 0; k < f.cells.size(); ++k) {
    const FingerprintCell& c = f.cells[k];
    bool alone = true;
    for (int di = -1; di <= 1 && alone; ++di) {
      for (int dj = -1; dj <= 1 && alone; ++dj) {
        if ((di != 0 || dj != 0) && at.count(key(c.first + di, c.last + dj)) != 0)
          alone = false;
      }
    }
    isolated[k] = alone;
    if (alone)
      step = std::gcd(step, std::gcd(c.first - 1, f.atoms - c.last));
  }
  return step;
}

struct Frame {
  double left, top, side;
  int atoms;
  double X(double p) const { return left + p / atoms * side; }
  double Y(double p) const { return top + side - p / atoms * side; }
};

void Text(cairo_t* cr, double x, double y, const std::string& s, double alignX, double alignY) {
  cairo_text_extents_t e;
  cairo_text_extents(cr, s.c_str(), &e);
  cairo_move_to(cr, x - e.x_bearing - alignX * e.width, y - e.y_bearing - alignY * e.height);
  cairo_show_text(cr, s.c_str());
}

int TickSpacing(int span) {
  for (int base = 1;; base *= 10) {
    for (int m : {1, 2, 5}) {
      if (span / (base * m) <= 8)
        return base * m;
    }
  }
}

void DrawAxes(cairo_t* cr, const Frame& fr, const IdMap& ids, double font) {
  // The triangle of subchains (first below last) and the diagonal.
  cairo_set_source_rgb(cr, 0, 0, 0);
  cairo_set_line_width(cr, 1.0);
  cairo_move_to(cr, fr.X(0), fr.Y(0));
  cairo_line_to(cr, fr.X(0), fr.Y(fr.atoms));
  cairo_line_to(cr, fr.X(fr.atoms), fr.Y(fr.atoms));
  cairo_close_path(cr);
  cairo_stroke(cr);

  const int spacing = TickSpacing(std::abs(ids.At(fr.atoms) - ids.At(1)) + 1);
  cairo_set_font_size(cr, font);
  const double tick = font * 0.5;
  for (int p = 1; p <= fr.atoms; ++p) {
    const int id = ids.At(p);
    if (id % spacing != 0)
      continue;
    const double centre = p - 0.5;
    cairo_move_to(cr, fr.X(centre), fr.Y(0));
    cairo_line_to(cr, fr.X(centre), fr.Y(0) + tick);
    cairo_move_to(cr, fr.X(0), fr.Y(centre));
    cairo_line_to(cr, fr.X(0) - tick, fr.Y(centre));
    cairo_stroke(cr);
    Text(cr, fr.X(centre), fr.Y(0) + tick * 1.6, std::to_string(id), 0.5, 0.0);
    Text(cr, fr.X(0) - tick * 1.6, fr.Y(centre), std::to_string(id), 1.0, 0.5);
  }
  cairo_set_font_size(cr, font * 1.15);
  Text(cr, fr.X(fr.atoms / 2.0), fr.Y(0) + font * 3.2, "first residue of the subchain", 0.5, 0);
  cairo_save(cr);
  cairo_translate(cr, fr.left - font * 4.6, fr.Y(fr.atoms / 2.0));
  cairo_rotate(cr, -1.5707963267948966);
  Text(cr, 0, 0, "last residue of the subchain", 0.5, 0.5);
  cairo_restore(cr);
}

void DrawLegend(cairo_t* cr, const Frame& fr, const std::vector<std::string>& types, double font) {
  const double x = fr.left + fr.side + font * 2.5;
  double y = fr.top;
  const double box = font * 1.1;
  cairo_set_font_size(cr, font * 1.1);
  cairo_set_source_rgb(cr, 0, 0, 0);
  Text(cr, x, y, "knot type", 0, 0);
  y += font * 2.2;
  cairo_set_font_size(cr, font);
  for (std::size_t k = 0; k < types.size(); ++k) {
    const Rgb c = KnotColour(types[k], static_cast<int>(k));
    cairo_rectangle(cr, x, y, box, box);
    cairo_set_source_rgb(cr, c.r, c.g, c.b);
    cairo_fill_preserve(cr);
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_set_line_width(cr, 0.5);
    cairo_stroke(cr);
    const std::string label = types[k] == "-3"   ? "unknown (-3)"
                              : types[k] == "IN" ? "no knot band"
                                                 : types[k];
    Text(cr, x + box * 1.5, y + box / 2, label, 0, 0.5);
    y += box * 1.7;
  }
  if (types.empty()) {
    Text(cr, x, y, "no knotted subchain", 0, 0);
    return;
  }
  // Intensity scale, drawn in the first knot's colour.
  y += font * 1.5;
  cairo_set_font_size(cr, font * 1.1);
  Text(cr, x, y, "probability", 0, 0);
  y += font * 2.0;
  cairo_set_font_size(cr, font);
  const Rgb base = KnotColour(types.front(), 0);
  const double height = fr.side * 0.3;
  const int steps = 50;
  for (int s = 0; s < steps; ++s) {
    const Rgb c = Shade(base, 100.0 * (steps - s - 0.5) / steps);
    cairo_rectangle(cr, x, y + height * s / steps, box, height / steps + 0.5);
    cairo_set_source_rgb(cr, c.r, c.g, c.b);
    cairo_fill(cr);
  }
  cairo_set_source_rgb(cr, 0, 0, 0);
  cairo_rectangle(cr, x, y, box, height);
  cairo_stroke(cr);
  Text(cr, x + box * 1.5, y, "100%", 0, 0);
  Text(cr, x + box * 1.5, y + height / 2, "50%", 0, 0.5);
  Text(cr, x + box * 1.5, y + height, "0%", 0, 1);
}

void DrawCells(cairo_t* cr, const Frame& fr, const Fingerprint& f, const PlotStyle& style,
               const std::vector<std::string>& types) {
  auto key = [](int i, int j) { return (static_cast<long long>(i) << 32) ^ (j & 0xffffffffLL); };
  std::unordered_set<long long> at;
  for (const FingerprintCell& c : f.cells)
    at.insert(key(c.first, c.last));
  std::vector<bool> isolated;
  int step = InferStep(f, at, isolated);
  if (style.step > 0)
    step = style.step;
  if (step <= 0)
    step = std::max(1, f.atoms / 20);

  // Only the triangle first <= last is painted.
  cairo_save(cr);
  cairo_move_to(cr, fr.X(0), fr.Y(0));
  cairo_line_to(cr, fr.X(0), fr.Y(fr.atoms));
  cairo_line_to(cr, fr.X(fr.atoms), fr.Y(fr.atoms));
  cairo_close_path(cr);
  cairo_clip(cr);
  cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
  // Coarse grid points stand for the square of subchains around them; the finer rows of the
  // refinement are painted over them.
  for (int pass = 0; pass < 2; ++pass) {
    for (std::size_t k = 0; k < f.cells.size(); ++k) {
      if (isolated[k] != (pass == 0))
        continue;
      const FingerprintCell& c = f.cells[k];
      const double half = (pass == 0 ? step : 1) / 2.0;
      const int index =
          static_cast<int>(std::find(types.begin(), types.end(), c.knot) - types.begin());
      const Rgb colour = Shade(KnotColour(c.knot, index), c.percent);
      const double x0 = fr.X(c.first - 0.5 - half), x1 = fr.X(c.first - 0.5 + half);
      const double y0 = fr.Y(c.last - 0.5 + half), y1 = fr.Y(c.last - 0.5 - half);
      cairo_rectangle(cr, x0, y0, x1 - x0, y1 - y0);
      cairo_set_source_rgb(cr, colour.r, colour.g, colour.b);
      cairo_fill(cr);
    }
  }
  cairo_restore(cr);
}

std::string Lowercase(std::string s) {
  for (char& ch : s)
    ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  return s;
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

} // namespace

#if defined(__SANITIZE_ADDRESS__)
// fontconfig, which cairo loads for the labels, keeps its caches for the life of the process
// and never frees some of them; they are not leaks of this program.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}
#endif

std::string ParseFingerprint(std::istream& in, Fingerprint& out) {
  out = Fingerprint{};
  bool header = false;
  int lineNumber = 0;
  for (std::string line; std::getline(in, line);) {
    ++lineNumber;
    const std::vector<std::string> f = Fields(line);
    if (f.empty())
      continue;
    if (!header) {
      int one = 0;
      if (f.size() != kHeaderFields || f[0] != "#" || f[3] != ">90" || f[33] != ">0" ||
          f[34] != "IN" || !ParseInt(f[1], out.firstId) || !ParseInt(f[2], out.lastId) ||
          !ParseInt(f[35], one) || !ParseInt(f[36], out.atoms) || one != 1 || out.atoms < 1) {
        return AtLine(lineNumber,
                      "not the header of a fingerprint in names mode (polynomial dictionaries "
                      "cannot be drawn)");
      }
      header = true;
      continue;
    }
    if (f.size() == 1 && f[0] == "UNKNOT")
      continue;
    if (f.size() != kRowFields) {
      return AtLine(lineNumber, "expected " + std::to_string(kRowFields) + " fields, found " +
                                    std::to_string(f.size()));
    }
    FingerprintCell c{};
    int inside = 0;
    if (!ParseInt(f[0], c.firstId) || !ParseInt(f[1], c.lastId) || !ParseInt(f[33], inside) ||
        !ParseInt(f[34], c.first) || !ParseInt(f[35], c.last)) {
      return AtLine(lineNumber, "ids, inside share and positions must be integers");
    }
    if (c.first < 1 || c.last > out.atoms || c.first >= c.last) {
      return AtLine(lineNumber, "positions " + f[34] + ".." + f[35] + " lie outside the chain");
    }
    c.knot = "IN";
    c.percent = inside;
    for (int band = 0; band < kBands; ++band) {
      const std::string& cell = f[2 + band];
      if (cell == "0")
        continue;
      c.knot = cell.substr(0, cell.find(','));
      // The band >T holds probabilities T+1 .. T+3 (91 .. 100 for the first).
      c.percent = band == 0 ? 95.5 : 92.0 - 3.0 * band;
      break;
    }
    out.cells.push_back(c);
  }
  if (!header)
    return "no fingerprint header found (empty input?)";
  return "";
}

std::string DrawFingerprint(const Fingerprint& fingerprint, const std::string& picturePath,
                            const PlotStyle& style) {
  const std::string lower = Lowercase(picturePath);
  const bool svg = EndsWith(lower, ".svg");
  if (!svg && !EndsWith(lower, ".png"))
    return "the picture must be a .svg or .png file";
  if (fingerprint.atoms < 1)
    return "the fingerprint has no atoms";
  if (style.size < 200 || style.size > 20000)
    return "the picture size must be 200 to 20000";

  const double width = style.size;
  const double font = width / 70.0;
  Frame frame{width * 0.11, width * 0.08, width * 0.66, fingerprint.atoms};
  const double height = frame.top + frame.side + width * 0.1;

  cairo_surface_t* surface =
      svg ? cairo_svg_surface_create(picturePath.c_str(), width, height)
          : cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width),
                                       static_cast<int>(height));
  cairo_t* cr = cairo_create(surface);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_paint(cr);
  cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);

  std::vector<std::string> types;
  for (const FingerprintCell& c : fingerprint.cells) {
    if (std::find(types.begin(), types.end(), c.knot) == types.end())
      types.push_back(c.knot);
  }
  std::sort(types.begin(), types.end(), KnotOrder);

  DrawCells(cr, frame, fingerprint, style, types);
  DrawAxes(cr, frame, IdMap(fingerprint), font);
  DrawLegend(cr, frame, types, font);
  if (!style.title.empty()) {
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_set_font_size(cr, font * 1.4);
    Text(cr, frame.X(fingerprint.atoms / 2.0), frame.top * 0.35, style.title, 0.5, 0.5);
  }

  cairo_status_t status = cairo_status(cr);
  cairo_destroy(cr);
  if (status == CAIRO_STATUS_SUCCESS && !svg) {
    status = cairo_surface_write_to_png(surface, picturePath.c_str());
  }
  cairo_surface_finish(surface);
  if (status == CAIRO_STATUS_SUCCESS)
    status = cairo_surface_status(surface);
  cairo_surface_destroy(surface);
  if (status != CAIRO_STATUS_SUCCESS) {
    return "cannot write " + picturePath + ": " + cairo_status_to_string(status);
  }
  return "";
}

std::string PlotFingerprintFile(const std::string& fingerprintPath, const std::string& picturePath,
                                const PlotStyle& style) {
  std::ifstream in(fingerprintPath);
  if (!in)
    return "cannot open " + fingerprintPath;
  Fingerprint fingerprint;
  const std::string error = ParseFingerprint(in, fingerprint);
  if (!error.empty())
    return fingerprintPath + ": " + error;
  return DrawFingerprint(fingerprint, picturePath, style);
}
