// The layout of a fingerprint picture: colours by knot type and probability, the grid step
// inferred from the rows, residue numbers at the ticks and the places of every square and of
// the legend. Pure arithmetic; cli/draw/plotDraw.cpp paints it.
#include "cli/plot.hpp"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <numeric>
#include <unordered_set>

namespace {

bool ParseInt(const std::string& text, int& value) {
  char* end = nullptr;
  const long long v = std::strtoll(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || v < -2147483647LL - 1 || v > 2147483647LL)
    return false;
  value = static_cast<int>(v);
  return true;
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
  explicit IdMap(const tresk::Fingerprint& f) {
    known_[1] = f.firstId;
    known_[f.atoms] = f.lastId;
    for (const tresk::FingerprintCell& c : f.cells) {
      known_[c.first] = c.firstId;
      known_[c.last] = c.lastId;
    }
  }
  long long At(int position) const {
    auto hi = known_.lower_bound(position);
    if (hi == known_.end())
      --hi;
    if (hi != known_.begin()) {
      auto lo = std::prev(hi);
      if (position - lo->first < hi->first - position)
        hi = lo;
    }
    return hi->second + static_cast<long long>(position - hi->first);
  }

private:
  std::map<int, long long> known_;
};

long long Key(int i, int j) {
  return (static_cast<long long>(i) << 32) ^ (j & 0xffffffffLL);
}

// The grid step of the coarse phase: rows without a neighbour one position away are coarse
// grid points, which lie at first = 1 + k·step and last = atoms − l·step.
int InferStep(const tresk::Fingerprint& f, std::vector<bool>& isolated) {
  std::unordered_set<long long> at;
  for (const tresk::FingerprintCell& c : f.cells)
    at.insert(Key(c.first, c.last));
  int step = 0;
  isolated.assign(f.cells.size(), false);
  for (std::size_t k = 0; k < f.cells.size(); ++k) {
    const tresk::FingerprintCell& c = f.cells[k];
    bool alone = true;
    for (int di = -1; di <= 1 && alone; ++di) {
      for (int dj = -1; dj <= 1 && alone; ++dj) {
        if ((di != 0 || dj != 0) && at.count(Key(c.first + di, c.last + dj)) != 0)
          alone = false;
      }
    }
    isolated[k] = alone;
    if (alone)
      step = std::gcd(step, std::gcd(c.first - 1, f.atoms - c.last));
  }
  return step;
}

long long TickSpacing(long long span) {
  for (long long base = 1;; base *= 10) {
    for (long long m : {1, 2, 5}) {
      if (span / (base * m) <= 8)
        return base * m;
    }
  }
}

// Coarse grid points stand for the square of subchains around them; the finer rows of the
// refinement are painted over them.
std::vector<Square> Squares(const tresk::Fingerprint& f, const PlotStyle& style, const Frame& fr,
                            const std::vector<std::string>& types) {
  std::vector<bool> isolated;
  int step = InferStep(f, isolated);
  if (style.step > 0)
    step = style.step;
  if (step <= 0)
    step = std::max(1, f.atoms / 20);
  std::vector<Square> out;
  for (int pass = 0; pass < 2; ++pass) {
    for (std::size_t k = 0; k < f.cells.size(); ++k) {
      if (isolated[k] != (pass == 0))
        continue;
      const tresk::FingerprintCell& c = f.cells[k];
      const double half = (pass == 0 ? step : 1) / 2.0;
      const int index =
          static_cast<int>(std::find(types.begin(), types.end(), c.knot) - types.begin());
      const double x0 = fr.X(c.first - 0.5 - half), x1 = fr.X(c.first - 0.5 + half);
      const double y0 = fr.Y(c.last - 0.5 + half), y1 = fr.Y(c.last - 0.5 - half);
      out.push_back({x0, y0, x1 - x0, y1 - y0, Shade(KnotColour(c.knot, index), c.percent)});
    }
  }
  return out;
}

std::vector<Tick> Ticks(const tresk::Fingerprint& f) {
  const IdMap ids(f);
  const long long spacing = TickSpacing(std::llabs(ids.At(f.atoms) - ids.At(1)) + 1);
  std::vector<Tick> out;
  for (int p = 1; p <= f.atoms; ++p) {
    const long long id = ids.At(p);
    if (id % spacing == 0)
      out.push_back({p - 0.5, id});
  }
  return out;
}

Legend LegendPlaces(const Frame& fr, std::size_t entries, double font) {
  Legend l;
  l.x = fr.left + fr.side + font * 2.5;
  l.box = font * 1.1;
  double y = fr.top;
  l.titleY = y;
  y += font * 2.2;
  for (std::size_t k = 0; k < entries; ++k) {
    l.entryY.push_back(y);
    y += l.box * 1.7;
  }
  l.afterEntries = y;
  y += font * 1.5;
  l.scaleTitleY = y;
  y += font * 2.0;
  l.scaleY = y;
  l.scaleHeight = fr.side * 0.3;
  return l;
}

} // namespace

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

// A knot seen in every closure gets its full colour.
Rgb Shade(Rgb base, double percent) {
  const double a = 0.15 + 0.85 * std::clamp(percent, 0.0, 100.0) / 100.0;
  return {1 - a + a * base.r, 1 - a + a * base.g, 1 - a + a * base.b};
}

std::string LegendLabel(const std::string& type) {
  return type == "-3" ? "unknown (-3)" : type == "IN" ? "no knot band" : type;
}

PlotLayout LayOut(const tresk::Fingerprint& f, const PlotStyle& style) {
  PlotLayout l;
  l.width = style.size;
  l.font = l.width / 70.0;
  l.frame = Frame{l.width * 0.11, l.width * 0.08, l.width * 0.66, f.atoms};
  l.height = l.frame.top + l.frame.side + l.width * 0.1;
  for (const tresk::FingerprintCell& c : f.cells) {
    if (std::find(l.types.begin(), l.types.end(), c.knot) == l.types.end())
      l.types.push_back(c.knot);
  }
  std::sort(l.types.begin(), l.types.end(), KnotOrder);
  l.squares = Squares(f, style, l.frame, l.types);
  l.ticks = Ticks(f);
  l.legend = LegendPlaces(l.frame, l.types.size(), l.font);
  return l;
}
