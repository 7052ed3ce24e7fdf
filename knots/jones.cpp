// The Jones polynomial of a diagram by contracting the Kauffman bracket one crossing at a time,
// in the order the chain meets them: the partial states are the ways the strands that leave the
// contracted crossings are joined in pairs, so the work grows with the diagram's width.
#include "knots/jones.hpp"

#include <algorithm>
#include <map>
#include <mutex>
#include <set>
#include <sstream>
#include <unordered_map>

#include "crossings/crossings.hpp"     // for FindAllCrossings
#include "preprocessing/chainprep.hpp" // for ProjectChain

namespace tresk {
namespace {

// A Laurent polynomial in A with coefficients mod 2^64 (exact where the truth fits int64).
struct Laurent {
  int low = 0;
  std::vector<std::uint64_t> c;
};

void AddShifted(Laurent& into, const Laurent& p, int shift, std::uint64_t factor) {
  if (p.c.empty())
    return;
  const int low = p.low + shift;
  if (into.c.empty()) {
    into.low = low;
    into.c.assign(p.c.size(), 0);
  }
  if (low < into.low) {
    into.c.insert(into.c.begin(), static_cast<std::size_t>(into.low - low), 0);
    into.low = low;
  }
  const std::size_t start = static_cast<std::size_t>(low - into.low);
  if (into.c.size() < start + p.c.size())
    into.c.resize(start + p.c.size(), 0);
  for (std::size_t k = 0; k < p.c.size(); ++k)
    into.c[start + k] += factor * p.c[k];
}

// p times delta = -A^2 - A^-2, `loops` times.
Laurent TimesDelta(Laurent p, int loops) {
  for (int l = 0; l < loops; ++l) {
    Laurent q;
    AddShifted(q, p, 2, ~std::uint64_t{0});  // - A^2 p
    AddShifted(q, p, -2, ~std::uint64_t{0}); // - A^-2 p
    p = std::move(q);
  }
  return p;
}

// The strands that leave the contracted part, joined in pairs: partner[label], -1 when the label
// does not leave it. The key lists each pair once (smaller label first) in label order.
struct State {
  std::vector<int> partner;
};

std::vector<int> KeyOf(const std::vector<int>& partner) {
  std::vector<int> key;
  for (int label = 0; label < static_cast<int>(partner.size()); ++label)
    if (partner[label] > label)
      key.push_back(label), key.push_back(partner[label]);
  return key;
}

// Joins labels x and y through a smoothing; returns 1 when that closes a loop.
int Join(std::vector<int>& partner, int x, int y) {
  if (x == y)
    return 1; // both ends of one strand meet at this crossing and are joined to each other
  const int px = partner[x];
  const int py = partner[y];
  if (px >= 0 && px == y) { // x and y were already joined outside: a closed loop
    partner[x] = partner[y] = -1;
    return 1;
  }
  const int ex = px >= 0 ? px : x; // the far ends of the two paths
  const int ey = py >= 0 ? py : y;
  if (px >= 0)
    partner[x] = -1;
  if (py >= 0)
    partner[y] = -1;
  partner[ex] = ey;
  partner[ey] = ex;
  return 0;
}

struct VectorHash {
  std::size_t operator()(const std::vector<int>& v) const {
    std::size_t h = 1469598103934665603ull;
    for (const int x : v)
      h = (h ^ static_cast<std::size_t>(x)) * 1099511628211ull;
    return h;
  }
};

JonesPolynomial Normalised(const Laurent& bracketTimesDelta, int writhe) {
  // Divide by delta = -A^-2 (1 + A^4): first by (1 + A^4), exactly, then by -A^-2.
  const std::vector<std::uint64_t>& c = bracketTimesDelta.c;
  std::vector<std::uint64_t> q(c.size() >= 4 ? c.size() - 4 : 0, 0);
  for (std::size_t k = 0; k < q.size(); ++k)
    q[k] = c[k] - (k >= 4 ? q[k - 4] : 0);
  // f = (-A^3)^-w * (-A^2) * q: sign (-1)^(w+1), shift -3w + 2.
  const int shift = bracketTimesDelta.low + 2 - 3 * writhe;
  const bool negate = ((writhe % 2) + 2) % 2 == 0;
  JonesPolynomial out;
  std::size_t first = 0, last = q.size();
  while (first < last && q[first] == 0)
    ++first;
  while (last > first && q[last - 1] == 0)
    --last;
  out.lowest = shift + static_cast<int>(first);
  for (std::size_t k = first; k < last; k += 4)
    out.coefficients.push_back(static_cast<std::int64_t>(negate ? 0 - q[k] : q[k]));
  if (out.coefficients.empty())
    out.lowest = 0;
  return out;
}

} // namespace

bool operator==(const JonesPolynomial& a, const JonesPolynomial& b) {
  return a.lowest == b.lowest && a.coefficients == b.coefficients;
}

JonesPolynomial Mirror(const JonesPolynomial& p) {
  JonesPolynomial m;
  m.coefficients.assign(p.coefficients.rbegin(), p.coefficients.rend());
  m.lowest =
      p.coefficients.empty() ? 0 : -(p.lowest + 4 * (static_cast<int>(p.coefficients.size()) - 1));
  return m;
}

std::string JonesText(const JonesPolynomial& p) {
  std::ostringstream out;
  bool first = true;
  for (std::size_t k = 0; k < p.coefficients.size(); ++k) {
    const std::int64_t c = p.coefficients[k];
    if (c == 0)
      continue;
    const int e = p.lowest + 4 * static_cast<int>(k);
    const std::int64_t magnitude = c < 0 ? -c : c;
    out << (first ? (c < 0 ? "-" : "") : (c < 0 ? " - " : " + "));
    if (magnitude != 1 || e == 0)
      out << magnitude;
    if (e != 0)
      out << (magnitude != 1 ? "*" : "") << "A^" << e;
    first = false;
  }
  return first ? "0" : out.str();
}

JonesStatus JonesOfPd(const std::vector<PdCrossing>& pd, JonesPolynomial& out) {
  out = JonesPolynomial{0, {1}};
  if (pd.empty())
    return JonesStatus::ok;
  int labels = 0, writhe = 0;
  for (const PdCrossing& x : pd) {
    for (const int l : x.label)
      labels = std::max(labels, l + 1);
    writhe += x.sign > 0 ? 1 : -1;
  }
  using Map = std::unordered_map<std::vector<int>, Laurent, VectorHash>;
  Map states;
  Laurent one;
  one.c = {1};
  states.emplace(std::vector<int>{}, one);
  std::vector<int> partner(static_cast<std::size_t>(labels));
  for (const PdCrossing& x : pd) {
    const int a = x.label[0], b = x.label[1], c = x.label[2], d = x.label[3];
    Map next;
    for (const auto& [key, poly] : states) {
      for (int smoothing = 0; smoothing < 2; ++smoothing) {
        std::fill(partner.begin(), partner.end(), -1);
        for (std::size_t k = 0; k + 1 < key.size(); k += 2)
          partner[key[k]] = key[k + 1], partner[key[k + 1]] = key[k];
        // A: (a b)(c d); A^-1: (a d)(b c).
        int loops = smoothing == 0 ? Join(partner, a, b) : Join(partner, a, d);
        loops += smoothing == 0 ? Join(partner, c, d) : Join(partner, b, c);
        AddShifted(next[KeyOf(partner)], TimesDelta(poly, loops), smoothing == 0 ? 1 : -1, 1);
      }
    }
    states.swap(next);
    if (states.size() > kJonesMaxStates)
      return JonesStatus::tooWide;
  }
  const auto closed = states.find(std::vector<int>{});
  if (closed == states.end() || states.size() != 1)
    return JonesStatus::degenerate; // a label that does not appear exactly twice
  out = Normalised(closed->second, writhe);
  return JonesStatus::ok;
}

bool PdOfDiagram(const std::vector<Edge>& edges, const std::vector<Crossing>& crossings,
                 std::vector<PdCrossing>& ordered) {
  const int n = static_cast<int>(crossings.size());
  // Passages along the chain: edge by edge, each edge's crossings from t = 1 down to t = 0.
  std::vector<int> underPassage(static_cast<std::size_t>(n), -1);
  std::vector<int> overPassage(static_cast<std::size_t>(n), -1);
  int passage = 0;
  std::vector<CrossingShort> along;
  for (int e = 0; e < static_cast<int>(edges.size()); ++e) {
    along = edges[static_cast<std::size_t>(e)].crossings;
    std::stable_sort(along.begin(), along.end(),
                     [](const CrossingShort& p, const CrossingShort& q) { return p.t > q.t; });
    for (const CrossingShort& s : along) {
      const int k = static_cast<unsigned short>(s.index);
      if (k >= n)
        return false;
      const Crossing& x = crossings[static_cast<std::size_t>(k)];
      (x.under == e && underPassage[k] < 0 ? underPassage : overPassage)[k] = passage++;
    }
  }
  const int total = passage;
  if (total != 2 * n)
    return false;
  std::vector<PdCrossing> pd(static_cast<std::size_t>(n));
  std::vector<int> order(static_cast<std::size_t>(n));
  for (int k = 0; k < n; ++k) {
    const int pu = underPassage[k], po = overPassage[k];
    if (pu < 0 || po < 0)
      return false;
    const int a = (pu + total - 1) % total, c = pu; // the under strand in and out
    const int overIn = (po + total - 1) % total, overOut = po;
    const bool positive = crossings[static_cast<std::size_t>(k)].sign != 0;
    pd[k] =
        positive ? PdCrossing{{a, overOut, c, overIn}, 1} : PdCrossing{{a, overIn, c, overOut}, -1};
    order[k] = k;
  }
  // Contract in the order the chain first meets the crossings: a narrow front along the chain.
  std::sort(order.begin(), order.end(), [&](int p, int q) {
    return std::min(underPassage[p], overPassage[p]) < std::min(underPassage[q], overPassage[q]);
  });
  ordered.clear();
  for (const int k : order)
    ordered.push_back(pd[k]);
  return true;
}

JonesStatus JonesOfDiagram(const std::vector<Edge>& edges, const std::vector<Crossing>& crossings,
                           JonesPolynomial& out) {
  std::vector<PdCrossing> pd;
  if (!PdOfDiagram(edges, crossings, pd))
    return JonesStatus::degenerate;
  return JonesOfPd(pd, out);
}

JonesStatus JonesOfClosedChain(const std::vector<ChainAtom>& chain, int direction,
                               JonesPolynomial& out) {
  std::vector<Edge> edges = ProjectChain(chain, direction, true);
  std::vector<Crossing> crossings;
  if (FindAllCrossings(edges, crossings, true) != 0)
    return JonesStatus::degenerate;
  return JonesOfDiagram(edges, crossings, out);
}

} // namespace tresk

// --- handed naming by the Jones table -------------------------------------------------------

namespace tresk {

extern const char* const kJonesTableText; // knots/data/jones_table.tsv, embedded

namespace {

// Whether a knot of the table written without the mirror mark is the one the knotted-protein
// field writes with "+". It is not: the trefoils that the knotted-protein list calls +3.1
// (3KZN, 1J85, ...) and Knoto-ID's own 3_1m curve give -A^-16 + A^-12 + A^-4, the table's 3_1m,
// which is V = t + t^3 - t^4, the right-handed (positive-crossing) trefoil (README, Handedness).
constexpr bool kUnmarkedIsPositive = false;

struct JonesTable {
  std::map<std::pair<int, std::vector<std::int64_t>>, std::string> handedByPolynomial;
};

std::string HandedFactor(const std::string& factor, const std::set<std::string>& chiral) {
  const bool mirrored = factor.size() > 1 && factor.back() == 'm';
  const std::string base = mirrored ? factor.substr(0, factor.size() - 1) : factor;
  if (base == "0_1")
    return "01";
  if (chiral.count(base) == 0)
    return base;
  return ((mirrored != kUnmarkedIsPositive) ? "+" : "-") + base;
}

const JonesTable& Table() {
  static const JonesTable table = [] {
    JonesTable t;
    std::vector<std::pair<std::pair<int, std::vector<std::int64_t>>, std::string>> rows;
    std::set<std::string> chiral;
    std::istringstream text(kJonesTableText);
    for (std::string line; std::getline(text, line);) {
      if (line.empty() || line[0] == '#')
        continue;
      std::istringstream fields(line);
      std::string low, coefficients, names;
      std::getline(fields, low, '\t');
      std::getline(fields, coefficients, '\t');
      std::getline(fields, names, '\t');
      std::vector<std::int64_t> c;
      std::istringstream numbers(coefficients);
      for (std::int64_t v; numbers >> v;)
        c.push_back(v);
      std::istringstream each(names);
      for (std::string name; std::getline(each, name, '|');)
        if (name.find('*') == std::string::npos && name.size() > 1 && name.back() == 'm')
          chiral.insert(name.substr(0, name.size() - 1));
      rows.push_back({{std::stoi(low), c}, names.substr(0, names.find('|'))});
    }
    for (const auto& [key, first] : rows) {
      std::string handed;
      std::istringstream factors(first);
      for (std::string factor; std::getline(factors, factor, '*');)
        handed += (handed.empty() ? "" : "#") + HandedFactor(factor, chiral);
      t.handedByPolynomial.emplace(key, handed);
    }
    return t;
  }();
  return table;
}

} // namespace

std::string HandedNameOfJones(const JonesPolynomial& p) {
  const auto& byPolynomial = Table().handedByPolynomial;
  const auto found = byPolynomial.find({p.lowest, p.coefficients});
  return found == byPolynomial.end() ? std::string() : found->second;
}

std::string HandedName(const std::string& alexanderName, JonesStatus status,
                       const JonesPolynomial& jones) {
  const bool knot = alexanderName == "01" || alexanderName == "UNKNOWN" ||
                    alexanderName.find('_') != std::string::npos;
  if (!knot)
    return alexanderName; // a status of the projection, not a knot
  if (status == JonesStatus::tooWide)
    return "UNKNOWN";
  if (status != JonesStatus::ok)
    return alexanderName;
  const bool trivialJones = jones == JonesPolynomial{0, {1}};
  if (trivialJones)
    return alexanderName;
  const std::string handed = HandedNameOfJones(jones);
  if (!handed.empty())
    return handed;
  return alexanderName == "01" ? std::string("UNKNOWN") : alexanderName;
}

} // namespace tresk
